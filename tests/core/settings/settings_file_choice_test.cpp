// Which settings file is read, what happens to its replacement list, and what happens when file
// calls fail.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/settings/settings_file.h"
#include "tests/core/settings/settings_lines.h"

namespace morvex::test {
namespace {

void NameInitFile(TestProgram& test, const std::string& path) {
  test.program.settings.CommandLine_SET = true;
  test.program.settings.InitFilePath = path;
}

TEST(ReadInitFile, WithoutAFileEverythingStaysSilently) {
  TestProgram test;
  test.program.settings.gJoker = '#';
  test.program.frmMorvex.lblFiles.caption = "before";
  ReadInitFile(test.program);
  EXPECT_FALSE(test.program.settings.ReadingInitFile);
  EXPECT_FALSE(test.program.settings.AutoRunFromInitFile);
  EXPECT_FALSE(test.program.Beeindigd);
  EXPECT_EQ(test.program.settings.gSeparator, "|");
  EXPECT_EQ(test.program.settings.gJoker, '#');
  EXPECT_EQ(test.program.settings.LoggingStatusText, "");
  EXPECT_EQ(test.program.frmMorvex.lblFiles.caption.get(), "before");
  EXPECT_TRUE(test.user.messages.empty());
  EXPECT_TRUE(test.files.Below("/program").empty());
}

TEST(ReadInitFile, ANamedFileIsReadInPlaceOfTheOwnAndAsksForARun) {
  TestProgram test;
  test.files.AddFile(kInitFile, "/own\r\n");
  test.files.AddFile("/jobs/nightly.dat", "/named\r\n");
  NameInitFile(test, "/jobs/nightly.dat");
  ReadInitFile(test.program);
  EXPECT_EQ(test.program.frmMorvex.Text1(kSourceBox).text.get(), "/named");
  EXPECT_TRUE(test.program.settings.AutoRunFromInitFile);
  EXPECT_FALSE(test.program.settings.ReadingInitFile);
}

TEST(ReadInitFile, TheOwnFileAsksForNoRun) {
  TestProgram test;
  ReadInitLines(test, {"/own"});
  EXPECT_FALSE(test.program.settings.AutoRunFromInitFile);
}

TEST(ReadInitFile, AMissingNamedFileIsLoggedAndStopsTheProgram) {
  TestProgram test;
  test.files.AddFile(kInitFile, "/own\r\n");
  NameInitFile(test, "/jobs/none.dat");
  test.program.frmMorvex.lblFiles.caption = "before";
  ReadInitFile(test.program);
  EXPECT_EQ(test.LogMessages(),
            (std::vector<std::string>{"Initialisatiebestand bestaat niet: /jobs/none.dat"}));
  EXPECT_TRUE(test.program.run.LoggingOn);
  EXPECT_TRUE(test.program.Beeindigd);
  EXPECT_TRUE(test.program.settings.ReadingInitFile);
  EXPECT_FALSE(test.program.settings.AutoRunFromInitFile);
  EXPECT_EQ(test.program.frmMorvex.Text1(kSourceBox).text.get(), "");
  EXPECT_EQ(test.program.frmMorvex.lblFiles.caption.get(), "before");
}

TEST(ReadInitFile, AfterAMissingNamedFileTheOwnIsNotRewritten) {
  TestProgram test;
  test.files.AddFile(kInitFile, "/own\r\n");
  NameInitFile(test, "/jobs/none.dat");
  ReadInitFile(test.program);
  WriteInitFile(test.program);
  EXPECT_EQ(test.files.Bytes(kInitFile), "/own\r\n");
}

TEST(ReadInitFile, AFolderOfTheNamedFilesNameIsAMissingFile) {
  TestProgram test;
  test.files.AddFolder("/jobs");
  NameInitFile(test, "/jobs");
  ReadInitFile(test.program);
  EXPECT_TRUE(test.program.Beeindigd);
}

TEST(ReadInitFile, ANamedFileThatCannotBeOpenedAsksForNoRun) {
  TestProgram test;
  test.files.AddFile("/jobs/nightly.dat", "/named\r\n");
  NameInitFile(test, "/jobs/nightly.dat");
  test.files.fail = [](const std::string& call, const std::string&) {
    return call == "OpenForReading" ? ErrorNumber::kPermissionDenied : ErrorNumber::kNone;
  };
  ReadInitFile(test.program);
  EXPECT_FALSE(test.program.settings.AutoRunFromInitFile);
  EXPECT_EQ(test.program.settings.init_file_error, ErrorNumber::kPermissionDenied);
  EXPECT_EQ(test.program.frmMorvex.Text1(kSourceBox).text.get(), "");
  EXPECT_FALSE(test.program.settings.ReadingInitFile);
  EXPECT_FALSE(test.program.Beeindigd);
}

TEST(ReadInitFile, ANamedFileThatCannotBeReadToItsEndAsksForNoRun) {
  TestProgram test;
  test.files.AddFile("/jobs/nightly.dat",
                     "/named\r\n" + std::string(600'000, 't') + "\r\n/list\r\n");
  NameInitFile(test, "/jobs/nightly.dat");
  int reads = 0;
  test.files.fail = [&](const std::string& call, const std::string&) {
    return call == "ReadAt" && ++reads > 1 ? ErrorNumber::kDeviceIo : ErrorNumber::kNone;
  };
  ReadInitFile(test.program);
  EXPECT_EQ(test.program.frmMorvex.Text1(kSourceBox).text.get(), "/named");
  EXPECT_EQ(test.program.frmMorvex.Text1(kTargetBox).text.get(), "") << "a line cut is none";
  EXPECT_FALSE(test.program.settings.AutoRunFromInitFile);
  EXPECT_EQ(test.program.settings.init_file_error, ErrorNumber::kDeviceIo);
}

TEST(ReadInitFile, AReadErrorThatPassesPutsNoLineInAnothersPlace) {
  TestProgram test;
  test.files.AddFile(kInitFile, InitLines({"/s", "/t", "/l", "log=1", "sep=;", "jok=*", "1.x"}));
  int reads = 0;
  test.files.fail = [&](const std::string& call, const std::string&) {
    return call == "ReadAt" && ++reads == 1 ? ErrorNumber::kDeviceIo : ErrorNumber::kNone;
  };
  ReadInitFile(test.program);
  EXPECT_EQ(test.program.frmMorvex.Text1(kSourceBox).text.get(), "");
  EXPECT_EQ(test.program.frmMorvex.Text1(kTargetBox).text.get(), "");
  EXPECT_EQ(test.program.settings.SubstitutieFile, "");
  EXPECT_EQ(test.program.settings.gSeparator, "|");
  EXPECT_TRUE(ExtensionLines(test).empty());
  EXPECT_EQ(test.program.settings.init_file_error, ErrorNumber::kDeviceIo);
}

TEST(ReadInitFile, TheListThatIsNamedIsImportedAndAppliedWithTheFilesSeparatorAndJoker) {
  TestProgram test;
  test.files.AddFile("/lists/l.txt", "Jan*sen::Person\r\nb::c::::\r\n");
  test.program.frmMorvex.loaded = true;
  ReadInitLines(test, {"", "", "/lists/l.txt", "log=0", "sep=::", "jok=*"});
  EXPECT_EQ(test.GridRows(), (Rows{{"Jan*sen", "Person"}, {"b", "c::"}}));
  const SubstitutionTables& tables = test.program.tables;
  EXPECT_EQ(tables.LeftTexts, (std::vector<std::string>{"Jan*sen", "b"}));
  EXPECT_EQ(tables.RightTexts, (std::vector<std::string>{"Person", "c::"}));
  EXPECT_EQ(tables.JokerLeft, (std::vector<bool>{true, false}));
  EXPECT_EQ(tables.JokerTail, (std::vector<std::string>{"sen", ""}));
  EXPECT_EQ(test.program.settings.SubstitutieFile, "/lists/l.txt");
  EXPECT_TRUE(test.program.frmReplacements.loaded);
  EXPECT_FALSE(test.program.frmReplacements.visible.get());
  EXPECT_TRUE(test.program.frmMorvex.visible.get());
}

TEST(ReadInitFile, AListThatIsMissingIsNotSpokenOf) {
  for (const char* list : {"/lists/none.txt", "", "/program"}) {
    TestProgram test;
    ReadInitLines(test, {"", "", list, "log=0", "sep=|", "jok=*"});
    EXPECT_EQ(test.program.settings.SubstitutieFile, list);
    EXPECT_FALSE(test.program.frmReplacements.loaded) << list;
    EXPECT_EQ(test.program.tables.PairCount, 0) << list;
    EXPECT_TRUE(test.user.messages.empty());
  }
}

TEST(ReadInitFile, SaysThatItIsReadingWhileTheListComesIn) {
  TestProgram test;
  test.system.step = std::chrono::milliseconds(20);
  test.files.AddFile("/l.txt", "a|b\r\nc|d||\r\n");
  int asked = 0;
  test.user.on_events = [&] {
    ++asked;
    EXPECT_TRUE(test.program.settings.ReadingInitFile);
  };
  ReadInitLines(test, {"", "", "/l.txt", "log=0", "sep=|", "jok="});
  EXPECT_EQ(asked, 2);
  EXPECT_FALSE(test.program.settings.ReadingInitFile);
}

TEST(ReadInitFile, TheEditorsCaptionStaysWhileTheListComesIn) {
  TestProgram test;
  test.system.step = std::chrono::milliseconds(20);
  test.files.AddFile("/l.txt", "a|b\r\nc|d||\r\n");
  const std::string caption = test.program.frmReplacements.caption;
  std::vector<std::string> seen;
  test.user.on_events = [&] { seen.push_back(test.program.frmReplacements.caption); };
  ReadInitLines(test, {"", "", "/l.txt", "log=0", "sep=|", "jok="});
  EXPECT_EQ(seen, (std::vector<std::string>{caption, caption}));
}

// From the N-th call on, every call on the disk fails. Each setting then has its old value or the
// value in the file, and the reading ends.
TEST(ReadInitFile, AFailureAtAnyCallLeavesEveryValueReadOrAsItWas) {
  const auto one_of = [](const std::string& value, const std::string& before,
                         const std::string& read) { return value == before || value == read; };
  bool failed = true;
  int whole = 0;
  for (int last_good = 0; failed; ++last_good) {
    TestProgram test;
    test.files.AddFile("/l.txt", "a|b||\r\n");
    test.files.AddFile(kInitFile,
                       InitLines({"/s", "/t", "/l.txt", "log=1", "sep=;", "jok=*", "1.x"}));
    failed = false;
    int calls = 0;
    test.files.fail = [&](const std::string&, const std::string&) {
      if (++calls <= last_good) return ErrorNumber::kNone;
      failed = true;
      return ErrorNumber::kDeviceIo;
    };
    ReadInitFile(test.program);
    const Settings& settings = test.program.settings;
    EXPECT_FALSE(settings.ReadingInitFile) << last_good;
    EXPECT_TRUE(one_of(test.program.frmMorvex.Text1(kSourceBox).text, "", "/s")) << last_good;
    EXPECT_TRUE(one_of(test.program.frmMorvex.Text1(kTargetBox).text, "", "/t")) << last_good;
    EXPECT_TRUE(one_of(settings.SubstitutieFile, "", "/l.txt")) << last_good;
    EXPECT_TRUE(one_of(settings.gSeparator, "|", ";")) << last_good;
    EXPECT_TRUE(settings.gJoker == 0 || settings.gJoker == '*') << last_good;
    whole += ExtensionLines(test) == std::vector<std::string>{"1.x"} ? 1 : 0;
  }
  EXPECT_GE(whole, 1) << "the last round runs without a failure";
}

}  // namespace
}  // namespace morvex::test
