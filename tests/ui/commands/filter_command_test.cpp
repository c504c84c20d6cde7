// `filter` on a stream that pauses: before each pause, the command writes the bytes that no later
// byte of the stream can change. The whole output is the same as for the same bytes in one file.
#include "ui/commands/filter_command.h"

#include <gtest/gtest.h>

#include <random>
#include <sstream>
#include <utility>

#include "core/engine/matching/bytes_in_memory.h"
#include "core/engine/matching/substitution.h"
#include "tests/support/byte_streams.h"
#include "tests/support/test_program.h"

namespace morvex::test {
namespace {

using Pieces = std::vector<std::string>;

// An output that can only be appended to.
class Sink : public OutputFile {
 public:
  explicit Sink(std::string& all) : all_(all) {}

  ErrorNumber WriteAt(std::uint64_t offset, std::string_view bytes) override {
    if (offset != all_.size()) return ErrorNumber::kInvalidCall;
    all_ += bytes;
    return ErrorNumber::kNone;
  }
  ErrorNumber Close() override { return ErrorNumber::kNone; }

 private:
  std::string& all_;
};

// Runs the command with the wildcard "*".
class Filter {
 public:
  explicit Filter(const Rows& rows) {
    std::string list;
    for (const auto& [left, right] : rows) list.append(left).append("|").append(right) += "\r\n";
    files_.AddFile("/list.txt", list);
  }

  // Runs over a stream that pauses before each piece and before the end of the stream. Returns the
  // exit status. `at_pauses` receives the output up to each pause.
  int Run(const Pieces& pieces) {
    std::string bytes;
    for (const std::string& piece : pieces) bytes += piece;
    std::size_t next = 0;
    auto next_size = [&] { return next < pieces.size() ? pieces[next++].size() : 1; };
    std::istringstream input;
    std::ostringstream messages;
    FilterOptions options;
    options.list = "/list.txt";
    options.joker = "*";
    const auto open_input = [&] {
      auto file = std::make_unique<PiecesInput>(bytes, next_size);
      file->at_pause = [this] { at_pauses.push_back(output); };
      return file;
    };
    const int status = RunFilter(
        options, {files_, system_, input, messages, messages, "", false, false, false, nullptr,
                  nullptr, nullptr, open_input, [this] { return std::make_unique<Sink>(output); }});
    said = messages.str();
    return status;
  }

  std::string output;
  Pieces at_pauses;
  std::string said;

 private:
  MemoryFiles files_;
  FakeSystem system_;
};

TEST(FilterCommand, ALineThatNoRowCanGoOnInComesOutAtThePause) {
  Filter filter(Rows{{"Anna", "[A]"}, {"Bert Meyer", "[B]"}});
  EXPECT_EQ(filter.Run({"Hello Anna.\n", "Bert Meyer and Anna\n", "last"}), kExitDone);
  EXPECT_EQ(filter.at_pauses, (Pieces{"", "Hello [A].\n", "Hello [A].\n[B] and [A]\n",
                                      "Hello [A].\n[B] and [A]\nlast"}));
}

TEST(FilterCommand, OnlyTheBeginningOfALeftTextIsHeldBackAtAPause) {
  Filter filter(Rows{{"Annabel Lee", "[L]"}, {"Anna", "[A]"}});
  EXPECT_EQ(filter.Run({"x An", "na", "b", "el Le", "x An"}), kExitDone);
  EXPECT_EQ(filter.at_pauses, (Pieces{"", "x ", "x ", "x ", "x ", "x [A]bel Lex "}));
  EXPECT_EQ(filter.output, "x [A]bel Lex An");
}

TEST(FilterCommand, AWildcardThatHasBegunIsHeldBackUntilItsEnd) {
  Filter filter(Rows{{"id=*;", "<*>"}});
  EXPECT_EQ(filter.Run({"a id=1", "2", "3; b", " id=", ";"}), kExitDone);
  EXPECT_EQ(filter.at_pauses, (Pieces{"", "a ", "a ", "a <123> b", "a <123> b ", "a <123> b "}));
  EXPECT_EQ(filter.output, "a <123> b id=;");
}

TEST(FilterCommand, AWildcardWithoutAnEndIsHeldBackOnlyAsFarAsItReaches) {
  Filter filter(Rows{{"id=*;", "<*>"}});
  const std::string long_line(40'000, 'x');
  EXPECT_EQ(filter.Run({"a id=", long_line}), kExitDone);
  EXPECT_EQ(filter.at_pauses, (Pieces{"", "a ", "a id=" + long_line}));
}

// Bytes that a row can still overwrite are held back, however long the stream pauses.
TEST(FilterCommand, ARowThatWritesBackOverItselfKeepsItsBytesToTheEnd) {
  Filter filter(Rows{{"abcd*bcd", "*X"}});
  EXPECT_EQ(filter.Run({"--abcd-", "--"}), kExitDone) << filter.said;
  EXPECT_EQ(filter.at_pauses, (Pieces{"", "", ""}));
}

// Returns the output of the engine if it reads `bytes` in one piece and can write at any offset.
std::string WholeFile(const Rows& rows, const std::string& bytes) {
  TestProgram scene;
  scene.ApplyRows(rows, '*');
  scene.program.settings.gJoker = '*';
  MemorySource input(bytes);
  MemorySink output;
  InputWindow window;
  PositionedOutput to;
  window.Open(input);
  to.Open(output);
  Substitution substitution(scene.program.tables, '*');
  class Watcher : public SubstitutionWatcher {
    void OnHits(std::int64_t) override {}
    bool KeepGoing(std::uint64_t) override { return true; }
  } watcher;
  CaptureState captured;
  EXPECT_EQ(substitution.Run(window, to, captured, watcher), SubstitutionEnd::kWholeFile);
  EXPECT_EQ(to.Finish(), ErrorNumber::kNone);
  return output.bytes();
}

TEST(FilterCommand, AStreamCutAnywhereGivesTheBytesOfTheWholeFile) {
  for (std::uint32_t seed = 1; seed <= 4000; ++seed) {
    std::mt19937 random(seed);
    const auto below = [&](std::size_t bound) { return random() % bound; };
    const auto text = [&](std::string_view letters, std::size_t least, std::size_t most) {
      std::string made(least + below(most - least + 1), ' ');
      for (char& letter : made) letter = letters[below(letters.size())];
      return made;
    };
    const std::string_view letters = "aabbc*;";
    Rows rows;
    for (std::size_t count = 1 + below(4); count > 0; --count) {
      rows.emplace_back(text(letters, 1, below(3) == 0 ? 9 : 4), text(letters, 0, 4));
      if (below(4) == 0) rows.back().first += "[CRLF]";
    }
    Pieces pieces;
    std::string bytes;
    for (std::size_t count = below(12); count > 0; --count) {
      std::string piece = text(std::string_view("aabbc*;\r\n\0", 10), 1, 6);
      if (below(2) == 0) piece += rows[below(rows.size())].first.substr(0, 1 + below(9));
      pieces.push_back(std::move(piece));
      bytes += pieces.back();
    }
    Filter filter(rows);
    ASSERT_EQ(filter.Run(pieces), kExitDone) << "seed " << seed << ": " << filter.said;
    ASSERT_EQ(filter.output, WholeFile(rows, bytes)) << "seed " << seed;
  }
}

}  // namespace
}  // namespace morvex::test
