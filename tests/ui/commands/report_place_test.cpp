// Writing the report on a file system in which calls fail and names are taken.
#include "ui/commands/report_place.h"

#include <gtest/gtest.h>

#include <sstream>

#include "core/run/main_window_events.h"
#include "core/settings/options.h"
#include "tests/support/test_program.h"

namespace morvex::test {
namespace {

constexpr const char* kOldReport =
    R"({"program": "Morvex", "version": "1", "started": "x", "end": "finished", "settings": {"a": 1},)"
    R"("totals": {}, "rows": [{"left": [1]}], "files": []})";

class ReportPlaceSteps : public ::testing::Test {
 protected:
  ReportPlaceSteps() {
    scene.files.AddFile("/src/a.txt", "Anna");
    scene.files.AddFolder("/reports");
    scene.program.request.source = "/src";
    scene.program.request.target = "/out";
  }

  TestProgram scene;
  std::string path = "/reports/r.json";
  std::string no_settings;
  std::ostringstream said;
  CommandMessages messages{said, MessageColours::kNone, false};
  ReportPlace place{scene.program, path, no_settings, messages};
};

TEST_F(ReportPlaceSteps, AFreePlaceIsLeftAsItWasUntilTheReportComes) {
  EXPECT_TRUE(place.MayHold());
  EXPECT_EQ(scene.files.Below("/reports"), std::vector<std::string>());
  EXPECT_TRUE(place.Put("new"));
  EXPECT_EQ(scene.files.Below("/reports"), std::vector<std::string>{path});
  EXPECT_EQ(scene.files.Bytes(path), "new");
  EXPECT_EQ(said.str(), "");
}

TEST_F(ReportPlaceSteps, WhereNoFileTakesAFreeNameInOneStepItIsMovedThere) {
  scene.files.moves_in_one_step = false;
  ASSERT_TRUE(place.MayHold());
  EXPECT_TRUE(place.Put("new")) << said.str();
  EXPECT_EQ(scene.files.Bytes(path), "new");
  EXPECT_EQ(scene.files.Below("/reports").size(), 1u);
}

TEST_F(ReportPlaceSteps, WhatHasComeThereStaysWhateverItIs) {
  for (const bool in_one_step : {true, false}) {
    scene.files.moves_in_one_step = in_one_step;
    ASSERT_TRUE(place.MayHold());
    for (int kind = 0; kind < 3; ++kind) {
      if (kind == 0) scene.files.AddFile(path, "a copy");
      if (kind == 1) scene.files.AddFile(path, kOldReport);
      if (kind == 2) scene.files.AddLink(path, "/src/a.txt");
      EXPECT_FALSE(place.Put("new"));
      EXPECT_EQ(scene.files.Bytes("/reports/morvex-report-1.json"), "new") << kind;
      EXPECT_EQ(scene.files.Bytes("/src/a.txt"), "Anna");
      if (kind == 1) {
        EXPECT_EQ(scene.files.Bytes(path), kOldReport);
      }
      scene.files.DeleteFile("/reports/morvex-report-1.json");
      scene.files.DeleteFile(path);
    }
  }
  EXPECT_NE(said.str().find("The report is in /reports/morvex-report-1.json."), std::string::npos);
}

TEST_F(ReportPlaceSteps, AReportBesideTakesNobodysName) {
  ASSERT_TRUE(place.MayHold());
  scene.files.AddFile(path, "a copy");
  scene.files.AddFile("/reports/morvex-report-1.json", "of an earlier run");
  scene.files.AddLink("/reports/morvex-report-2.json", "/nowhere");
  EXPECT_FALSE(place.Put("new"));
  EXPECT_EQ(scene.files.Bytes("/reports/morvex-report-1.json"), "of an earlier run");
  EXPECT_EQ(scene.files.Bytes("/reports/morvex-report-3.json"), "new");
  EXPECT_FALSE(scene.files.Has("/nowhere"));
}

TEST_F(ReportPlaceSteps, AnOlderReportIsReplacedUnlessItHasBecomeSomethingElse) {
  scene.files.AddFile(path, kOldReport);
  ASSERT_TRUE(place.MayHold()) << said.str();
  EXPECT_TRUE(place.Put("new"));
  EXPECT_EQ(scene.files.Bytes(path), "new");

  scene.files.AddFile(path, kOldReport);
  ASSERT_TRUE(place.MayHold());
  scene.files.AddFile(path, "something else");
  EXPECT_FALSE(place.Put("newer"));
  EXPECT_EQ(scene.files.Bytes(path), "something else");
}

TEST_F(ReportPlaceSteps, WhicheverCallFailsTheReportIsInItsPlaceOrItIsSaid) {
  for (const bool replaces : {false, true}) {
    bool any_failed = true;
    for (int wanted = 1; any_failed; ++wanted) {
      if (replaces) {
        scene.files.AddFile(path, kOldReport);
      } else {
        scene.files.DeleteFile(path);
      }
      ReportPlace tried(scene.program, path, no_settings, messages);
      said.str("");
      int calls = 0;
      any_failed = false;
      scene.files.fail = [&](const std::string&, const std::string&) {
        any_failed = any_failed || calls + 1 == wanted;
        return ++calls == wanted ? ErrorNumber::kDiskFull : ErrorNumber::kNone;
      };
      const bool put = tried.MayHold() && tried.Put("new");
      scene.files.fail = nullptr;
      if (put) {
        EXPECT_EQ(scene.files.Bytes(path), "new") << wanted;
      } else {
        EXPECT_NE(said.str().find("error: "), std::string::npos) << wanted;
      }
      if (replaces && !put) {
        EXPECT_NE(scene.files.Bytes(path), "new") << wanted;
      }
      for (const std::string& left : scene.files.Below("/reports")) {
        if (left != path) {
          EXPECT_EQ(scene.files.DeleteFile(left), ErrorNumber::kNone);
        }
      }
    }
  }
}

}  // namespace
}  // namespace morvex::test
