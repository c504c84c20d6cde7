// Making a run ready (arming) and starting it from the main window: what is shown before, during
// and after the run.
#include <QSignalSpy>

#include "core/run/main_window_events.h"
#include "tests/ui/qt/main_window_test.h"
#include "ui/qt/elided_label.h"

namespace morvex::test {
namespace {

class MainWindowRunTest : public MainWindowTest {};

TEST_F(MainWindowRunTest, OkArmsTheRunAndSavesTheSettings) {
  Start();
  Activate();
  QTest::keyClicks(&source(), "/s");
  QTest::keyClicks(&target(), "/t");
  Click(ok());
  EXPECT_EQ(Caption(go()), "GO !");
  EXPECT_TRUE(go().isEnabled());
  EXPECT_FALSE(ok().isEnabled());
  EXPECT_FALSE(source().isEnabled());
  EXPECT_FALSE(target().isEnabled());
  EXPECT_TRUE(files_.Bytes("/program/Init.dat").starts_with("/s\r\n/t\r\n"));
}

TEST_F(MainWindowRunTest, TheFocusPassesFromOkToGoWhichStandsOut) {
  StartWith("/s", "/t");
  Activate();
  ok().setFocus();
  QTest::keyClick(&ok(), Qt::Key_Return);
  Settle();
  EXPECT_TRUE(go().hasFocus());
  EXPECT_TRUE(go().isDefault());
  EXPECT_NE(go().palette().color(QPalette::Button), exit().palette().color(QPalette::Button));
  Text1_Change(program_, kSourceBox, "/other");
  Settle();
  EXPECT_FALSE(go().isDefault());
  EXPECT_EQ(go().palette().color(QPalette::Button), ok().palette().color(QPalette::Button));
}

TEST_F(MainWindowRunTest, AKeyThatIsHeldDownOnOkDoesNotGoOnToGo) {
  StartWith("/s", "/t");
  Activate();
  ok().setFocus();
  QTest::keyClick(&ok(), Qt::Key_Return);
  Settle();
  QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, "\r", true);
  QApplication::sendEvent(QApplication::focusWidget(), &repeated);
  Settle();
  EXPECT_FALSE(program_.run.RunStarted);
}

TEST_F(MainWindowRunTest, AFolderRunShowsItsResultAndTheWindowIsIdleAgain) {
  StartWith("/s", "/t");
  Click(ok());
  ClickGo();
  EXPECT_EQ(files_.Bytes("/t/one.txt"), "bcb");
  EXPECT_EQ(files_.Bytes("/t/sub/two.txt"), "bcb");
  EXPECT_EQ(files_.Bytes("/t/plain.bin"), "aca");
  EXPECT_EQ(Text("lblPercentage"), "Hits: 4\nDone !");
  EXPECT_EQ(Text("lblTijd"), "0 min 0 sec");
  EXPECT_FALSE(go().isEnabled());
  EXPECT_TRUE(ok().isEnabled());
  EXPECT_TRUE(exit().isEnabled());
  EXPECT_TRUE(source().isEnabled());
  EXPECT_TRUE(target().isEnabled());
  EXPECT_FALSE(Get<QWidget>("ProgressBar1").isVisible());
  EXPECT_EQ(window().cursor().shape(), Qt::ArrowCursor);
  EXPECT_EQ(program_.run.end, RunEnd::kFinished);
}

TEST_F(MainWindowRunTest, WhatTheTargetHeldBeforeIsShownInPlaceOfTheBar) {
  files_.AddFile("/t/old.txt", "Anna");
  StartWith("/s", "/t");
  const auto& note = Get<ElidedLabel>("lblNote");
  EXPECT_EQ(note.text(), "");
  Click(ok());
  ClickGo();
  EXPECT_EQ(note.text(), "1 file in the target is not of this run.");
  EXPECT_TRUE(note.isVisible());
  EXPECT_FALSE(Get<QWidget>("ProgressBar1").isVisible());
  EXPECT_TRUE(note.geometry().intersects(Get<QWidget>("ProgressBar1").geometry()));
}

TEST_F(MainWindowRunTest, ASingleFileRunLeavesTheWindowArmed) {
  StartWith("/s/one.txt", "/t/copy.txt");
  Click(ok());
  ClickGo();
  EXPECT_EQ(files_.Bytes("/t/copy.txt"), "bcb");
  EXPECT_EQ(Text("lblPercentage"), "Hits: 2\nDone !");
  EXPECT_EQ(Text("lblTotalFiles"), "Scanned: 1 ");
  EXPECT_EQ(Caption(go()), "GO !");
  EXPECT_TRUE(go().isEnabled());
  EXPECT_FALSE(ok().isEnabled());
  EXPECT_FALSE(source().isEnabled());
}

TEST_F(MainWindowRunTest, AMissingSourceIsToldWithItsPathAndMarkedRed) {
  StartWith("/nowhere", "/t");
  Activate();
  Click(ok());
  QString text;
  QMessageBox::StandardButtons buttons;
  bool red = false;
  OnMessage([&](QMessageBox& box) {
    text = box.text();
    buttons = box.standardButtons();
    desktop_->Refresh();
    red = IsRed(source());
    box.button(QMessageBox::Ok)->click();
  });
  ClickGo();
  EXPECT_EQ(text, "/nowhere\nSource folder doesn't exist.");
  EXPECT_EQ(buttons, QMessageBox::Ok);
  EXPECT_TRUE(red);
  EXPECT_TRUE(IsRed(source()));
  EXPECT_EQ(window().focusWidget(), &source());
  EXPECT_EQ(Caption(go()), ">----------->");
  EXPECT_TRUE(ok().isEnabled());
  EXPECT_TRUE(source().isEnabled());
  EXPECT_TRUE(target().isEnabled());
  EXPECT_EQ(window().cursor().shape(), Qt::ArrowCursor);
}

TEST_F(MainWindowRunTest, TheNextGoShowsTheSourceInBlackAgain) {
  StartWith("/nowhere", "/t");
  Click(ok());
  OnMessage([](QMessageBox& box) { box.accept(); });
  ClickGo();
  ASSERT_TRUE(IsRed(source()));
  source().selectAll();
  QTest::keyClicks(&source(), "/s");
  Settle();
  Click(ok());
  ClickGo();
  EXPECT_FALSE(IsRed(source()));
  EXPECT_EQ(program_.run.end, RunEnd::kFinished);
}

TEST_F(MainWindowRunTest, AMissingTargetIsMadeWhenTheUserSaysYes) {
  StartWith("/s", "/new/target");
  Click(ok());
  QString text;
  QMessageBox::StandardButtons buttons;
  bool red = false;
  OnMessage([&](QMessageBox& box) {
    text = box.text();
    buttons = box.standardButtons();
    desktop_->Refresh();
    red = IsRed(target());
    box.button(QMessageBox::Yes)->click();
  });
  ClickGo();
  EXPECT_EQ(text, "Target folder doesn't exist. Create?");
  EXPECT_EQ(buttons, QMessageBox::Yes | QMessageBox::No);
  EXPECT_TRUE(red);
  EXPECT_FALSE(IsRed(target()));
  EXPECT_EQ(files_.Bytes("/new/target/sub/two.txt"), "bcb");
}

TEST_F(MainWindowRunTest, AMissingTargetThatIsRefusedGetsTheFocus) {
  StartWith("/s", "/new");
  Activate();
  Click(ok());
  OnMessage([&](QMessageBox& box) { box.button(QMessageBox::No)->click(); });
  ClickGo();
  EXPECT_EQ(window().focusWidget(), &target());
  EXPECT_FALSE(IsRed(target()));
  EXPECT_TRUE(source().isEnabled());
  EXPECT_TRUE(target().isEnabled());
  EXPECT_TRUE(exit().isEnabled());
  EXPECT_EQ(Caption(go()), "GO !");
  EXPECT_FALSE(files_.Has("/new"));
  EXPECT_EQ(window().cursor().shape(), Qt::ArrowCursor);
}

TEST_F(MainWindowRunTest, TypingAfterARefusedTargetDisablesGo) {
  StartWith("/s", "/new");
  Click(ok());
  OnMessage([&](QMessageBox& box) { box.button(QMessageBox::No)->click(); });
  ClickGo();
  ASSERT_TRUE(go().isEnabled());
  QTest::keyClicks(&target(), "er");
  Settle();
  EXPECT_FALSE(go().isEnabled());
  EXPECT_EQ(Caption(go()), ">------------>>>>");
}

TEST_F(MainWindowRunTest, AfterARefusedTargetACorrectedPathCanBeArmedAndRun) {
  StartWith("/s", "/new");
  Activate();
  Click(ok());
  OnMessage([&](QMessageBox& box) { box.button(QMessageBox::No)->click(); });
  ClickGo();
  target().selectAll();
  QTest::keyClicks(&target(), "/t");
  Settle();
  ASSERT_TRUE(ok().isEnabled()) << "nothing but Exit is left";
  Click(ok());
  ClickGo();
  EXPECT_EQ(program_.run.end, RunEnd::kFinished);
}

TEST_F(MainWindowRunTest, ARedPathIsBlackAgainWithTheFirstLetterThatCorrectsIt) {
  StartWith("/nowhere", "/t");
  Click(ok());
  OnMessage([](QMessageBox& box) { box.accept(); });
  ClickGo();
  ASSERT_TRUE(IsRed(source()));
  QTest::keyClicks(&source(), "x");
  Settle();
  EXPECT_FALSE(IsRed(source()));
}

TEST_F(MainWindowRunTest, NoBarIsShownBehindTheQuestion) {
  StartWith("/s", "/new");
  Click(ok());
  bool asked = false;
  OnMessage([&](QMessageBox& box) {
    asked = true;
    desktop_->Refresh();
    EXPECT_FALSE(Get<QWidget>("ProgressBar1").isVisible());
    box.button(QMessageBox::No)->click();
  });
  ClickGo();
  EXPECT_TRUE(asked);
}

TEST_F(MainWindowRunTest, ASecondRunShowsNothingOfTheFirstOneWhileItWorks) {
  StartWith("/s", "/t");
  Click(ok());
  ClickGo();
  ASSERT_EQ(Text("lblPercentage"), "Hits: 4\nDone !");
  Click(ok());
  bool seen = false;
  InRun([&] {
    seen = true;
    EXPECT_FALSE(Text("lblPercentage").contains("Done !")) << Text("lblPercentage").toStdString();
    EXPECT_EQ(Text("lblTijd"), "");
  });
  ClickGo();
  EXPECT_TRUE(seen);
}

TEST_F(MainWindowRunTest, ATargetThatCannotBeMadeIsToldWithItsPath) {
  StartWith("/s", "/new");
  files_.fail = [](const std::string& call, const std::string&) {
    return call == "CreateFolder" ? ErrorNumber::kPermissionDenied : ErrorNumber::kNone;
  };
  Click(ok());
  QString text;
  OnMessage([&](QMessageBox& question) {
    OnMessage([&](QMessageBox& box) {
      text = box.text();
      box.accept();
    });
    question.button(QMessageBox::Yes)->click();
  });
  ClickGo();
  EXPECT_EQ(text, "/new\nCan't create target folder.");
  EXPECT_TRUE(IsRed(target()));
  EXPECT_FALSE(go().isEnabled());
  EXPECT_TRUE(ok().isEnabled());
}

TEST_F(MainWindowRunTest, WhileARunWorksItsProgressIsShownAndTheCommandsRest) {
  StartWith("/s", "/t");
  Click(ok());
  bool seen = false;
  InRun([&] {
    seen = true;
    EXPECT_TRUE(Get<QWidget>("ProgressBar1").isVisible());
    EXPECT_EQ(window().cursor().shape(), Qt::WaitCursor);
    EXPECT_FALSE(go().isEnabled());
    EXPECT_FALSE(ok().isEnabled());
    EXPECT_FALSE(source().isEnabled());
    EXPECT_TRUE(exit().isEnabled());
    EXPECT_NE(Get<ElidedLabel>("lblFiles").text(), "");
  });
  ClickGo();
  EXPECT_TRUE(seen);
}

TEST_F(MainWindowRunTest, WhileARunWorksThePicturesAndGoDoNothing) {
  StartWith("/s/one.txt", "/t/copy.txt");  // a run over a single file leaves Go enabled
  files_.AddFile("/s/one.txt", std::string(200'000, 'a'));
  Click(ok());
  bool seen = false;
  system_.step = std::chrono::milliseconds(15);
  std::function<void()> act = [&] {
    if (!program_.run.working) return QTimer::singleShot(0, &program_context_, act);
    seen = true;
    QTest::mouseClick(&Get<QWidget>("imOpties"), Qt::LeftButton);
    QTest::mouseClick(&Get<QWidget>("imList"), Qt::LeftButton);
    QTest::mouseClick(&go(), Qt::LeftButton);
    EXPECT_FALSE(program_.frmOpties.visible);
    EXPECT_FALSE(program_.frmReplacements.visible);
    EXPECT_TRUE(program_.frmMorvex.visible);
  };
  QTimer::singleShot(0, &program_context_, act);
  ClickGo();
  EXPECT_TRUE(seen);
  EXPECT_EQ(program_.run.FilesDone, 1);
  EXPECT_EQ(program_.run.HitsTotal, 200'000);
}

TEST_F(MainWindowRunTest, ExitDuringARunEndsItAndTheProgram) {
  StartWith("/s", "/t");
  Click(ok());
  QSignalSpy ended(&*desktop_, &Desktop::Ended);
  InRun([&] { QTest::mouseClick(&exit(), Qt::LeftButton); });
  ClickGo();
  EXPECT_EQ(program_.run.end, RunEnd::kStopped);
  EXPECT_TRUE(HasEnded(program_));
  EXPECT_FALSE(window().isVisible());
  EXPECT_FALSE(files_.Has("/t/sub/two.txt"));
  EXPECT_GE(ended.count(), 1);
}

TEST_F(MainWindowRunTest, ClosingTheWindowDuringARunEndsItAndTheProgram) {
  StartWith("/s", "/t");
  Click(ok());
  InRun([&] { window().close(); });
  ClickGo();
  EXPECT_EQ(program_.run.end, RunEnd::kStopped);
  EXPECT_TRUE(HasEnded(program_));
  EXPECT_FALSE(window().isVisible());
}

TEST_F(MainWindowRunTest, AKeyTypedTwiceOnGoDoesNotReachExit) {
  StartWith("/s", "/t");
  Activate();
  Click(ok());
  go().setFocus();
  bool seen = false;
  InRun([&] {
    seen = true;
    EXPECT_NE(QApplication::focusWidget(), &exit());
  });
  QTest::keyClick(&go(), Qt::Key_Space);
  Settle();
  EXPECT_TRUE(seen);
  EXPECT_FALSE(program_.Beeindigd);
  EXPECT_EQ(program_.run.end, RunEnd::kFinished);
}

// While the question is open, the main window has no focus. The window gets the focus back after
// the run has disabled Go.
TEST_F(MainWindowRunTest, EnterAfterTheQuestionDoesNotEndTheProgram) {
  StartWith("/s", "/new");
  Activate();
  ok().setFocus();
  QTest::keyClick(&ok(), Qt::Key_Return);
  Settle();
  ASSERT_TRUE(go().hasFocus());
  OnMessage(
      [](QMessageBox& box) { QTest::keyClick(box.button(QMessageBox::Yes), Qt::Key_Return); });
  bool seen = false;
  InRun([&] {
    seen = true;
    window().activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window()));
    ASSERT_NE(QApplication::focusWidget(), nullptr);
    EXPECT_NE(QApplication::focusWidget(), &exit());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
  });
  QTest::keyClick(&go(), Qt::Key_Return);
  Settle();
  EXPECT_TRUE(seen);
  EXPECT_FALSE(program_.Beeindigd) << "a key pressed Exit";
  EXPECT_EQ(program_.run.end, RunEnd::kFinished);
}

TEST_F(MainWindowRunTest, AfterARunTheFocusStandsOnOk) {
  StartWith("/s", "/t");
  Activate();
  Click(ok());
  ClickGo();
  EXPECT_EQ(program_.run.end, RunEnd::kFinished);
  EXPECT_EQ(QApplication::focusWidget(), &ok());
}

TEST_F(MainWindowRunTest, AWindowThatComesToTheFrontInAnUnattendedRunDoesNotStandOnExit) {
  files_.AddFile("/set.dat", "/s\r\n/t\r\n/list.txt\r\nlog=0\r\nsep=|\r\njok=*\r\n1.txt\r\n");
  system_.command_line = "-if /set.dat";
  desktop_.emplace(program_);
  bool seen = false;
  InRun([&] {
    seen = true;
    window().activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window()));
    EXPECT_NE(QApplication::focusWidget(), &exit());
  });
  EXPECT_EQ(StartUp(program_), ErrorNumber::kNone);
  EXPECT_TRUE(seen);
}

