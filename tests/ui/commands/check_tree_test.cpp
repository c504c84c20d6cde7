// The walk of `check` through a tree: errors are reported with their path, and a stop request ends
// the walk.
#include "ui/commands/check_tree.h"

#include <gtest/gtest.h>

#include "tests/core/leftovers/leftovers_test.h"

namespace morvex::test {
namespace {

struct Checked {
  std::vector<std::string> lines;  // path, error number, findings
  bool finished = false;
};

Checked Check(MemoryFiles& files, const KeepGoing& keep_going = {}) {
  const SoughtList list(Rows{{"Anna", "x"}});
  Checked checked;
  checked.finished =
      CheckTree(files, "/tree", *list.sought, keep_going, [&checked](const CheckedEntry& entry) {
        checked.lines.push_back(entry.path + " " + std::to_string(static_cast<int>(entry.error)) +
                                " " + std::to_string(entry.findings.size()));
      });
  return checked;
}

void FillTree(MemoryFiles& files) {
  files.AddFile("/tree/a", "Anna, Anna");
  files.AddFile("/tree/sub/file", "Anna");
  files.AddLink("/tree/to-sub", "/tree/sub");
  files.AddLink("/tree/broken", "/Anna");
}

TEST(CheckTreeTest, EveryNameIsToldOnceInItsOrder) {
  MemoryFiles files;
  FillTree(files);
  const Checked checked = Check(files);
  EXPECT_TRUE(checked.finished);
  EXPECT_EQ(checked.lines,
            (std::vector<std::string>{"/tree 0 0", "/tree/a 0 2", "/tree/broken 0 1",
                                      "/tree/sub 0 0", "/tree/sub/file 0 1", "/tree/to-sub 0 0"}));
}

TEST(CheckTreeTest, WhatFailsIsToldAndTheRestIsGoneThrough) {
  const std::vector<std::pair<std::string, std::string>> calls = {
      {"LinkText", "/tree/broken"}, {"LinkText", "/tree/to-sub"}, {"OpenForReading", "/tree/a"},
      {"ReadAt", "/tree/a"},        {"ListFolder", "/tree/sub"},  {"LookUpFolder", "/tree/sub"}};
  for (const auto& [failing_call, failing_path] : calls) {
    MemoryFiles files;
    FillTree(files);
    files.fail = [failing = std::pair(failing_call, failing_path)](const std::string& call,
                                                                   const std::string& path) {
      return std::pair(call, path) == failing ? ErrorNumber::kDeviceIo : ErrorNumber::kNone;
    };
    const Checked checked = Check(files);
    EXPECT_TRUE(checked.finished);
    const std::string told = failing_path + " 57 0";
    EXPECT_EQ(std::count(checked.lines.begin(), checked.lines.end(), told), 1) << told;
    EXPECT_GE(checked.lines.size(), 5u) << told;
  }
}

TEST(CheckTreeTest, ALinkWhoseFolderCannotBeResolvedIsGoneThroughOnceAllTheSame) {
  MemoryFiles files;
  FillTree(files);
  files.fail = [](const std::string& call, const std::string&) {
    return call == "RealPath" ? ErrorNumber::kDeviceIo : ErrorNumber::kNone;
  };
  const Checked checked = Check(files);
  EXPECT_EQ(checked.lines.size(), 6u);
}

TEST(CheckTreeTest, NothingIsToldAnyMoreOnceItIsStopped) {
  MemoryFiles files;
  FillTree(files);
  const Checked checked = Check(files, [] { return false; });
  EXPECT_FALSE(checked.finished);
  EXPECT_TRUE(checked.lines.empty());
}

}  // namespace
}  // namespace morvex::test
