// Whole runs, each with settings, a list or paths of one particular kind. The model judges most of
// these runs; some tests also check directly what matters most in their case.

#include <gtest/gtest.h>

#include "program_run.h"

namespace morvex::whole_run {
namespace {

using std::string;

// A scene with a source (a selected file, an unselected file, a sub-folder), a list and a target.
class Cases : public testing::Test {
 protected:
  Cases() {
    scene_.Write("src/a.txt", "ab + abc, [kXYc]");
    scene_.Write("src/b.doc", "ab");
    scene_.Write("src/sub/c.txt", "abab");
    scene_.Write("list", "ab|X\r\nk*c|<*>\r\n|||\r\n");
    scene_.MakeFolder("out");
  }

  string Paths() const {
    return scene_.At("src") + "\r\n" + scene_.At("out") + "\r\n" + scene_.At("list") + "\r\n";
  }
  string Usual() const {
    return UsualSettings(scene_.At("src"), scene_.At("out"), scene_.At("list"));
  }

  string RunWith(const string& settings) {
    scene_.Write("job.dat", settings);
    return RunAndCompare(scene_, "job.dat");
  }
  string RunWithList(const string& list_bytes) {
    scene_.Write("list", list_bytes);
    return RunWith(Usual());
  }

  Scene scene_;
};

TEST_F(Cases, UsualRun) {
  EXPECT_EQ(RunWith(Usual()), "");
  EXPECT_EQ(scene_.Read("out/a.txt"), "X + Xc, [<XY>]");
  EXPECT_EQ(scene_.Read("out/b.doc"), "ab");
  EXPECT_EQ(scene_.Read("out/sub/c.txt"), "XX");
}

TEST_F(Cases, SecondRunOverTheSameTargetGivesTheSame) {
  EXPECT_EQ(RunWith(Usual()), "");
  EXPECT_EQ(RunWith(Usual()), "");
  EXPECT_EQ(scene_.Read("out/a.txt"), "X + Xc, [<XY>]");
}

TEST_F(Cases, SettingsFileThatIsShort) {
  EXPECT_EQ(RunWith(scene_.At("src") + "\r\n" + scene_.At("out")), "");
  EXPECT_EQ(RunWith(Paths()), "");
  EXPECT_EQ(RunWith(Paths() + "log=1"), "");
  EXPECT_EQ(RunWith(Paths() + "log=1\r\nsep=|"), "");
  EXPECT_EQ(RunWith(Paths() + "log=1\r\nsep=|\r\njok=*"), "");
}

TEST_F(Cases, SettingsFileThatNamesNoTargetCopiesNothing) {
  // The program treats an empty target path as an existing folder, and a copy's path would then
  // begin with "/". The run must write no copy, not even into the root folder.
  const string stray = "/whole_run_stray.bin";
  scene_.Write("src" + stray, "x");
  scene_.Write("job.dat", scene_.At("src") + "\r\n");
  const Disk before = Disk::Snapshot(scene_.work());
  EXPECT_NE(scene_.Run({"-if", scene_.At("job.dat")}).status, -1);
  EXPECT_EQ(Differences(before, Disk::Snapshot(scene_.work())), "");
  EXPECT_EQ(Disk::Snapshot(stray).Find(stray), nullptr);
}

TEST_F(Cases, SettingsFileThatNamesNoSourceEndsWithoutAProgressScale) {
  EXPECT_EQ(RunWith(""), "");
  EXPECT_EQ(RunWith("\r\n" + scene_.At("out") + "\r\n\r\nlog=1\r\n"), "");
}

TEST_F(Cases, LoggingLineOfEveryKind) {
  for (const char* line : {"log=1", "1", "log=", "log=yes", "log=2", "log=3", "log=-1", "log= 1",
                           "log=1x", "log=0.5", "log=1.5", "log=99999", "", "log=1=0"}) {
    EXPECT_EQ(RunWith(Paths() + line + "\r\nsep=|\r\njok=*\r\n1.txt\r\n"), "") << line;
  }
}

TEST_F(Cases, LinesWithoutEqualsSignCountWhole) {
  scene_.Write("list", "ab::X\r\nk?c::<?>\r\n");
  EXPECT_EQ(RunWith(Paths() + "1\r\n::\r\n?\r\n1.txt\r\n"), "");
  EXPECT_EQ(scene_.Read("out/a.txt"), "X + Xc, [<XY>]");
}

TEST_F(Cases, SeparatorMayHoldAnEqualsSign) {
  scene_.Write("list", "aba=bX\r\n");
  EXPECT_EQ(RunWith(Paths() + "log=1\r\nsep=a=b\r\njok=\r\n1.txt\r\n"), "");
}

TEST_F(Cases, EmptySeparatorReadsNoRowAndIsWrittenAsTheBar) {
  EXPECT_EQ(RunWith(Paths() + "log=1\r\nsep=\r\njok=*\r\n1.txt\r\n"), "");
  EXPECT_EQ(scene_.Read("out/a.txt"), scene_.Read("src/a.txt"));
  EXPECT_NE(scene_.InitDat().find("sep=|\r\n"), string::npos);
}

TEST_F(Cases, NoJokerIsStoredAsNulAndReadBackAsNone) {
  EXPECT_EQ(RunWith(Paths() + "log=1\r\nsep=|\r\njok=\r\n1.txt\r\n"), "");
  const string stored = scene_.InitDat();
  EXPECT_NE(stored.find(string("jok=\0\r\n", 7)), string::npos);
  EXPECT_EQ(RunWith(stored), "");
  EXPECT_EQ(scene_.InitDat(), stored);
}

TEST_F(Cases, BlankExtensionLineEndsTheExtensions) {
  EXPECT_EQ(RunWith(Usual() + "\r\n1.doc\r\n"), "");
  EXPECT_EQ(scene_.Read("out/b.doc"), "ab");
}

TEST_F(Cases, ExtensionLineMarksAndLastLineWithoutEnd) {
  EXPECT_EQ(RunWith(Paths() + "log=1\r\nsep=|\r\njok=*\r\n0.txt\r\n1\r\nx.doc"), "");
  EXPECT_EQ(scene_.Read("out/b.doc"), "X");
  EXPECT_EQ(scene_.Read("out/sub/c.txt"), "abab");
}

TEST_F(Cases, SettingsWithBareLineFeeds) {
  const string usual = Usual();
  string bare;
  for (const char letter : usual) {
    bare += letter == '\r' ? "" : string(1, letter);
  }
  EXPECT_EQ(RunWith(bare), "");
  EXPECT_EQ(scene_.InitDat(), usual);
}

TEST_F(Cases, ListThatIsAFolder) {
  scene_.MakeFolder("lists");
  EXPECT_EQ(RunWith(UsualSettings(scene_.At("src"), scene_.At("out"), scene_.At("lists"))), "");
  EXPECT_EQ(scene_.Read("out/a.txt"), scene_.Read("src/a.txt"));
}

TEST_F(Cases, ListThatIsMissing) {
  EXPECT_EQ(RunWith(UsualSettings(scene_.At("src"), scene_.At("out"), "none")), "");
}

TEST_F(Cases, ListThatIsEmpty) { EXPECT_EQ(RunWithList(""), ""); }

TEST_F(Cases, ListWithoutItsSeparator) { EXPECT_EQ(RunWithList("ab;X\r\nab:X\r\n"), ""); }

TEST_F(Cases, LastRowWithoutARightTextDeletes) {
  EXPECT_EQ(RunWithList("ab|||\r\n"), "");
  EXPECT_EQ(scene_.Read("out/sub/c.txt"), "");
  // The program cuts two characters off the right text of the last row. Here this text is "|", so
  // there is only one character to cut off.
  EXPECT_EQ(RunWithList("ab||\r\n"), "");
  EXPECT_EQ(scene_.Read("out/sub/c.txt"), "");
}

TEST_F(Cases, ListWithNulBytes) {
  scene_.Write("src/nul.txt", string("a\0b ab a\0b", 10));
  EXPECT_EQ(RunWithList(string("a\0b|X\r\nab|Y\0Z\r\n\0|Q\r\n", 20)), "");
  EXPECT_EQ(scene_.Read("out/nul.txt"), string("a\0b YZ a\0b", 10));
}

TEST_F(Cases, ListOfAHundredThousandRows) {
  const int kRows = 100'000;
  string list;
  for (int row = 0; row < kRows; ++row) {
    list += "<" + std::to_string(row) + ">|[" + std::to_string(row) + "]\r\n";
  }
  scene_.Write("list", list + "|||\r\n");
  scene_.Write("src/a.txt", "<0> <9> <10> <4711> <29999> < 5> <31999");
  scene_.Write("job.dat", Usual());
  const ProgramResult result = scene_.Run({"-if", scene_.At("job.dat")});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(scene_.Read("out/a.txt"), "[0] [9] [10] [4711] [29999] < 5> <31999");
}

TEST_F(Cases, RowOfAMegabyte) {
  EXPECT_EQ(RunWithList(string(1'048'576, 'm') + "|Y\r\nab|X\r\n|||\r\n"), "");
  EXPECT_EQ(scene_.Read("out/sub/c.txt"), "XX");
}

TEST_F(Cases, RowsThatAlmostMatchEverywhereChangeNothing) {
  // None of the first three rows ever matches, but many attempts go on for thousands of bytes.
  const string megabyte(1'048'576, 'm');
  const string many = megabyte.substr(0, 4'000);
  scene_.Write("src/m.txt", "ab" + many + "ab");
  scene_.Write(
      "list", megabyte + "|1\r\n" + megabyte.substr(0, 30'000) + "x|2\r\nm*y|3\r\nab|X\r\n|||\r\n");
  scene_.Write("job.dat", Usual());
  ASSERT_EQ(scene_.Run({"-if", scene_.At("job.dat")}).status, 0);
  EXPECT_TRUE(scene_.Read("out/m.txt") == "X" + many + "X");
}

TEST_F(Cases, RightTextOfAMegabyteIsWrittenWhole) {
  const string megabyte(1'048'576, 'm');
  EXPECT_EQ(RunWithList("ab|" + megabyte + "\r\n|||\r\n"), "");
  EXPECT_EQ(scene_.Read("out/sub/c.txt"), megabyte + megabyte);
}

TEST_F(Cases, MatchesAcrossEveryBlockBorder) {
  const std::size_t kPage = 4096;
  const std::size_t kPages = 560;
  string bytes(kPage * kPages, '-');
  for (std::size_t page = 1; page < kPages; ++page) {
    const string text = page % 3 == 0 ? "abcdefgh" : "k123456m";
    bytes.replace(page * kPage - page % 9, text.size(), text);
  }
  scene_.Write("src/a.txt", bytes);
  EXPECT_EQ(RunWithList("abcdefgh|short\r\nk*m|rather a long text *\r\n|||\r\n"), "");
  EXPECT_NE(scene_.RunLog().find("Hits: 559"), string::npos);
}

TEST_F(Cases, LongestSpanAcrossBlockBorders) {
  for (const std::size_t length : {32763U, 32764U, 32765U, 32766U}) {
    const string span = "a" + string(length, '-') + "c";
    scene_.Write("src/a.txt", string(40'000, '.') + span + string(40'000, '.') + span);
    EXPECT_EQ(RunWithList("a*c|<*>\r\n|||\r\n"), "") << length;
  }
}

TEST_F(Cases, WritingInFrontOfTheFileIsDropped) {
  // The text behind the wildcard is found before the wildcard is reached. So the capture is shorter
  // than the text behind the wildcard, and the write position moves back. At the start of a file,
  // the write position then lies in front of the first byte.
  scene_.Write("src/a.txt", "abcdeYabcdeZ.");
  scene_.Write("src/sub/c.txt", "1234567abcdeYabcdeZ.");
  EXPECT_EQ(RunWithList("abcde*abcde|*<>\r\n|||\r\n"), "");
  EXPECT_EQ(scene_.Read("out/a.txt"), ".");
  EXPECT_EQ(scene_.Read("out/sub/c.txt"), "1234<>Z.");
}

TEST_F(Cases, MoreHitsThanSixteenBitsHold) {
  scene_.Write("src/a.txt", string(100'000, 'q'));
  EXPECT_EQ(RunWithList("q|Q\r\n|||\r\n"), "");
  EXPECT_NE(scene_.RunLog().find("Vervangingen: 100000\""), string::npos);
}

TEST_F(Cases, TargetWithAFileInTheWay) {
  scene_.Write("taken", "a file");
  const string settings = UsualSettings(scene_.At("src"), scene_.At("taken"), scene_.At("list"));
  EXPECT_EQ(RunWith(settings), "");
  EXPECT_EQ(scene_.Read("taken"), "a file");
}

TEST_F(Cases, TargetBelowAFile) {
  scene_.Write("taken", "a file");
  EXPECT_EQ(RunWith(UsualSettings(scene_.At("src"), scene_.At("taken/x"), scene_.At("list"))), "");
}

TEST_F(Cases, TargetIsTheSource) {
  EXPECT_EQ(RunWith(UsualSettings(scene_.At("src"), scene_.At("src"), scene_.At("list"))), "");
  EXPECT_NE(scene_.RunLog().find("Error 75: Path/File access error\""), string::npos);
}

TEST_F(Cases, RepeatedRunIntoATargetInsideTheSource) {
  scene_.MakeFolder("src/sub/out");
  const string settings =
      UsualSettings(scene_.At("src"), scene_.At("src/sub/out/"), scene_.At("list"));
  EXPECT_EQ(RunWith(settings), "");
  EXPECT_EQ(RunWith(settings), "");
  EXPECT_EQ(scene_.Read("src/sub/out/sub/c.txt"), "XX");
  EXPECT_FALSE(scene_.Exists("src/sub/out/sub/out"));
}

TEST_F(Cases, DeepTree) {
  string folder = "src";
  for (int level = 0; level < 60; ++level) {
    folder += "/level" + std::to_string(level);
    scene_.Write(folder + "/d.txt", "ab" + std::to_string(level));
  }
  EXPECT_EQ(RunWith(Usual()), "");
}

}  // namespace
}  // namespace morvex::whole_run
