// Message boxes and file dialogs, used with a user's clicks and keys, and waiting for events.
#include "ui/qt/qt_user.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <ctime>
#include <fstream>
#include <functional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "tests/ui/qt/file_names.h"

namespace morvex::test {
namespace {

using namespace std::chrono_literals;

class QtUserTest : public testing::Test {
 protected:
  // Returns at once. As soon as a `Dialog` (a message box or a file dialog) is open, calls `act`
  // with it.
  template <class Dialog>
  void On(std::function<void(Dialog&)> act) {
    QTimer::singleShot(5, &context_, [this, act = std::move(act)]() mutable {
      auto* const dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
      if (dialog == nullptr) {
        On<Dialog>(std::move(act));
        return;
      }
      act(*dialog);
    });
  }
  void OnMessage(std::function<void(QMessageBox&)> act) { On<QMessageBox>(std::move(act)); }
  void OnDialog(std::function<void(QFileDialog&)> act) { On<QFileDialog>(std::move(act)); }

  static void Press(QMessageBox& box, QMessageBox::StandardButton button) {
    QTest::mouseClick(box.button(button), Qt::LeftButton);
  }
  // Shows a message with `buttons`, calls `act` with its box, and returns the answer.
  Answer AnswerTo(MessageButtons buttons, std::function<void(QMessageBox&)> act) {
    OnMessage(std::move(act));
    return user_.ShowMessage("text", buttons, MessageIcon::kNone);
  }

  // Enters a name in the dialog's name field and accepts the dialog.
  static void Enter(QFileDialog& dialog, const QString& name) {
    auto* const field = dialog.findChild<QLineEdit*>("fileNameEdit");
    ASSERT_NE(field, nullptr);
    field->setText(name);
    QMetaObject::invokeMethod(&dialog, "accept");
  }

  std::string Folder() const { return NativePath(folder_.path()); }
  std::string PathOf(const char* name) const { return NativePath(folder_.filePath(name)); }
  std::string MakeFile(const std::string& name) {
    const std::string path = Folder() + QDir::separator().toLatin1() + name;
    std::ofstream(path) << "content";
    return path;
  }
  FileDialog ListDialog(const std::string& name = "") const {
    return {"txt", "Text (*.txt)|*.txt", Folder(), name};
  }

