// Whole unattended runs with the console as the user service.
#include <gtest/gtest.h>

#include <optional>
#include <sstream>

#include "core/run/start_up.h"
#include "tests/support/test_program.h"
#include "ui/console/console_text.h"
#include "ui/console/console_user.h"

namespace morvex::test {
namespace {

class ConsoleRunTest : public ::testing::Test {
 protected:
  ConsoleRunTest() {
    files_.AddFolder("/program");
    files_.AddFile("/s/1.txt", "aca");
    files_.AddFile("/s/2.txt", std::string(200'000, 'a'));
    files_.AddFile("/s/3.txt", "aca");
    files_.AddFile("/list.txt", "a|b||\r\n");
    // Every reading of the clock adds 15 ms, so that every YieldToWindows handles events.
    system_.step = std::chrono::milliseconds(15);
  }

  // Runs to the program's end and returns its exit status.
  int Run(const std::string& source, const std::string& target, bool terminal,
          const std::string& more = "") {
    files_.AddFile("/job.dat", source + "\r\n" + target +
                                   "\r\n/list.txt\r\nlog=0\r\nsep=|\r\njok=\r\n1.txt\r\n");
    system_.command_line = "-if /job.dat" + more;
    user_.emplace(ConsoleStreams{input_, error_, terminal, terminal, [] { return 80; },
                                 [this] { return stop_ && stop_(); }});
    program_.emplace(Host{files_, system_, *user_});
    user_->Attach(*program_);
    EXPECT_EQ(StartUp(*program_), ErrorNumber::kNone);
    user_->ClearProgress();
    EXPECT_TRUE(HasEnded(*program_));
    return ExitStatus(*program_);
  }

  MemoryFiles files_;
  FakeSystem system_;
  std::istringstream input_;
  std::ostringstream error_;
  std::function<bool()> stop_;
  std::optional<ConsoleUser> user_;
  std::optional<Program> program_;
};

TEST_F(ConsoleRunTest, BehindAPipeARunSaysNothingWhileItWorks) {
  files_.AddFolder("/t");
  EXPECT_EQ(Run("/s", "/t", false), 0);
  EXPECT_EQ(error_.str(), "");
  EXPECT_EQ(ResultLines(*program_), "Scanned: 3\nSkipped: 0\n0 min 0 sec\nHits: 200004\nDone !\n");
}

TEST_F(ConsoleRunTest, OnATerminalTheProgressLineComesAndIsGoneInTheEnd) {
  files_.AddFolder("/t");
  EXPECT_EQ(Run("/s", "/t", true), 0);
  const std::string shown = error_.str();
  EXPECT_NE(shown.find("\r0 files  0 hits  0 bytes  0 %"), std::string::npos) << shown;
  EXPECT_NE(shown.find("\r2 files  "), std::string::npos) << shown;
  ASSERT_TRUE(shown.ends_with('\r')) << shown;
  const std::size_t cleared = shown.rfind('\r', shown.size() - 2);
  EXPECT_EQ(shown.find_first_not_of(' ', cleared + 1), shown.size() - 1);
}

TEST_F(ConsoleRunTest, AMissingSourceIsToldAndEndsWithStatus1) {
  EXPECT_EQ(Run("/none", "/t", false), 1);
  EXPECT_EQ(error_.str(), "/none\nSource folder doesn't exist.\n");
}

TEST_F(ConsoleRunTest, BehindAPipeAMissingTargetIsNotMade) {
  input_.str("y\n");
  EXPECT_EQ(Run("/s", "/new", false), 1);
  EXPECT_TRUE(error_.str().starts_with("Target folder doesn't exist. Create?\n"));
  EXPECT_FALSE(files_.Has("/new"));
}

TEST_F(ConsoleRunTest, OnATerminalAMissingTargetIsMadeAfterAYes) {
  input_.str("y\n");
  EXPECT_EQ(Run("/s", "/new/target", true), 0);
  EXPECT_NE(error_.str().find("Target folder doesn't exist. Create? [y/N] "), std::string::npos);
  EXPECT_EQ(files_.Bytes("/new/target/1.txt"), "bcb");
}

TEST_F(ConsoleRunTest, OnATerminalAMissingTargetIsNotMadeAfterAnythingElse) {
  input_.str("perhaps\n");
  EXPECT_EQ(Run("/s", "/new", true), 1);
  EXPECT_FALSE(files_.Has("/new"));
}

TEST_F(ConsoleRunTest, AnInterruptInMidFileStopsTheRunAndTellsWhatItLeft) {
  files_.AddFolder("/t");
  stop_ = [this] { return program_->run.FileOffset > 0; };
  EXPECT_EQ(Run("/s", "/t", false), 1);
  EXPECT_TRUE(user_->interrupted());
  EXPECT_EQ(program_->run.end, RunEnd::kStopped);
  EXPECT_EQ(files_.Bytes("/t/1.txt"), "bcb");
  EXPECT_LT(files_.Bytes("/t/2.txt").size(), 200'000u);
  EXPECT_FALSE(files_.Has("/t/3.txt"));
  EXPECT_EQ(RunNotes(*program_), "Cut short: /t/2.txt\nLeft in the source: /s/tijdel.enc\n");
}

TEST_F(ConsoleRunTest, AnInterruptDuringTheDelayEndsTheProgramBeforeTheRun) {
  files_.AddFolder("/t");
  stop_ = [this] { return program_->frmMorvex.Timer1.enabled; };
  EXPECT_EQ(Run("/s", "/t", false, " -dy 32767"), 1);
  EXPECT_TRUE(user_->interrupted());
  EXPECT_EQ(program_->run.end, RunEnd::kNone);
  EXPECT_EQ(files_.Below("/t"), std::vector<std::string>{});
}

TEST_F(ConsoleRunTest, TheRunComesAfterTheDelay) {
  files_.AddFolder("/t");
  int waited = 0;
  stop_ = [&] {
    if (program_->frmMorvex.lblTotalFiles.caption.get() == "Momentje...") {
      ++waited;
      EXPECT_EQ(files_.Below("/t"), std::vector<std::string>{});
    }
    return false;
  };
  EXPECT_EQ(Run("/s", "/t", false, " -dy 60"), 0);
  EXPECT_GT(waited, 0);
  EXPECT_EQ(files_.Bytes("/t/1.txt"), "bcb");
}

TEST_F(ConsoleRunTest, OnATerminalTheDelayIsShown) {
  files_.AddFolder("/t");
  EXPECT_EQ(Run("/s", "/t", true, " -dy 60"), 0);
  EXPECT_TRUE(error_.str().starts_with("\rMomentje...")) << error_.str();
}

TEST_F(ConsoleRunTest, FilesWithoutACopyAreToldAfterTheRun) {
  files_.AddFolder("/t/1.txt");
  files_.AddFile("/s/Morvex.txt", "aca");
  EXPECT_EQ(Run("/s", "/t", false), 3);
  const std::string notes = RunNotes(*program_);
  EXPECT_TRUE(notes.starts_with("1 file was passed over and not copied: ")) << notes;
  EXPECT_TRUE(
      notes.ends_with("\n1 file or folder could not be copied. The first: /s/1.txt: "
                      "Error 75: Path/File access error: no copy could be made at: /t/1.txt\n"))
      << notes;
}

TEST(ConsoleAlone, OkOrCancelIsOkAfterAYes) {
  std::istringstream input("y\n");
  std::ostringstream error;
  ConsoleUser user({input, error, true, true, nullptr, nullptr});
  EXPECT_EQ(user.ShowMessage("Sure?", MessageButtons::kOkCancel, MessageIcon::kNone), Answer::kOk);
}

TEST(ConsoleAlone, WithoutAProgramEventsAreNothing) {
  std::istringstream input;
  std::ostringstream error;
  ConsoleUser user({input, error, true, true, nullptr, [] { return true; }});
  user.HandlePendingEvents();
  EXPECT_FALSE(user.interrupted());
  EXPECT_EQ(error.str(), "");
}

TEST(ConsoleAlone, WithoutAWidthTheLineIsNotCut) {
  TestProgram test;
  test.program.run.working = true;
  for (const int columns : {-1, 0, 1}) {
    std::istringstream input;
    std::ostringstream error;
    ConsoleUser user({input, error, true, true,
                      columns < 0 ? std::function<int()>() : [columns] { return columns; },
                      nullptr});
    user.Attach(test.program);
    user.HandlePendingEvents();
    EXPECT_EQ(error.str(), "\r" + ProgressLine(test.program)) << columns;
  }
}

TEST(ConsoleAlone, AfterAMessageTheProgressLineComesAgain) {
  TestProgram test;
  test.program.run.working = true;
  std::istringstream input;
  std::ostringstream error;
  ConsoleUser user({input, error, true, true, nullptr, nullptr});
  user.Attach(test.program);
  user.HandlePendingEvents();
  user.ShowMessage("text", MessageButtons::kOk, MessageIcon::kNone);
  error.str("");
  test.system.steady += std::chrono::milliseconds(100);
  user.HandlePendingEvents();
  EXPECT_EQ(error.str(), "\r" + ProgressLine(test.program));
}

TEST(ConsoleAlone, AUserWhoAnswersYesIsNotAsked) {
  std::istringstream input;
  std::ostringstream error;
  ConsoleStreams streams{input, error, false, false, nullptr, nullptr};
  streams.answers_yes = true;
  ConsoleUser user(streams);
  EXPECT_EQ(user.ShowMessage("Make?", MessageButtons::kYesNo, MessageIcon::kNone), Answer::kYes);
  EXPECT_EQ(user.ShowMessage("Sure?", MessageButtons::kOkCancel, MessageIcon::kNone), Answer::kOk);
  EXPECT_EQ(error.str(), "");
  user.ShowMessage("text", MessageButtons::kOk, MessageIcon::kNone);
  EXPECT_EQ(error.str(), "text\n");
}

TEST(ConsoleAlone, ProgressThatIsNotWantedIsNotShown) {
  TestProgram test;
  test.program.run.working = true;
  std::istringstream input;
  std::ostringstream error;
  ConsoleStreams streams{input, error, true, true, nullptr, nullptr};
  streams.shows_progress = false;
  ConsoleUser user(streams);
  user.Attach(test.program);
  user.HandlePendingEvents();
  EXPECT_EQ(error.str(), "");
}

}  // namespace
}  // namespace morvex::test