TEST_F(MainWindowRunTest, AfterExitInMidFileTheWindowStaysWithAWordUntilTheRunHasEnded) {
  files_.AddFile("/s/one.txt", std::string(200'000, 'a'));
  StartWith("/s", "/t");
  Click(ok());
  bool copying = false;
  bool shown_then = false;
  QString word;
  // Looks at the window while the program copies the unfinished output and handles no events.
  files_.fail = [&](const std::string& call, const std::string& path) {
    if (program_.Beeindigd && call == "CopyTo" && path == "/t/one.txt" && !copying) {
      copying = true;
      shown_then = window().isVisible() && !window().isEnabled();
      word = Text("lblTotalFiles");
    }
    return ErrorNumber::kNone;
  };
  system_.step = std::chrono::milliseconds(15);
  std::function<void()> act = [&] {
    if (program_.run.FileOffset == 0) return QTimer::singleShot(0, &program_context_, act);
    QTest::mouseClick(&exit(), Qt::LeftButton);
    window().close();  // like an impatient user
    EXPECT_TRUE(window().isVisible());
  };
  QTimer::singleShot(0, &program_context_, act);
  ClickGo();
  ASSERT_TRUE(copying) << "Exit came before or after the file";
  EXPECT_TRUE(shown_then);
  // The copy in the target is only a part of the file, so the label calls the target incomplete.
  EXPECT_EQ(word, "Stopping ...\nThe target is not complete.");
  EXPECT_FALSE(program_.run.cut_short.empty());
  EXPECT_TRUE(HasEnded(program_));
  EXPECT_FALSE(window().isVisible());
}

TEST_F(MainWindowRunTest, AnUnattendedRunPressesTheButtonsAndEnds) {
  files_.AddFile("/set.dat", "/s\r\n/t\r\n/list.txt\r\nlog=0\r\nsep=|\r\njok=*\r\n1.txt\r\n");
  system_.command_line = "-if /set.dat";
  desktop_.emplace(program_);
  QSignalSpy ended(&*desktop_, &Desktop::Ended);
  EXPECT_EQ(StartUp(program_), ErrorNumber::kNone);
  Settle();
  EXPECT_TRUE(HasEnded(program_));
  EXPECT_EQ(ExitStatus(program_), 0);
  EXPECT_EQ(files_.Bytes("/t/one.txt"), "bcb");
  EXPECT_FALSE(window().isVisible());
  EXPECT_GE(ended.count(), 1);
}

TEST_F(MainWindowRunTest, BeforeADelayedRunTheWindowShowsThatItWaits) {
  files_.AddFile("/set.dat", "/s\r\n/t\r\n/list.txt\r\nlog=0\r\nsep=|\r\njok=*\r\n1.txt\r\n");
  system_.command_line = "-if /set.dat -dy 100";
  system_.step = std::chrono::milliseconds(20);
  desktop_.emplace(program_);
  QString waiting;
  QTimer::singleShot(20, &program_context_, [&] {
    desktop_->Refresh();
    EXPECT_TRUE(window().isVisible());
    waiting = Text("lblTotalFiles");
  });
  EXPECT_EQ(StartUp(program_), ErrorNumber::kNone);
  EXPECT_EQ(waiting, "Momentje...");
  EXPECT_EQ(ExitStatus(program_), 0);
}

TEST_F(MainWindowRunTest, ExitDuringTheDelayEndsTheProgramWithoutARun) {
  files_.AddFile("/set.dat", "/s\r\n/t\r\n/list.txt\r\nlog=0\r\nsep=|\r\njok=*\r\n1.txt\r\n");
  system_.command_line = "-if /set.dat -dy 30000";
  desktop_.emplace(program_);
  QTimer::singleShot(20, &program_context_, [&] {
    desktop_->Refresh();
    QTest::mouseClick(&exit(), Qt::LeftButton);
  });
  EXPECT_EQ(StartUp(program_), ErrorNumber::kNone);
  Settle();
  EXPECT_TRUE(HasEnded(program_));
  EXPECT_EQ(ExitStatus(program_), 1);
  EXPECT_FALSE(files_.Has("/t/one.txt"));
}

TEST_F(MainWindowRunTest, AMissingSettingsFileEndsTheProgramBeforeAWindowIsShown) {
  system_.command_line = "-if /nowhere.dat";
  desktop_.emplace(program_);
  QSignalSpy ended(&*desktop_, &Desktop::Ended);
  EXPECT_EQ(StartUp(program_), ErrorNumber::kNone);
  Settle();
  EXPECT_TRUE(HasEnded(program_));
  EXPECT_EQ(ExitStatus(program_), 1);
  EXPECT_FALSE(window().isVisible());
  EXPECT_GE(ended.count(), 1);
}

}  // namespace
}  // namespace morvex::test