  QtUser user_{CodePage::OfFileNames(TextCodec::kUtf8)};
  QObject context_;
  QTemporaryDir folder_;
};

using MessageBoxTest = QtUserTest;
using FileDialogTest = QtUserTest;
using WaitingTest = QtUserTest;

TEST_F(MessageBoxTest, HasTheProgramsTitleTheTextsLinesAndNoIcon) {
  OnMessage([](QMessageBox& box) {
    EXPECT_EQ(box.windowTitle(), "Morvex");
    EXPECT_EQ(box.text(), "first \n\nthird");
    EXPECT_EQ(box.icon(), QMessageBox::NoIcon);
    EXPECT_TRUE(box.isModal());
    Press(box, QMessageBox::Ok);
  });
  user_.ShowMessage("first \r\n\r\nthird", MessageButtons::kOk, MessageIcon::kNone);
}

TEST_F(MessageBoxTest, AnInformationHasItsIcon) {
  OnMessage([](QMessageBox& box) {
    EXPECT_EQ(box.icon(), QMessageBox::Information);
    Press(box, QMessageBox::Ok);
  });
  user_.ShowMessage("text", MessageButtons::kOk, MessageIcon::kInformation);
}

TEST_F(MessageBoxTest, TextIsNeverTakenForMarkup) {
  OnMessage([](QMessageBox& box) {
    EXPECT_EQ(box.text(), "<b>/folder</b>");
    EXPECT_EQ(box.textFormat(), Qt::PlainText);
    Press(box, QMessageBox::Ok);
  });
  user_.ShowMessage("<b>/folder</b>", MessageButtons::kOk, MessageIcon::kNone);
}

TEST_F(MessageBoxTest, AKeyThatWasHeldDownBeforeAnswersNothing) {
  const auto hold_then_decline = [](QMessageBox& box) {
    for (QWidget* const place :
         {static_cast<QWidget*>(box.button(QMessageBox::Yes)), static_cast<QWidget*>(&box)}) {
      QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, "\r", true);
      QApplication::sendEvent(place, &repeated);
      EXPECT_TRUE(box.isVisible());
      EXPECT_EQ(box.clickedButton(), nullptr);
    }
    Press(box, QMessageBox::No);
  };
  EXPECT_EQ(AnswerTo(MessageButtons::kYesNo, hold_then_decline), Answer::kNo);
}

TEST_F(MessageBoxTest, EnterAnswersOnceItIsPressed) {
  const auto press = [](QMessageBox& box) {
    QTest::keyClick(box.button(QMessageBox::Yes), Qt::Key_Return);
  };
  EXPECT_EQ(AnswerTo(MessageButtons::kYesNo, press), Answer::kYes);
}

TEST_F(MessageBoxTest, TextIsShownInTheCodePage) {
  OnMessage([](QMessageBox& box) {
    EXPECT_EQ(box.text(), QString::fromUtf8("Zoë"));
    Press(box, QMessageBox::Ok);
  });
  user_.ShowMessage("Zo\xC3\xAB", MessageButtons::kOk, MessageIcon::kNone);
}

struct AnswerCase {
  MessageButtons asked;
  std::vector<std::pair<QMessageBox::StandardButton, Answer>> buttons;
  Answer refusal;  // the answer for Escape and for the close box
};

const std::vector<AnswerCase> kAnswers = {
    {MessageButtons::kOk, {{QMessageBox::Ok, Answer::kOk}}, Answer::kOk},
    {MessageButtons::kOkCancel,
     {{QMessageBox::Ok, Answer::kOk}, {QMessageBox::Cancel, Answer::kCancel}},
     Answer::kCancel},
    {MessageButtons::kYesNo,
     {{QMessageBox::Yes, Answer::kYes}, {QMessageBox::No, Answer::kNo}},
     Answer::kNo},
};

TEST_F(MessageBoxTest, EveryButtonAnswersItself) {
  for (const AnswerCase& row : kAnswers) {
    QMessageBox::StandardButtons all;
    for (const auto& [button, answer] : row.buttons) all |= button;
    for (const auto& [button, answer] : row.buttons) {
      SCOPED_TRACE(button);
      const auto press = [&all, pressed = button](QMessageBox& box) {
        EXPECT_EQ(box.standardButtons(), all);
        Press(box, pressed);
      };
      EXPECT_EQ(AnswerTo(row.asked, press), answer);
    }
  }
}

TEST_F(MessageBoxTest, EscapeAndTheCloseBoxRefuseWhereThatCanBeDone) {
  for (const AnswerCase& row : kAnswers) {
    SCOPED_TRACE(row.buttons.front().first | row.buttons.back().first);
    const auto escape = [](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); };
    EXPECT_EQ(AnswerTo(row.asked, escape), row.refusal);
    EXPECT_EQ(AnswerTo(row.asked, [](QMessageBox& box) { box.close(); }), row.refusal);
  }
}

TEST_F(MessageBoxTest, EnterPressesTheFirstButton) {
  const auto enter = [](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Return); };
  EXPECT_EQ(AnswerTo(MessageButtons::kOk, enter), Answer::kOk);
  EXPECT_EQ(AnswerTo(MessageButtons::kYesNo, enter), Answer::kYes);
}

TEST_F(MessageBoxTest, WhenTheProgramEndsMeanwhileNothingIsAgreedTo) {
  for (const AnswerCase& row : kAnswers) {
    std::optional<Answer> answer;
    QTimer::singleShot(0, &context_, [&] {
      OnMessage([](QMessageBox&) { QApplication::exit(); });
      answer = user_.ShowMessage("text", row.asked, MessageIcon::kNone);
    });
    QApplication::exec();
    EXPECT_EQ(answer, row.refusal);
  }
}

TEST_F(MessageBoxTest, AMessageOfAnEndingProgramDoesNotHoldItUp) {
  std::optional<Answer> answer;
  QTimer::singleShot(0, &context_, [&] {
    QApplication::exit();
    answer = user_.ShowMessage("text", MessageButtons::kYesNo, MessageIcon::kNone);
  });
  QApplication::exec();
  EXPECT_EQ(answer, Answer::kNo);
}

TEST_F(MessageBoxTest, StandsInFrontOfTheWindowThatIsShown) {
  QWidget window;
  window.show();
  OnMessage([&](QMessageBox& box) {
    EXPECT_EQ(box.parentWidget(), &window);
    Press(box, QMessageBox::Ok);
  });
  user_.ShowMessage("text", MessageButtons::kOk, MessageIcon::kNone);
}

