// The options window: opening and closing, wildcard and separator, logging, the settings' folder.
#include <QAccessible>
#include <QWindow>

#include "core/program/paths.h"
#include "core/run/main_window_events.h"
#include "tests/ui/qt/options_test.h"

namespace morvex::test {
namespace {

class OptionsWindowTest : public OptionsTest {};

TEST_F(OptionsWindowTest, BeforeItIsFirstOpenedItIsHiddenAndItsLabelHasNoCounts) {
  Start();
  EXPECT_FALSE(window().isVisible());
  EXPECT_EQ(Caption("lblExtensies"), "extensions :");
}

TEST_F(OptionsWindowTest, OpensModallyInFrontOfTheMainWindow) {
  Open();
  EXPECT_TRUE(window().isVisible());
  EXPECT_EQ(window().windowTitle(), "Opties");
  EXPECT_EQ(window().windowModality(), Qt::ApplicationModal);
  EXPECT_EQ(QApplication::activeModalWidget(), &window());
  EXPECT_EQ(window().windowHandle()->transientParent(), desktop_->main_window().windowHandle());
}

TEST_F(OptionsWindowTest, WhileItIsOpenTheMainWindowTakesNoClick) {
  Open();
  MainWindowWidget& main = desktop_->main_window();
  auto& exit = Find<QPushButton>(main, "cmdExit");
  const QPoint middle = exit.mapTo(&main, exit.rect().center());
  QTest::mouseClick(main.windowHandle(), Qt::LeftButton, Qt::NoModifier, middle);
  Settle();
  EXPECT_FALSE(program_.Beeindigd);
  frmOpties_Close(program_);
  Settle();
  QTest::mouseClick(main.windowHandle(), Qt::LeftButton, Qt::NoModifier, middle);
  Settle();
  EXPECT_TRUE(program_.Beeindigd) << "the click would have missed the button";
}

TEST_F(OptionsWindowTest, HasTheCaptionsOfItsControls) {
  Open();
  EXPECT_EQ(Caption("lblJoker"), "wildcard");
  EXPECT_EQ(Caption("lblJokerWhere"), "in replacement list");
  EXPECT_EQ(Caption("lblSeparator"), "separator");
  EXPECT_EQ(Caption("lblSeparatorWhere"), "in replacement list");
  EXPECT_EQ(apply().text().remove('&'), "Toepassen");
  EXPECT_EQ(logging().text().remove('&'), "logging");
}

TEST_F(OptionsWindowTest, ShowsTheSettingsAndTheCountsAndWaitsInTheEntryField) {
  Start();
  program_.settings.gSeparator = "::";
  program_.settings.gJoker = '*';
  state().lstExtensie.entries = Numbered(10);
  Reopen();
  EXPECT_EQ(Line("txtSeparator").text(), "::");
  EXPECT_EQ(Line("txtJoker").text(), "*");
  EXPECT_EQ(Caption("lblExtensies"), "extensions 3(10)");
  EXPECT_TRUE(entry().hasFocus());
}

TEST_F(OptionsWindowTest, WithoutAWildcardItsBoxIsEmpty) {
  Open();
  EXPECT_EQ(Line("txtJoker").text(), "");
  EXPECT_EQ(Line("txtSeparator").text(), "|");
}

TEST_F(OptionsWindowTest, OpeningAgainDropsWhatWasNotApplied) {
  Open();
  Fill(Line("txtSeparator"), ";");
  Fill(Line("txtJoker"), "#");
  Key(window(), Qt::Key_Escape);
  EXPECT_FALSE(window().isVisible());
  Reopen();
  EXPECT_EQ(Line("txtSeparator").text(), "|");
  EXPECT_EQ(Line("txtJoker").text(), "");
}

TEST_F(OptionsWindowTest, ApplyTakesSeparatorAndWildcardOverAndHidesTheWindow) {
  Open();
  Fill(Line("txtSeparator"), "::");
  Fill(Line("txtJoker"), "*");
  EXPECT_EQ(program_.settings.gSeparator, "|") << "taken over before it was applied";
  Click(apply());
  EXPECT_EQ(program_.settings.gSeparator, "::");
  EXPECT_EQ(program_.settings.gJoker, '*');
  EXPECT_FALSE(window().isVisible());
}

TEST_F(OptionsWindowTest, AnEmptySeparatorBoxAppliesTheBar) {
  Open();
  Fill(Line("txtSeparator"), "");
  EXPECT_EQ(state().txtSeparator.text.get(), "");
  Click(apply());
  EXPECT_EQ(program_.settings.gSeparator, "|");
}

TEST_F(OptionsWindowTest, OfAWildcardBoxHoldingAbTheFirstCharacterIsApplied) {
  Open();
  Fill(Line("txtJoker"), "ab");
  Click(apply());
  EXPECT_EQ(program_.settings.gJoker, 'a');
}

TEST_F(OptionsWindowTest, AnEmptyWildcardBoxAppliesNone) {
  Start();
  program_.settings.gJoker = '*';
  Reopen();
  Fill(Line("txtJoker"), "");
  Click(apply());
  EXPECT_EQ(program_.settings.gJoker, 0);
}

TEST_F(OptionsWindowTest, AWildcardOfSeveralBytesAppliesNoneAndSaysNothing) {
  system_.codec = TextCodec::kUtf8;
  Open();
  Line("txtJoker").setFocus();
  Line("txtJoker").insert(QString::fromUtf8("é"));
  Settle();
  EXPECT_EQ(state().txtJoker.text.get(), "\xC3\xA9");
  Click(apply());
  EXPECT_EQ(program_.settings.gJoker, 0);
  EXPECT_FALSE(window().isVisible());
}

TEST_F(OptionsWindowTest, AWildcardBeyondAsciiIsItsByteInTheCodePage) {
  system_.codec = TextCodec::kSingleByte;
  Open();
  const std::string byte = "\xE9";
  Line("txtJoker").insert(CodePage(TextCodec::kSingleByte).Shown(byte));
  Settle();
  Click(apply());
  EXPECT_EQ(program_.settings.gJoker, 0xE9);
  Reopen();
  EXPECT_EQ(Line("txtJoker").text(), CodePage(TextCodec::kSingleByte).Shown(byte));
}

TEST_F(OptionsWindowTest, ApplyWritesNoFile) {
  Open();
  Fill(Line("txtSeparator"), ";");
  Click(apply());
  EXPECT_FALSE(FileExists(program_, "/program/Init.dat"));
}

TEST_F(OptionsWindowTest, TheCloseBoxHidesItAndAppliesNothing) {
  Open();
  Fill(Line("txtSeparator"), ";");
  EXPECT_TRUE(window().close());
  Settle();
  EXPECT_FALSE(window().isVisible());
  EXPECT_FALSE(state().visible.get());
  EXPECT_TRUE(state().loaded.get());
  EXPECT_EQ(program_.settings.gSeparator, "|");
  EXPECT_TRUE(desktop_->main_window().isVisible());
}

TEST_F(OptionsWindowTest, EscapeInAnyControlClosesItWhileTheListIsHidden) {
  Open(Numbered(3));
  for (const char* name : {"txtJoker", "txtSeparator", "txtExtensie", "cmdListExtensie_Down",
                           "chkLoggen", "imOptionsToFolder", "cmdToepassen"}) {
    Key(Find<QWidget>(window(), name), Qt::Key_Escape);
    EXPECT_FALSE(window().isVisible()) << name;
    Reopen();
  }
}

TEST_F(OptionsWindowTest, HidingAndShowingKeepsTheListAndTheLoggingBox) {
  Open({{".a", true}, {".b", false}});
  ClickLogging();
  window().close();
  Settle();
  Reopen();
  EXPECT_EQ(ShownEntries(), (std::vector<ListEntry>{{".a", true}, {".b", false}}));
  EXPECT_TRUE(logging().isChecked());
}

TEST_F(OptionsWindowTest, ExitWhileItIsOpenTakesItAwayToo) {
  Open();
  cmdExit_Click(program_);
  Settle();
  EXPECT_FALSE(window().isVisible());
  EXPECT_FALSE(desktop_->main_window().isVisible());
}

TEST_F(OptionsWindowTest, TheLoggingBoxNamesTheLogOrSaysThatThereIsNone) {
  Open();
  EXPECT_FALSE(logging().isChecked());
  EXPECT_EQ(logging().toolTip(), "Logging disabled");
  ClickLogging();
  EXPECT_TRUE(logging().isChecked());
  EXPECT_EQ(state().chkLoggen.value(), 1);
  EXPECT_EQ(logging().toolTip(), "/program/Morvex.log");
  Key(logging(), Qt::Key_Space);
  EXPECT_FALSE(logging().isChecked());
  EXPECT_EQ(state().chkLoggen.value(), 0);
  EXPECT_EQ(logging().toolTip(), "Logging disabled");
}

TEST_F(OptionsWindowTest, AGreyedLoggingBoxIsShownSoAndAClickNeverGreysItAgain) {
  Open();
  EXPECT_TRUE(state().chkLoggen.SetValue(2));
  Settle();
  EXPECT_EQ(logging().checkState(), Qt::PartiallyChecked);
  for (const int value : {0, 1, 0, 1}) {
    ClickLogging();
    EXPECT_EQ(state().chkLoggen.value(), value);
    EXPECT_EQ(logging().checkState(), value == 1 ? Qt::Checked : Qt::Unchecked);
  }
}

TEST_F(OptionsWindowTest, TheFolderPictureNamesTheFolderAndOpensIt) {
  files_.AddFile("/program/Init.dat", "");
  Open();
  bool told = false;
  OnMessage([&](QMessageBox& box) {
    told = true;
    EXPECT_EQ(box.text(), "(Required) location Init.dat file: \n\n/program");
    EXPECT_EQ(box.icon(), QMessageBox::Information);
    EXPECT_EQ(box.standardButtons(), QMessageBox::Ok);
    EXPECT_EQ(box.parentWidget(), &window());
    EXPECT_TRUE(system_.browsed.empty()) << "opened before the message was read";
    box.accept();
  });
  Click(Find<PictureButton>(window(), "imOptionsToFolder"));
  EXPECT_TRUE(told);
  EXPECT_EQ(system_.browsed, (std::vector<std::string>{"/program/Init.dat"}));
  EXPECT_TRUE(window().isVisible());
}

TEST_F(OptionsWindowTest, WithoutASettingsFileThereIsOnlyTheMessage) {
  Open();
  bool told = false;
  OnMessage([&](QMessageBox& box) {
    told = true;
    box.accept();
  });
  Key(Find<PictureButton>(window(), "imOptionsToFolder"), Qt::Key_Space);
  EXPECT_TRUE(told);
  EXPECT_TRUE(system_.browsed.empty());
}

TEST_F(OptionsWindowTest, InAProtectedFolderTheRedirectedOneIsNamedEvenWithoutTheFile) {
  system_.redirected_store = true;
  Open();
  program_.locations.gLocalAppData = "/local";
  program_.locations.gCommonFilesLocation = "/prog";
  OnMessage([&](QMessageBox& box) {
    EXPECT_EQ(box.text(),
              "(Required) location Init.dat file: \n\n"
              "/local\\VirtualStore\\Program Files (x86)\\Morvex");
    box.accept();
  });
  Click(Find<PictureButton>(window(), "imOptionsToFolder"));
  EXPECT_TRUE(system_.browsed.empty());
}

TEST_F(OptionsWindowTest, AMessageLeavesWhatIsTypedAsItIs) {
  Open();
  Fill(Line("txtSeparator"), ";");
  Fill(entry(), "tx");
  OnMessage([](QMessageBox& box) { box.accept(); });
  Click(Find<PictureButton>(window(), "imOptionsToFolder"));
  EXPECT_EQ(Line("txtSeparator").text(), ";");
  EXPECT_EQ(entry().text(), "tx");
}

TEST_F(OptionsWindowTest, TheTabKeyGoesThroughTheControlsInTheirOrder) {
  Open(Numbered(3));
  OpenList();
  Line("txtJoker").setFocus();
  for (const char* name :
       {"txtJoker", "txtSeparator", "txtExtensie", "cmdListExtensie_Down", "lstExtensie",
        "chkLoggen", "imOptionsToFolder", "cmdToepassen", "txtJoker"}) {
    ASSERT_NE(window().focusWidget(), nullptr);
    EXPECT_EQ(window().focusWidget()->objectName(), name);
    Key(*window().focusWidget(), Qt::Key_Tab);
  }
}

TEST_F(OptionsWindowTest, AltAndALetterReachTheControls) {
  Open();
  Key(window(), Qt::Key_W, Qt::AltModifier);
  EXPECT_TRUE(Line("txtJoker").hasFocus());
  Key(window(), Qt::Key_S, Qt::AltModifier);
  EXPECT_TRUE(Line("txtSeparator").hasFocus());
  Key(window(), Qt::Key_E, Qt::AltModifier);
  EXPECT_TRUE(entry().hasFocus());
  // A mnemonic shows its button pressed for a moment before the button acts.
  Key(window(), Qt::Key_L, Qt::AltModifier);
  EXPECT_TRUE(QTest::qWaitFor([&] { return logging().isChecked(); }));
  Key(window(), Qt::Key_T, Qt::AltModifier);
  EXPECT_TRUE(QTest::qWaitFor([&] { return !window().isVisible(); }));
}

TEST_F(OptionsWindowTest, EnterPressesTheButtonThatHasTheFocusAndNoOther) {
  Open(Numbered(3));
  Key(entry(), Qt::Key_Return);
  EXPECT_TRUE(window().isVisible());
  Key(list_button(), Qt::Key_Return);
  EXPECT_TRUE(list().isVisible());
  apply().setFocus();
  Key(apply(), Qt::Key_Return);
  EXPECT_FALSE(window().isVisible());
}

TEST_F(OptionsWindowTest, WhatTheCodePageCannotWriteIsRefusedInTheField) {
  system_.codec = TextCodec::kSingleByte;
  Open();
  QLineEdit& separator = Line("txtSeparator");
  separator.insert(QString(QChar(0x0F40)));  // Tibetan: in no single-byte code page
  Settle();
  EXPECT_EQ(separator.text(), "|");
  EXPECT_EQ(state().txtSeparator.text.get(), "|");
  EXPECT_FALSE(separator.toolTip().isEmpty());
}

TEST_F(OptionsWindowTest, ADisabledOrRenamedControlIsShownSo) {
  Open();
  state().cmdToepassen.enabled = false;
  state().cmdToepassen.caption = "R&D";
  state().lblSeparator.caption = "a & b";
  state().txtJoker.visible = false;
  Settle();
  EXPECT_FALSE(apply().isEnabled());
  EXPECT_EQ(apply().text(), "R&&D");
  EXPECT_EQ(Find<QLabel>(window(), "lblSeparator").text(), "a && b");
  EXPECT_FALSE(Line("txtJoker").isVisible());
}

TEST_F(OptionsWindowTest, ShowingTellsTheCoreNothing) {
  Open(Numbered(5));
  OpenList();
  Settle();
  const std::uint64_t revision = state().changes.revision();
  for (int i = 0; i < 3; ++i) window().Show();
  Settle();
  EXPECT_EQ(state().changes.revision(), revision);
}

TEST_F(OptionsWindowTest, EveryControlHasAnAccessibleNameAndNoTextIsCutOff) {
  Open(Numbered(5));
  for (const char* name : {"txtJoker", "txtSeparator", "txtExtensie", "lstExtensie",
                           "cmdListExtensie_Down", "chkLoggen", "imOptionsToFolder", "cmdToepassen",
                           "lblJoker", "lblSeparator", "lblExtensies"}) {
    auto& widget = Find<QWidget>(window(), name);
    QAccessibleInterface* const interface = QAccessible::queryAccessibleInterface(&widget);
    ASSERT_NE(interface, nullptr) << name;
    EXPECT_FALSE(interface->text(QAccessible::Name).isEmpty()) << name;
  }
  for (const char* name : {"lblJoker", "lblJokerWhere", "lblSeparator", "lblSeparatorWhere",
                           "lblExtensies", "chkLoggen", "cmdToepassen"}) {
    auto& widget = Find<QWidget>(window(), name);
    EXPECT_GE(widget.width(), widget.sizeHint().width()) << name;
    EXPECT_GE(widget.height(), widget.sizeHint().height()) << name;
  }
}

}  // namespace
}  // namespace morvex::test
