// What a run with -if says about its command line and its list. These messages do not change the
// exit status.
#include <gtest/gtest.h>

#include "tests/commands/command_scene.h"

namespace morvex::commands {
namespace {

class UnattendedScene : public CommandScene {
 public:
  explicit UnattendedScene(const std::string& list) {
    Write("src/a.txt", "Anna");
    Write("list.txt", list);
    Write("settings.dat", "src\r\nout\r\nlist.txt\r\nlog=0\r\nsep=|\r\njok=*\r\n1.txt\r\n");
    scene().MakeFolder("out");
  }
};

TEST(UnattendedWords, PiecesOfTheCommandLineThatNobodyWantsAreNamed) {
  const UnattendedScene scene("Anna|[A]\r\n|||\r\n");
  const ProgramResult result =
      scene.Shell("morvex-cli x -if settings.dat -verbose --report r.json -dy 0 -");
  EXPECT_EQ(result.status, 0) << result.errors;
  for (const char* piece : {"\"x\"", "\"-verbose\"", "\"--report r.json\"", "\"-\""}) {
    EXPECT_NE(result.errors.find("morvex-cli: warning: " + std::string(piece) + " was ignored"),
              std::string::npos)
        << piece << "\n"
        << result.errors;
  }
  EXPECT_EQ(result.errors.find("settings.dat"), std::string::npos) << result.errors;
  EXPECT_EQ(scene.Read("out/a.txt"), "[A]");
}

TEST(UnattendedWords, ALineWithoutAnythingElseIsRunWithoutAWord) {
  const UnattendedScene scene("Anna|[A]\r\nborn *;|born ;\r\n|||\r\n");
  EXPECT_EQ(scene.Shell("morvex-cli -if settings.dat -dy 0").errors, "");
  EXPECT_EQ(scene.Shell("morvex-cli '' -if settings.dat").errors, "");
}

TEST(UnattendedWords, APieceCannotSteerTheTerminal) {
  const UnattendedScene scene("Anna|[A]\r\n|||\r\n");
  const ProgramResult result =
      scene.Shell("morvex-cli -if settings.dat \"$(printf -- '-\\033[2J')\"");
  EXPECT_NE(result.errors.find("\"-\\x1B[2J\" was ignored"), std::string::npos) << result.errors;
}

TEST(UnattendedWords, TheWarningsOfTheListAreSaid) {
  const UnattendedScene scene(
      "\xEF\xBB\xBFno row\r\nAnna|[A]\r\nAnnabel|[B]\r\nid=*|x\r\nb||\r\nc|d\r\n");
  const ProgramResult result = scene.Shell("morvex-cli -if settings.dat");
  EXPECT_EQ(result.status, 0);
  for (const char* said : {"list.txt:1: warning: a byte-order mark", "list.txt:1: warning: no row",
                           "list.txt:3: warning: \"Annabel\" never wins",
                           "list.txt:4: warning: \"id=*\" ends in", "list.txt:6: warning: lost"}) {
    EXPECT_NE(result.errors.find(said), std::string::npos) << said << "\n" << result.errors;
  }
  EXPECT_EQ(result.errors.find("error"), std::string::npos) << result.errors;
}

TEST(UnattendedWords, AListInUtf16IsWarnedOf) {
  const UnattendedScene scene(
      std::string("\xFF\xFE"
                  "A\0|\0x\0\r\0\n\0",
                  12));
  const ProgramResult result = scene.Shell("morvex-cli -if settings.dat");
  EXPECT_EQ(result.status, 0);
  EXPECT_NE(result.errors.find("list.txt:1: warning: the list is in UTF-16"), std::string::npos)
      << result.errors;
}

TEST(UnattendedWords, AListThatIsNotThereIsToldOfOnce) {
  const UnattendedScene scene("");
  const ProgramResult result = scene.Shell("rm list.txt; morvex-cli -if settings.dat");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.errors,
            "Nothing was anonymised: the replacement list has no row, or does not exist: "
            "list.txt\n");
}

}  // namespace
}  // namespace morvex::commands