TEST_F(MessageBoxTest, AMessageUponAMessageStandsInFrontOfIt) {
  OnMessage([&](QMessageBox& lower) {
    OnMessage([&](QMessageBox& upper) {
      EXPECT_EQ(upper.parentWidget(), &lower);
      Press(upper, QMessageBox::Ok);
    });
    user_.ShowMessage("upper", MessageButtons::kOk, MessageIcon::kNone);
    Press(lower, QMessageBox::Ok);
  });
  user_.ShowMessage("lower", MessageButtons::kOk, MessageIcon::kNone);
}

TEST_F(FileDialogTest, OpenShowsTheFolderAndTextFilesAndGivesTheFile) {
  const std::string path = MakeFile("list.txt");
  MakeFile("other.csv");
  OnDialog([&](QFileDialog& dialog) {
    EXPECT_EQ(dialog.acceptMode(), QFileDialog::AcceptOpen);
    EXPECT_EQ(dialog.fileMode(), QFileDialog::ExistingFile);
    EXPECT_EQ(dialog.nameFilters(), QStringList{"Text (*.txt)"});
    EXPECT_EQ(dialog.defaultSuffix(), "txt");
    EXPECT_EQ(NativePath(dialog.directory().absolutePath()), Folder());
    Enter(dialog, "list.txt");
  });
  const FileChoice choice = user_.ChooseFileToOpen(ListDialog());
  EXPECT_EQ(choice.error, 0);
  EXPECT_EQ(choice.path, path);
}

TEST_F(FileDialogTest, OpenCancelledTellsSo) {
  OnDialog([](QFileDialog& dialog) { dialog.reject(); });
  const FileChoice choice = user_.ChooseFileToOpen(ListDialog());
  EXPECT_EQ(choice.error, kDialogCancelled);
  EXPECT_EQ(choice.path, "");
}

TEST_F(FileDialogTest, AFolderThatDoesNotExistIsPassedOver) {
  FileDialog dialog = ListDialog();
  dialog.initial_folder = Folder() + "/gone";
  OnDialog([](QFileDialog& chooser) {
    EXPECT_TRUE(chooser.directory().exists());
    chooser.reject();
  });
  EXPECT_EQ(user_.ChooseFileToOpen(dialog).error, kDialogCancelled);
}

TEST_F(FileDialogTest, SaveComesUpWithThePresetFolderAndName) {
  OnDialog([&](QFileDialog& dialog) {
    EXPECT_EQ(dialog.acceptMode(), QFileDialog::AcceptSave);
    EXPECT_EQ(dialog.nameFilters(), QStringList{"Text (*.txt)"});
    EXPECT_EQ(NativePath(dialog.directory().absolutePath()), Folder());
    EXPECT_EQ(dialog.findChild<QLineEdit*>("fileNameEdit")->text(), "names.txt");
    QMetaObject::invokeMethod(&dialog, "accept");
  });
  const FileChoice choice = user_.ChooseFileToSave(ListDialog("names.txt"));
  EXPECT_EQ(choice.error, 0);
  EXPECT_EQ(choice.path, PathOf("names.txt"));
}

TEST_F(FileDialogTest, ANameWithoutAnExtensionGetsTheDefaultOne) {
  OnDialog([&](QFileDialog& dialog) { Enter(dialog, "plain"); });
  EXPECT_EQ(user_.ChooseFileToSave(ListDialog()).path, PathOf("plain.txt"));
  OnDialog([&](QFileDialog& dialog) { Enter(dialog, "other.lst"); });
  EXPECT_EQ(user_.ChooseFileToSave(ListDialog()).path, PathOf("other.lst"));
}

TEST_F(FileDialogTest, SavingOverAFileIsNotAskedAboutHere) {
  const std::string path = MakeFile("old.txt");
  OnDialog([&](QFileDialog& dialog) { Enter(dialog, "old.txt"); });
  EXPECT_EQ(user_.ChooseFileToSave(ListDialog()).path, path);
}

