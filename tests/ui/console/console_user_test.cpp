#include "ui/console/console_user.h"

#include <gtest/gtest.h>

#include <optional>
#include <sstream>

#include "tests/support/test_program.h"

namespace morvex::test {
namespace {

// A console that reads and writes strings, attached to a program.
class ConsoleUserTest : public testing::Test {
 protected:
  ConsoleUser& Console(bool input_is_terminal, bool error_is_terminal) {
    console_.emplace(ConsoleStreams{input_, error_, input_is_terminal, error_is_terminal,
                                    [this] { return columns_; }, [this] { return stop_; }});
    console_->Attach(test_.program);
    return *console_;
  }

  // Puts the program into a run: 5 files are done, and the progress bar is at 10 of 100.
  void Work() {
    test_.program.run.working = true;
    test_.program.run.FilesDone = 5;
    test_.program.frmMorvex.ProgressBar1.SetMaximum(100);
    test_.program.frmMorvex.ProgressBar1.SetValue(10);
  }

  TestProgram test_;
  std::istringstream input_;
  std::ostringstream error_;
  int columns_ = 80;
  bool stop_ = false;
  std::optional<ConsoleUser> console_;
};

TEST_F(ConsoleUserTest, AMessageGoesToTheErrorStreamWithItsExactText) {
  const Answer answer = Console(false, false)
                            .ShowMessage("/source\r\nSource folder doesn't exist.",
                                         MessageButtons::kOk, MessageIcon::kNone);
  EXPECT_EQ(answer, Answer::kOk);
  EXPECT_EQ(error_.str(), "/source\nSource folder doesn't exist.\n");
}

TEST_F(ConsoleUserTest, WithoutATerminalAQuestionIsAnsweredNoWithoutReading) {
  input_.str("y\n");
  const Answer answer = Console(false, false)
                            .ShowMessage("Target folder doesn't exist. Create?",
                                         MessageButtons::kYesNo, MessageIcon::kNone);
  EXPECT_EQ(answer, Answer::kNo);
  EXPECT_EQ(error_.str(),
            "Target folder doesn't exist. Create?\n"
            "There is no terminal to answer on, so the answer is no.\n");
  std::string unread;
  std::getline(input_, unread);
  EXPECT_EQ(unread, "y");
}

TEST_F(ConsoleUserTest, WithoutATerminalOkOrCancelIsCancelled) {
  EXPECT_EQ(
      Console(false, false).ShowMessage("Sure?", MessageButtons::kOkCancel, MessageIcon::kNone),
      Answer::kCancel);
}

struct AnswerCase {
  const char* typed;
  Answer answer;
};

class ConsoleAnswerTest : public ConsoleUserTest, public testing::WithParamInterface<AnswerCase> {};

TEST_P(ConsoleAnswerTest, OnATerminalOnlyAClearYesIsYes) {
  input_.str(GetParam().typed);
  EXPECT_EQ(Console(true, true).ShowMessage("Create?", MessageButtons::kYesNo, MessageIcon::kNone),
            GetParam().answer);
  const std::string typed = GetParam().typed;
  EXPECT_EQ(error_.str(), typed.empty() ? "Create? [y/N] \n" : "Create? [y/N] ");
}

TEST_F(ConsoleUserTest, AnInterruptAtTheQuestionIsNoAndStopsTheProgram) {
  stop_ = true;
  EXPECT_EQ(Console(true, true).ShowMessage("Create?", MessageButtons::kYesNo, MessageIcon::kNone),
            Answer::kNo);
  EXPECT_TRUE(console_->interrupted());
}

INSTANTIATE_TEST_SUITE_P(
    Typed, ConsoleAnswerTest,
    testing::Values(AnswerCase{"y\n", Answer::kYes}, AnswerCase{"Y\n", Answer::kYes},
                    AnswerCase{"yes\n", Answer::kYes}, AnswerCase{"y\r\n", Answer::kYes},
                    AnswerCase{"n\n", Answer::kNo}, AnswerCase{"\n", Answer::kNo},
                    AnswerCase{"yacht\n", Answer::kNo}, AnswerCase{"", Answer::kNo}));

TEST_F(ConsoleUserTest, FileDialogsAreCancelled) {
  ConsoleUser& console = Console(true, true);
  EXPECT_EQ(console.ChooseFileToOpen({}).error, kDialogCancelled);
  EXPECT_EQ(console.ChooseFileToSave({}).error, kDialogCancelled);
}

TEST_F(ConsoleUserTest, ARunShowsItsProgressOnATerminal) {
  Work();
  Console(false, true).HandlePendingEvents();
  EXPECT_EQ(error_.str(), "\r5 files  0 hits  0 bytes  10 %");
}

TEST_F(ConsoleUserTest, WithoutATerminalThereIsNoProgressLine) {
  Work();
  Console(true, false).HandlePendingEvents();
  EXPECT_EQ(error_.str(), "");
}

TEST_F(ConsoleUserTest, WithoutARunThereIsNoProgressLine) {
  Console(true, true).HandlePendingEvents();
  EXPECT_EQ(error_.str(), "");
}

TEST_F(ConsoleUserTest, TheProgressLineComesAtMostEveryTenthOfASecond) {
  Work();
  ConsoleUser& console = Console(false, true);
  console.HandlePendingEvents();
  const std::size_t once = error_.str().size();
  test_.system.steady += std::chrono::milliseconds(99);
  console.HandlePendingEvents();
  EXPECT_EQ(error_.str().size(), once);
  test_.system.steady += std::chrono::milliseconds(1);
  console.HandlePendingEvents();
  EXPECT_EQ(error_.str().size(), 2 * once);
}

TEST_F(ConsoleUserTest, AShorterProgressLineCoversTheLongerOne) {
  Work();
  test_.program.run.HitsTotal = 1000;
  ConsoleUser& console = Console(false, true);
  console.HandlePendingEvents();
  const std::size_t longer = error_.str().size();
  error_.str("");
  test_.program.run.HitsTotal = 1;
  test_.system.steady += std::chrono::seconds(1);
  console.HandlePendingEvents();
  EXPECT_EQ(error_.str().size(), longer);
  // "1 hit" is four characters shorter than "1000 hits", so four blanks erase the end of the longer
  // line.
  EXPECT_EQ(error_.str(), "\r5 files  1 hit  0 bytes  10 %    ");
}

TEST_F(ConsoleUserTest, TheProgressLineIsCutBeforeTheLastColumn) {
  Work();
  columns_ = 11;
  Console(false, true).HandlePendingEvents();
  EXPECT_EQ(error_.str(), "\r5 files  0");
}

TEST_F(ConsoleUserTest, AMessageTakesTheProgressLineOffFirst) {
  Work();
  ConsoleUser& console = Console(false, true);
  console.HandlePendingEvents();
  const std::size_t length = error_.str().size() - 1;
  error_.str("");
  console.ShowMessage("text", MessageButtons::kOk, MessageIcon::kNone);
  EXPECT_EQ(error_.str(), "\r" + std::string(length, ' ') + "\rtext\n");
}

TEST_F(ConsoleUserTest, ClearingWithoutAProgressLineWritesNothing) {
  Console(false, true).ClearProgress();
  EXPECT_EQ(error_.str(), "");
}

TEST_F(ConsoleUserTest, AnInterruptStopsTheProgramOnce) {
  ConsoleUser& console = Console(false, false);
  console.HandlePendingEvents();
  EXPECT_FALSE(test_.program.Beeindigd);
  EXPECT_FALSE(console.interrupted());
  stop_ = true;
  console.HandlePendingEvents();
  EXPECT_TRUE(test_.program.Beeindigd);
  EXPECT_TRUE(console.interrupted());
}

TEST_F(ConsoleUserTest, WaitingHandlesEventsToo) {
  stop_ = true;
  Console(false, false).WaitForEvents(std::chrono::milliseconds(1));
  EXPECT_TRUE(test_.program.Beeindigd);
}

}  // namespace
}  // namespace morvex::test
