// Tests the comparison of a run with its prediction. If the comparison missed a kind of difference,
// the whole-run tests would pass in spite of such a difference.

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "program_run.h"
#include "random_case.h"

namespace morvex::whole_run {
namespace {

constexpr std::uint64_t kSeeds = 480;

Node MakeFile(const std::string& bytes) {
  Node file;
  file.bytes = bytes;
  file.permissions = 0644;
  file.modified_ns = 7;
  return file;
}

Disk SmallDisk(const Node& file) {
  Disk disk;
  disk.MakeFolder("/w");
  disk.PutFile("/w/a", file);
  return disk;
}

TEST(Differences, NoneBetweenEqualDisks) {
  EXPECT_EQ(Differences(SmallDisk(MakeFile("x")), SmallDisk(MakeFile("x"))), "");
}

TEST(Differences, EveryKindShows) {
  const Disk expected = SmallDisk(MakeFile("x"));
  EXPECT_NE(Differences(expected, SmallDisk(MakeFile("y"))), "");
  EXPECT_NE(Differences(expected, SmallDisk(MakeFile("xx"))), "");
  Node other = MakeFile("x");
  other.permissions = 0600;
  EXPECT_NE(Differences(expected, SmallDisk(other)), "");
  other = MakeFile("x");
  other.modified_ns = 8;
  EXPECT_NE(Differences(expected, SmallDisk(other)), "");
  other = MakeFile("x");
  other.kind = NodeKind::kLink;
  EXPECT_NE(Differences(expected, SmallDisk(other)), "");
  Disk fewer;
  fewer.MakeFolder("/w");
  EXPECT_NE(Differences(expected, fewer), "");
  EXPECT_NE(Differences(fewer, expected), "");
}

TEST(Differences, AnyValueWillDoWhereNoneIsExpected) {
  Node free = MakeFile("x");
  free.permissions.reset();
  free.modified_ns.reset();
  EXPECT_EQ(Differences(SmallDisk(free), SmallDisk(MakeFile("x"))), "");
}

TEST(LogMessages, TakesOffTheTimeAndMarksOtherForms) {
  const std::vector<std::string> messages =
      LogMessages("\"01:02:03 one\"\r\n\"10:20:30   \"\r\n\"1:02:03 two\"\r\n\"01:02:03 cut");
  ASSERT_EQ(messages.size(), 4U);
  EXPECT_EQ(messages[0], "one");
  EXPECT_EQ(messages[1], "  ");
  EXPECT_EQ(messages[2].substr(0, 9), "malformed");
  EXPECT_EQ(messages[3].substr(0, 9), "malformed");
}

TEST(LookedUpPath, IsAbsoluteAndPlain) {
  EXPECT_EQ(LookedUpPath("", "/w"), "");
  EXPECT_EQ(LookedUpPath("a//b/", "/w"), "/w/a/b");
  EXPECT_EQ(LookedUpPath("/x/./y/../z//", "/w"), "/x/z");
  EXPECT_EQ(LookedUpPath("/", "/w"), "/");
}

// Returns the model's prediction for a random case, without touching a disk.
RunOutcome Predicted(std::uint64_t seed) {
  const RandomCase made = MakeRandomCase(seed, "/w/job");
  RunInput input;
  input.disk.MakeFolder("/w");
  input.disk.MakeFolder("/w/job");
  for (const Entry& entry : made.entries) {
    const std::string path = "/w/job/" + entry.name;
    for (std::size_t at = path.find('/', 8); at != std::string::npos; at = path.find('/', at + 1)) {
      input.disk.MakeFolder(path.substr(0, at));
    }
    Node file = MakeFile(entry.bytes);
    file.modified_ns = entry.modified_ns;
    if (entry.is_folder) {
      input.disk.MakeFolder(path);
    } else {
      input.disk.PutFile(path, file);
    }
  }
  input.current_folder = "/w/job";
  input.settings_bytes = input.disk.Find("/w/job/" + made.settings_name)->bytes;
  input.settings_path = made.settings_argument;
  input.delay_ms = made.delay_ms;
  input.armed_ns = 2'000'000'000'000'000'000;
  return PredictRun(input);
}

TEST(RandomCases, ReachEveryKindOfOutcome) {
  std::set<std::string> seen;
  for (std::uint64_t seed = 0; seed < kSeeds; ++seed) {
    const RunOutcome outcome = Predicted(seed);
    seen.insert("status " + std::to_string(outcome.exit_status));
    seen.insert("caption " + outcome.captions[0].substr(0, 5));
    const std::string& messages = outcome.messages;
    seen.insert(messages.substr(messages.size() - std::min<std::size_t>(messages.size(), 8)));
    seen.insert(outcome.log.empty() ? "no log" : "a log");
    for (const LogLine& line : outcome.log) {
      const std::size_t hits = line.text.find("  ----  Hits: ");
      if (hits != std::string::npos) {
        seen.insert(line.text.back() == '0' ? "no hits" : "hits");
      }
      seen.insert(line.kind == LogKind::kErrorNumber ? "other error" : line.text.substr(0, 8));
    }
  }
  for (const char* wanted :
       {"status 0", "status 1", "caption Scann", "caption ", "caption Bezig", "Create?", "exist.",
        "no log", "a log", "no hits", "hits", "SKIP art", "Error 53", "other error", "gemorvex"}) {
    const bool found = std::any_of(seen.begin(), seen.end(), [&](const std::string& text) {
      return text.find(wanted) != std::string::npos;
    });
    EXPECT_TRUE(found) << wanted;
  }
}

TEST(RandomCases, FollowFromTheirSeed) {
  const RandomCase first = MakeRandomCase(42, "/w");
  const RandomCase second = MakeRandomCase(42, "/w");
  ASSERT_EQ(first.entries.size(), second.entries.size());
  for (std::size_t at = 0; at < first.entries.size(); ++at) {
    EXPECT_EQ(first.entries[at].name, second.entries[at].name);
    EXPECT_EQ(first.entries[at].bytes, second.entries[at].bytes);
  }
  EXPECT_EQ(first.arguments, second.arguments);
}

}  // namespace
}  // namespace morvex::whole_run