TEST_F(FileDialogTest, ADialogDoesNotMoveTheCurrentFolder) {
  MakeFile("list.txt");
  const QString before = QDir::currentPath();
  OnDialog([&](QFileDialog& dialog) {
    QDir::setCurrent(folder_.path());  // as the dialogs of some systems do
    Enter(dialog, "list.txt");
  });
  EXPECT_EQ(user_.ChooseFileToOpen(ListDialog()).error, 0);
  EXPECT_EQ(QDir::currentPath(), before);
  OnDialog([&](QFileDialog& dialog) {
    QDir::setCurrent(folder_.path());
    dialog.reject();
  });
  EXPECT_EQ(user_.ChooseFileToOpen(ListDialog()).error, kDialogCancelled);
  EXPECT_EQ(QDir::currentPath(), before);
}

TEST_F(FileDialogTest, SaveCancelledTellsSo) {
  OnDialog([](QFileDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
  EXPECT_EQ(user_.ChooseFileToSave(ListDialog("names.txt")).error, kDialogCancelled);
}

TEST_F(FileDialogTest, APathHasTheBytesOfTheFileWhateverTheTextsCodePage) {
  if (!kNamesAreBytes) GTEST_SKIP() << "names have no bytes of their own";
  const std::string path = MakeFile("Zo\xC3\xAB \xE6\x97\xA5.txt");
  for (const TextCodec codec : {TextCodec::kUtf8, TextCodec::kSingleByte}) {
    QtUser user(CodePage::OfFileNames(codec));
    OnDialog([&](QFileDialog& dialog) { Enter(dialog, QString::fromUtf8("Zoë 日.txt")); });
    EXPECT_EQ(user.ChooseFileToOpen(ListDialog()).path, path);
    OnDialog([&](QFileDialog& dialog) { QMetaObject::invokeMethod(&dialog, "accept"); });
    EXPECT_EQ(user.ChooseFileToSave(ListDialog("Zo\xC3\xAB \xE6\x97\xA5.txt")).path, path);
  }
}

TEST_F(FileDialogTest, APathThatCannotBeSpelledIsToldAndAskedForAgain) {
  if (!kNamesAreBytes) GTEST_SKIP() << "names may hold these characters";
  for (const QChar character : {QChar(0xD800), QChar(QChar::ReplacementCharacter)}) {
    OnDialog([&](QFileDialog& dialog) {
      OnMessage([&](QMessageBox& box) {
        EXPECT_EQ(box.windowTitle(), "Morvex");
        EXPECT_TRUE(box.text().contains("cannot be used")) << box.text().toStdString();
        EXPECT_TRUE(box.informativeText().contains(character));
        OnDialog([&](QFileDialog& again) { Enter(again, "good.txt"); });
        Press(box, QMessageBox::Ok);
      });
      Enter(dialog, QString("bad") + character + ".txt");
    });
    const FileChoice choice = user_.ChooseFileToSave(ListDialog());
    EXPECT_EQ(choice.error, 0);
    EXPECT_EQ(choice.path, PathOf("good.txt"));
  }
}

TEST_F(FileDialogTest, APathThatTheSystemsPageCannotSpellIsToldAndAskedForAgain) {
  PageCharacters ascii{};
  for (std::size_t byte = 0; byte < 0x80; ++byte) ascii[byte] = static_cast<char16_t>(byte);
  QtUser user{CodePage(ascii)};
  OnDialog([&](QFileDialog& dialog) {
    OnMessage([&](QMessageBox& box) {
      EXPECT_TRUE(box.informativeText().endsWith(QString::fromUtf8("Zoë.txt")));
      OnDialog([&](QFileDialog& again) { Enter(again, "good.txt"); });
      Press(box, QMessageBox::Ok);
    });
    Enter(dialog, QString::fromUtf8("Zoë.txt"));
  });
  const FileChoice choice = user.ChooseFileToSave(ListDialog());
  EXPECT_EQ(choice.error, 0);
  EXPECT_EQ(choice.path, PathOf("good.txt"));
}

TEST_F(FileDialogTest, AFileWhoseNameHoldsTheReplacementCharacterItselfCanBeChosen) {
  if (!kNamesAreBytes) GTEST_SKIP() << "the character is like any other";
  const std::string path = MakeFile("odd\xEF\xBF\xBD.txt");
  OnDialog([&](QFileDialog& dialog) { Enter(dialog, QString("odd") + QChar(0xFFFD) + ".txt"); });
  EXPECT_EQ(user_.ChooseFileToOpen(ListDialog()).path, path);
}

TEST_F(FileDialogTest, AFilterWithoutItsPatternsInTheNameGetsThem) {
  FileDialog dialog = ListDialog();
  dialog.filter = "Lists|*.txt;*.lst";
  OnDialog([](QFileDialog& chooser) {
    EXPECT_EQ(chooser.nameFilters(), QStringList{"Lists (*.txt *.lst)"});
    chooser.reject();
  });
  EXPECT_EQ(user_.ChooseFileToOpen(dialog).error, kDialogCancelled);
}

TEST_F(FileDialogTest, TheProgramsEndMeanwhileIsACancel) {
  int error = 0;
  QTimer::singleShot(0, &context_, [&] {
    OnDialog([](QFileDialog&) { QApplication::exit(); });
    error = user_.ChooseFileToSave(ListDialog("names.txt")).error;
  });
  QApplication::exec();
  EXPECT_EQ(error, kDialogCancelled);
}

TEST_F(WaitingTest, ReturnsAsSoonAsAnEventWasHandled) {
  bool handled = false;
  QTimer::singleShot(30, &context_, [&] { handled = true; });
  QElapsedTimer timer;
  timer.start();
  while (!handled && timer.elapsed() < 20000) user_.WaitForEvents(60s);
  EXPECT_TRUE(handled);
  EXPECT_LT(timer.elapsed(), 20000);
}

TEST_F(WaitingTest, AnEventFromAnotherThreadEndsIt) {
  bool handled = false;
  std::thread other([&] {
    std::this_thread::sleep_for(30ms);
    QMetaObject::invokeMethod(
        &context_, [&] { handled = true; }, Qt::QueuedConnection);
  });
  QElapsedTimer timer;
  timer.start();
  while (!handled && timer.elapsed() < 20000) user_.WaitForEvents(60s);
  other.join();
  EXPECT_TRUE(handled);
  EXPECT_LT(timer.elapsed(), 20000);
}

TEST_F(WaitingTest, WithoutEventsItLastsAsLongAsAllowedAndNoLonger) {
  QApplication::processEvents();
  QElapsedTimer timer;
  timer.start();
  int waits = 0;
  for (; timer.elapsed() < 300; ++waits) {
    user_.WaitForEvents(300ms - std::chrono::milliseconds(timer.elapsed()));
  }
  EXPECT_LT(timer.elapsed(), 5000);
  EXPECT_LT(waits, 50) << "it returned although nothing had happened";
}

TEST_F(WaitingTest, AnEventThatIsPendingBeforehandIsHandledToo) {
  for (int i = 0; i < 3; ++i) {
    bool handled = false;
    QMetaObject::invokeMethod(
        &context_, [&] { handled = true; }, Qt::QueuedConnection);
    user_.WaitForEvents(100ms);
    EXPECT_TRUE(handled);
  }
}

TEST_F(WaitingTest, TakesNoProcessorTime) {
#ifdef Q_OS_WIN
  GTEST_SKIP() << "the C library's clock() goes on while a program waits";
#endif
  QApplication::processEvents();
  QElapsedTimer timer;
  timer.start();
  const std::clock_t before = std::clock();
  while (timer.elapsed() < 400) user_.WaitForEvents(100ms);
  const double seconds = static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC;
  EXPECT_LT(seconds, 0.1);
}

TEST_F(WaitingTest, NoTimeAtAllStillHandlesWhatIsPending) {
  bool handled = false;
  QMetaObject::invokeMethod(
      &context_, [&] { handled = true; }, Qt::QueuedConnection);
  QElapsedTimer timer;
  timer.start();
  user_.WaitForEvents(0ms);
  user_.WaitForEvents(-5ms);
  EXPECT_TRUE(handled);
  EXPECT_LT(timer.elapsed(), 5000);
}

TEST_F(WaitingTest, PendingEventsAreHandledWithoutWaiting) {
  bool handled = false;
  QMetaObject::invokeMethod(
      &context_, [&] { handled = true; }, Qt::QueuedConnection);
  user_.HandlePendingEvents();
  EXPECT_TRUE(handled);
  QElapsedTimer timer;
  timer.start();
  user_.HandlePendingEvents();
  EXPECT_LT(timer.elapsed(), 5000);
}

}  // namespace
}  // namespace morvex::test
