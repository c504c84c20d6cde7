// Tests of the model with results worked out by hand. If the model disagrees with the program,
// these results help to tell which of the two is wrong.

#include "run_model.h"

#include <gtest/gtest.h>

#include "engine_model.h"

namespace morvex::whole_run {
namespace {

using std::string;

string Bytes(const char* text, std::size_t size) { return {text, size}; }

Substituted Once(const std::vector<Row>& rows, char joker, const string& source) {
  EngineModel engine(rows, static_cast<unsigned char>(joker));
  return engine.Process(source);
}

TEST(EngineModel, JokerSpanGoesToTheRightText) {
  const Substituted result = Once({{"a*c", "[*]"}}, '*', "aXYcZ");
  EXPECT_EQ(result.bytes, "[XY]Z");
  EXPECT_EQ(result.hits, 1);
}

TEST(EngineModel, EarlierOfTwoMatchingRowsWins) {
  EXPECT_EQ(Once({{"ab", "1"}, {"a", "2"}}, 0, "abac").bytes, "12c");
  EXPECT_EQ(Once({{"a", "2"}, {"ab", "1"}}, 0, "abac").bytes, "2b2c");
}

TEST(EngineModel, EmptyRightTextDeletes) {
  const Substituted result = Once({{"ab", ""}}, 0, "xabyab");
  EXPECT_EQ(result.bytes, "xy");
  EXPECT_EQ(result.hits, 2);
}

TEST(EngineModel, ReplacedTextIsNotScannedAgain) {
  EXPECT_EQ(Once({{"a", "aa"}, {"aa", "z"}}, 0, "aaa").bytes, "aaaaaa");
}

TEST(EngineModel, NulEndsAnAttempt) {
  const string source = Bytes("aX\0YcaZc", 8);
  EXPECT_EQ(Once({{"a*c", "<*>"}}, '*', source).bytes, Bytes("aX\0Yc<Z>", 8));
  EXPECT_EQ(Once({{Bytes("a\0b", 3), "!"}}, 0, Bytes("a\0b", 3)).bytes, Bytes("a\0b", 3));
}

TEST(EngineModel, EndOfFileEndsAnAttempt) {
  EXPECT_EQ(Once({{"abc", "!"}}, 0, "xab").bytes, "xab");
  EXPECT_EQ(Once({{"a*c", "!"}}, '*', "aXX").bytes, "aXX");
}

TEST(EngineModel, JokerInTheRightTextAloneWritesTheSingleElement) {
  // No left text of this list has a wildcard, so the capture is one byte of value 0. The "*" asks
  // for two bytes. The second one is missing, so the rest of the right text is not written.
  EXPECT_EQ(Once({{"b", "<*>"}}, '*', "abc").bytes, Bytes("a<\0c", 4));
}

TEST(EngineModel, NonJokerRowShowsTheFirstByteOfAnEarlierSpan) {
  EXPECT_EQ(Once({{"a*c", ""}, {"b", "*"}}, '*', "aXYcb").bytes, "X");
}

TEST(EngineModel, JokerAtTheEndTakesOneByteWhereTheTableEnds) {
  // No row has a longer left text than this one. So the table of left texts ends with this row's
  // "*", and the capture stops after one byte.
  EXPECT_EQ(Once({{"a*", "<*>"}}, '*', "abcab").bytes, "<bc<b");
  // With a longer left text in the list, the capture reaches to the end of the file.
  EXPECT_EQ(Once({{"a*", "<*>"}, {"zzzzz", ""}}, '*', "abcab").bytes, "<bcab");
}

TEST(EngineModel, TailOfSeveralBytesIsLeftOutOfTheSpan) {
  EXPECT_EQ(Once({{"a*bc", "<*>"}}, '*', "aXYbcd").bytes, "<XY>d");
}

TEST(EngineModel, TailInFrontOfTheJokerMovesTheWritingBack) {
  // The text behind the wildcard (5 bytes) is longer than the capture (1 byte). So the "*" of the
  // right text moves the write position back, here by 3 bytes: the bytes written there before are
  // replaced.
  const std::vector<Row> rows{{"abcde*abcde", "*<>"}};
  EXPECT_EQ(Once(rows, '*', "1234567abcdeYabcdeZ.").bytes, "1234<>Z.");
  EXPECT_EQ(Once(rows, '*', "abcdeYabcdeZ.").bytes, ".");
}

TEST(EngineModel, JokerIsLiteralInTheFirstPlaceAndNothingWhenThereIsNone) {
  EXPECT_EQ(Once({{"*b", "!"}}, '*', "ab").bytes, "ab");
  EXPECT_EQ(Once({{"a*c", "[*]"}}, 0, "aXc a*c").bytes, "aXc [*]");
}

TEST(EngineModel, LineBreakTokenStandsForTwoBytes) {
  EXPECT_EQ(Once({{"a[CRLF]b", "-[CRLF]-"}}, 0, "a\r\nb").bytes, "-\r\n-");
  EXPECT_EQ(Once({{"[crlf]", "!"}}, 0, "\r\n").bytes, "\r\n");
}

TEST(EngineModel, LongestSpanIsAsLongAsTheCountersAllow) {
  // An attempt can look at 32,767 bytes, the last of which is not part of the match. So a match has
  // at most 32,766 bytes.
  const string longest = "a" + string(32764, 'x') + "c";
  EXPECT_EQ(Once({{"a*c", "!"}}, '*', longest + "z").bytes, "!z");
  const string longer = "a" + string(32765, 'x') + "c";
  EXPECT_EQ(Once({{"a*c", "!"}}, '*', longer + "z").hits, 0);
}

TEST(SettingsModel, OddLinesKeepTheirPlaces) {
  const Settings settings =
      ReadSettings("src\nout\r\nlist\r\n1\r\nbar\r\n?*\r\nx.txt\r\n\r\n1.doc");
  EXPECT_EQ(settings.source, "src");
  EXPECT_EQ(settings.target, "out");
  EXPECT_EQ(settings.logging_box, 1);
  EXPECT_EQ(settings.separator, "bar");
  EXPECT_EQ(settings.joker, '?');
  ASSERT_EQ(settings.extensions.size(), 1U);
  EXPECT_EQ(InitDatBytes(settings), "src\r\nout\r\nlist\r\nlog=1\r\nsep=bar\r\njok=?\r\n1.txt\r\n");
}

TEST(SettingsModel, ShortFileLeavesTheRestAsItWas) {
  EXPECT_EQ(InitDatBytes(ReadSettings("src")),
            string("src\r\n\r\n\r\nlog=0\r\nsep=|\r\njok=") + string(1, '\0') + "\r\n");
}

string Grid(const string& bytes, const string& separator) {
  string text;
  for (const Row& row : ReadGrid(bytes, separator)) {
    text += "<" + row.left + "," + row.right + ">";
  }
  return text;
}

TEST(GridModel, ReadsTheFormsOfAList) {
  EXPECT_EQ(Grid("a|b\r\nc|d\r\n|||\r\n", "|"), "<a,b><c,d>");
  EXPECT_EQ(Grid("a|b||", "|"), "<a,b>");
  EXPECT_EQ(Grid("a|b\nno\nc|d", "|"), "<a,b><c,d><,>");
  EXPECT_EQ(Grid("a||b\r\nc|d\r\n", "|"), "<a,>");
  EXPECT_EQ(Grid("a::b::::\r\n", "::"), "<a,b::>");
  EXPECT_EQ(Grid("a|b|d\r\n|||\r\nx|y\r\n", "|"), "<a,b|d>");
  EXPECT_EQ(Grid("|||\r\n", "|"), "<,>");
  EXPECT_EQ(Grid("a|b\r\n", ""), "<,>");
}

Node MakeFile(const string& bytes, std::int64_t modified_ns) {
  Node file;
  file.bytes = bytes;
  file.permissions = 0640;
  file.modified_ns = modified_ns;
  return file;
}

// Returns the input of a run. The source has files for the different outcomes, at the top and in
// folders below.
RunInput SmallRun() {
  RunInput input;
  for (const char* folder : {"/w", "/w/src", "/w/src/sub", "/w/src/Recycler", "/w/out"}) {
    input.disk.MakeFolder(folder);
  }
  input.disk.PutFile("/w/list", MakeFile("ab|X\r\n|||\r\n", 1));
  input.disk.PutFile("/w/src/tijdel.enc", MakeFile("left over", 1));
  input.disk.PutFile("/w/src/a.html", MakeFile("abab", 1));
  input.disk.PutFile("/w/src/particle.html", MakeFile("ab", 1));
  input.disk.PutFile("/w/src/cle", MakeFile("ab", 1));
  input.disk.PutFile("/w/src/late.html", MakeFile("ab", 1000));
  input.disk.PutFile("/w/src/sub/a.html", MakeFile("ab", 1));
  input.disk.PutFile("/w/src/sub/b.txt", MakeFile("cab", 1));
  input.disk.PutFile("/w/src/sub/tijdel.enc", MakeFile("left over", 1));
  input.disk.PutFile("/w/src/Recycler/c.txt", MakeFile("ab", 1));
  input.current_folder = "/w";
  input.settings_bytes =
      "src/\r\n/w//out\r\nlist\r\nlog=1\r\nsep=|\r\njok=\r\n1.html\r\n1.txt\r\n1.\r\n";
  input.settings_path = "set";
  input.armed_ns = 1000;
  return input;
}

string Messages(const RunOutcome& outcome) {
  string text;
  for (const LogLine& line : outcome.log) {
    text += line.kind == LogKind::kExact ? line.text : "(" + line.text + ")";
    text += "\n";
  }
  return text;
}

TEST(RunModel, FolderRunLeavesCopiesAndLog) {
  const RunOutcome outcome = PredictRun(SmallRun());
  EXPECT_EQ(outcome.exit_status, 3);
  EXPECT_EQ(outcome.messages, "");
  EXPECT_EQ(Messages(outcome),
            "()\n"
            "/w/src/a.html  ----  Hits: 2\n"
            "/w/src/particle.html  ----  Hits: 1\n"
            "SKIP cle\n"
            "/w/src/cle\n"
            "Error 53: File not found\n"
            "/w/src/late.html\n"
            "Error 53: File not found\n"
            "/w/src/sub/b.txt  ----  Hits: 1\n"
            "  \n"
            "Initialisatie-bestand: set\n"
            "Substitutie-bestand: list\n"
            "gemorvexeerd: 5 bestanden\n"
            "Overgeslagen: 2 bestanden\n"
            "Vervangingen: 4\n"
            "Totaal: 15 bytes\n"
            "(Verstreken tijd: )\n");
  EXPECT_EQ(outcome.captions[0], "Scanned: 5\r\nSkipped: 2");
  EXPECT_EQ(outcome.captions[2], "Hits: 4\r\nDone !");
}

TEST(RunModel, FolderRunLeavesTheDiskSo) {
  const RunOutcome outcome = PredictRun(SmallRun());
  const Disk& disk = outcome.disk;
  ASSERT_TRUE(disk.IsFile("/w/out/a.html"));
  EXPECT_EQ(disk.Find("/w/out/a.html")->bytes, "XX");
  EXPECT_EQ(disk.Find("/w/out/a.html")->permissions, 0640U);
  EXPECT_FALSE(disk.Find("/w/out/a.html")->modified_ns.has_value());
  ASSERT_TRUE(disk.IsFile("/w/out/sub/a.html"));
  EXPECT_EQ(disk.Find("/w/out/sub/a.html")->bytes, "ab");
  EXPECT_EQ(disk.Find("/w/out/sub/a.html")->modified_ns, 1);
  ASSERT_TRUE(disk.IsFile("/w/out/sub/b.txt"));
  EXPECT_EQ(disk.Find("/w/out/sub/b.txt")->bytes, "cX");
  EXPECT_TRUE(disk.IsFolder("/w/out/Recycler"));
  for (const char* absent :
       {"/w/out/cle", "/w/out/late.html", "/w/out/tijdel.enc", "/w/out/Recycler/c.txt",
        "/w/src/tijdel.enc", "/w/src/sub/tijdel.enc"}) {
    EXPECT_EQ(disk.Find(absent), nullptr) << absent;
  }
}

TEST(RunModel, LogIsSilentWhenLoggingIsOff) {
  RunInput input = SmallRun();
  input.settings_bytes.replace(input.settings_bytes.find("log=1"), 5, "log=2");
  EXPECT_EQ(Messages(PredictRun(input)), "");
}

TEST(RunModel, SingleFileGoesToTheTargetPath) {
  RunInput input = SmallRun();
  input.settings_bytes = "src/sub/b.txt\r\ncopy\r\nlist\r\nlog=1\r\n";
  RunOutcome outcome = PredictRun(input);
  EXPECT_EQ(outcome.exit_status, 0);
  ASSERT_TRUE(outcome.disk.IsFile("/w/copy"));
  EXPECT_EQ(outcome.disk.Find("/w/copy")->bytes, "cX");
  EXPECT_EQ(outcome.disk.Find("/w/src/sub/tijdel.enc"), nullptr);
  EXPECT_EQ(Messages(outcome), "()\n/w/src/sub/b.txt\n/w/src/sub/b.txt  ----  Hits: 1\n");
  EXPECT_EQ(outcome.captions[0], "Scanned: 1 ");
  input.settings_bytes = "src/sub/b.txt\r\nout\r\nlist\r\nlog=1\r\n";
  outcome = PredictRun(input);
  EXPECT_EQ(outcome.exit_status, 1);
  EXPECT_TRUE(outcome.disk.IsFolder("/w/out"));
}

TEST(RunModel, MissingFoldersEndTheRun) {
  RunInput input = SmallRun();
  input.settings_bytes = "none\r\nout\r\nlist\r\nlog=0\r\n";
  EXPECT_EQ(PredictRun(input).messages, "none\nSource folder doesn't exist.");
  EXPECT_EQ(PredictRun(input).exit_status, 1);
  input.settings_bytes = "src\r\nnone\r\nlist\r\nlog=0\r\n";
  EXPECT_EQ(PredictRun(input).messages, "Target folder doesn't exist. Create?");
  EXPECT_EQ(PredictRun(input).exit_status, 1);
}

TEST(RunModel, TargetInsideTheSourceIsLeftAlone) {
  RunInput input = SmallRun();
  input.settings_bytes = "src\r\nsrc/sub\r\nlist\r\nlog=0\r\nsep=|\r\njok=\r\n1.html\r\n";
  const RunOutcome outcome = PredictRun(input);
  ASSERT_TRUE(outcome.disk.IsFile("/w/src/sub/a.html"));
  EXPECT_EQ(outcome.disk.Find("/w/src/sub/a.html")->bytes, "XX");
  EXPECT_EQ(outcome.disk.Find("/w/src/sub/sub"), nullptr);
  EXPECT_TRUE(outcome.disk.IsFolder("/w/src/sub/Recycler"));
}

}  // namespace
}  // namespace morvex::whole_run
