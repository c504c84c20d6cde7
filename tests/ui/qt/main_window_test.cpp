// The main window's controls and its simple events.
#include "tests/ui/qt/main_window_test.h"

#include <QAccessible>
#include <QSignalSpy>

#include "core/list/editor.h"
#include "core/run/main_window_events.h"
#include "core/settings/options.h"
#include "ui/qt/elided_label.h"

namespace morvex::test {
namespace {

TEST_F(MainWindowTest, AfterStartUpTheWindowIsIdle) {
  Start();
  EXPECT_EQ(window().windowTitle(), " Morvex v11.0");
  EXPECT_EQ(Caption(go()), ">----------->");
  EXPECT_FALSE(go().isEnabled());
  EXPECT_TRUE(ok().isEnabled());
  EXPECT_TRUE(exit().isEnabled());
  EXPECT_EQ(source().text(), "");
  EXPECT_EQ(target().text(), "");
  EXPECT_TRUE(source().isEnabled());
  EXPECT_TRUE(target().isEnabled());
  EXPECT_FALSE(Get<QProgressBar>("ProgressBar1").isVisible());
  EXPECT_FALSE(Get<QWidget>("FolderTreeview1").isVisible());
}

TEST_F(MainWindowTest, EveryControlHasItsCaption) {
  Start();
  EXPECT_EQ(Caption(ok()), "OK");
  EXPECT_EQ(Caption(exit()), "Exit");
  EXPECT_EQ(Text("lblPassword_1"), "Source :");
  EXPECT_EQ(Text("lblPassword_2"), "Target :");
  EXPECT_EQ(Text("Label1"), " S t a t s");
  EXPECT_EQ(Text("lblTotalFiles"), "");
  EXPECT_EQ(Text("lblTijd"), "");
  EXPECT_EQ(Text("lblPercentage"), "");
  EXPECT_EQ(Get<ElidedLabel>("lblExtensions").text(), "");
  EXPECT_EQ(Get<ElidedLabel>("lblFiles").text(), "");
}

TEST_F(MainWindowTest, EveryControlHasItsHint) {
  Start();
  EXPECT_EQ(Get<QWidget>("lblPassword_1").toolTip(), "Bestand of map");
  EXPECT_EQ(Get<QWidget>("lblPassword_2").toolTip(), "Bestand of map");
  EXPECT_EQ(ok().toolTip(), "instellingen opslaan");
  EXPECT_EQ(Get<QWidget>("lblExtensions").toolTip(), "gescande bestandstypen");
  EXPECT_EQ(go().toolTip(), "");
  EXPECT_EQ(exit().toolTip(), "");
}

TEST_F(MainWindowTest, PicturesAndLinesOfDecorationAreThere) {
  Start();
  EXPECT_TRUE(Get<QWidget>("Image1").isVisible());
  for (int number = 1; number <= 9; ++number) {
    const std::string name = "Line" + std::to_string(number);
    const QWidget& line = Get<QWidget>(name.c_str());
    EXPECT_TRUE(line.isVisible()) << name;
    EXPECT_EQ(std::min(line.width(), line.height()), 1) << name;
    EXPECT_GT(std::max(line.width(), line.height()), 40) << name;
  }
}

TEST_F(MainWindowTest, EveryControlThatIsUsedHasANameForAScreenReader) {
  Start();
  for (const char* name :
       {"Text1_0", "Text1_2", "FolderTreeview1", "cmdAnonymize", "cmdGo", "cmdExit", "imOpties",
        "imList", "ProgressBar1", "lblFiles", "lblExtensions"}) {
    EXPECT_NE(Get<QWidget>(name).accessibleName(), "") << name;
  }
  EXPECT_NE(Get<QWidget>("imOpties").accessibleDescription(), "");
  EXPECT_NE(Get<QWidget>("imList").accessibleDescription(), "");
}

TEST_F(MainWindowTest, TheSettingsFileFillsTheWindow) {
  StartWith("/s", "/t");
  EXPECT_EQ(source().text(), "/s");
  EXPECT_EQ(target().text(), "/t");
  EXPECT_EQ(Get<ElidedLabel>("lblExtensions").text(), ".txt");
  EXPECT_FALSE(go().isEnabled());
}

TEST_F(MainWindowTest, TheTabKeyGoesThroughTheControlsInTheirOrder) {
  Start();
  Activate();
  source().setFocus();
  const QList<const char*> order = {"Text1_2",  "cmdAnonymize", "cmdExit",
                                    "imOpties", "imList",       "Text1_0"};
  for (const char* const name : order) {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget()->objectName(), name);
  }
}

TEST_F(MainWindowTest, AltAndALetterReachesBoxesAndButtons) {
  Start();
  Activate();
  exit().setFocus();
  QTest::keyClick(&window(), Qt::Key_T, Qt::AltModifier);
  EXPECT_TRUE(target().hasFocus());
  QTest::keyClick(&window(), Qt::Key_S, Qt::AltModifier);
  EXPECT_TRUE(source().hasFocus());
  QTest::keyClick(&window(), Qt::Key_O, Qt::AltModifier);
  QTest::qWait(150);  // the button is shown pressed before it acts
  EXPECT_EQ(program_.frmMorvex.cmdGo.caption.get(), "GO !");
}

TEST_F(MainWindowTest, TypingInEitherBoxGoesToTheStateAndDisablesGo) {
  for (const char* name : {"Text1_0", "Text1_2"}) {
    StartWith("/s", "/t");
    program_.frmMorvex.cmdGo.enabled = true;
    Settle();
    QTest::keyClick(&Get<PathBox>(name), Qt::Key_End);
    QTest::keyClicks(&Get<PathBox>(name), "x");
    Settle();
    EXPECT_EQ(Caption(go()), ">------------>>>>") << name;
    EXPECT_FALSE(go().isEnabled()) << name;
    const int index = name == std::string("Text1_0") ? kSourceBox : kTargetBox;
    EXPECT_EQ(program_.frmMorvex.Text1(index).text.get(), index == kSourceBox ? "/sx" : "/tx");
    desktop_.reset();
  }
}

TEST_F(MainWindowTest, OkAfterATypedPathArmsAgain) {
  StartWith("/s", "/t");
  QTest::keyClicks(&source(), "x");
  QTest::keyClick(&source(), Qt::Key_Backspace);
  Settle();
  EXPECT_EQ(Caption(go()), ">------------>>>>");
  Click(ok());
  EXPECT_EQ(Caption(go()), "GO !");
  EXPECT_TRUE(go().isEnabled());
}

TEST_F(MainWindowTest, WhileARunIsArmedTheBoxesTakeNoKey) {
  StartWith("/s", "/t");
  Click(ok());
  EXPECT_FALSE(source().isEnabled());
  EXPECT_FALSE(target().isEnabled());
  QTest::keyClicks(&source(), "x");
  Settle();
  EXPECT_EQ(program_.frmMorvex.Text1(kSourceBox).text.get(), "/s");
  EXPECT_TRUE(go().isEnabled());
}

TEST_F(MainWindowTest, AClickOnTheWindowPutsTheExtensionListAway) {
  Start();
  program_.frmOpties.lstExtensie.visible = true;
  QTest::mouseClick(&window(), Qt::LeftButton, {}, QPoint(3, 3));
  EXPECT_FALSE(program_.frmOpties.lstExtensie.visible);
}

TEST_F(MainWindowTest, ALineOfDecorationIsNoPlaceOfItsOwnForAClick) {
  Start();
  program_.frmOpties.lstExtensie.visible = true;
  QTest::mouseClick(&window(), Qt::LeftButton, {}, Get<QWidget>("Line5").geometry().center());
  EXPECT_FALSE(program_.frmOpties.lstExtensie.visible);
}

TEST_F(MainWindowTest, AClickOnTheFileLabelPutsTheExtensionListAway) {
  Start();
  program_.frmOpties.lstExtensie.visible = true;
  Click(Get<QWidget>("lblFiles"));
  EXPECT_FALSE(program_.frmOpties.lstExtensie.visible);
}

TEST_F(MainWindowTest, AClickOnThePlaceOfTheNoteIsOneOnTheWindow) {
  Start();
  for (const char* note : {"", "1 file in the target is not of this run."}) {
    program_.frmMorvex.lblNote.caption = note;
    program_.frmOpties.lstExtensie.visible = true;
    desktop_->Refresh();
    Click(Get<QWidget>("lblNote"));
    EXPECT_FALSE(program_.frmOpties.lstExtensie.visible) << note;
  }
}

TEST_F(MainWindowTest, AClickOnAnotherControlLeavesTheExtensionListOpen) {
  Start();
  program_.frmOpties.lstExtensie.visible = true;
  for (const char* name : {"Label1", "lblTotalFiles", "lblExtensions", "Image1", "Text1_2"}) {
    Click(Get<QWidget>(name));
    EXPECT_TRUE(program_.frmOpties.lstExtensie.visible) << name;
  }
}

TEST_F(MainWindowTest, TheOptionsPictureShowsTheOptionsWindow) {
  Start();
  Click(Get<QWidget>("imOpties"));
  EXPECT_TRUE(program_.frmOpties.visible);
  EXPECT_TRUE(desktop_->options_window().isVisible());
  EXPECT_TRUE(window().isVisible());
}

TEST_F(MainWindowTest, TheListPictureShowsTheEditorInPlaceOfTheMainWindow) {
  Start();
  Click(Get<QWidget>("imList"));
  EXPECT_TRUE(desktop_->editor_window().isVisible());
  EXPECT_FALSE(window().isVisible());
  frmReplacements_Close(program_);
  Settle();
  EXPECT_TRUE(window().isVisible());
}

TEST_F(MainWindowTest, PicturesWorkByKeyboard) {
  for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
    Start();
    auto& picture = Get<PictureButton>("imList");
    picture.setFocus();
    QTest::keyClick(&picture, key);
    Settle();
    EXPECT_TRUE(desktop_->editor_window().isVisible()) << key;
    frmReplacements_Close(program_);
    desktop_.reset();
  }
}

TEST_F(MainWindowTest, ThePointerOverAPictureBecomesTheProgramsOwn) {
  for (const char* name : {"imOpties", "imList"}) {
    Start();
    auto& picture = Get<PictureButton>(name);
    EXPECT_EQ(picture.cursor().shape(), Qt::ArrowCursor);
    QTest::mouseMove(&picture, picture.rect().center());
    QTest::mouseMove(&picture, picture.rect().center() + QPoint(2, 2));
    Settle();
    EXPECT_EQ(picture.cursor().shape(), Qt::BitmapCursor) << name;
    desktop_.reset();
  }
}

TEST_F(MainWindowTest, TheHourglassCoversTheWholeWindow) {
  Start();
  program_.frmMorvex.imList.mouse_pointer = MousePointer::kCustom;
  program_.frmMorvex.mouse_pointer = MousePointer::kHourglass;
  Settle();
  EXPECT_EQ(window().cursor().shape(), Qt::WaitCursor);
  EXPECT_EQ(Get<QWidget>("imList").cursor().shape(), Qt::WaitCursor);
  program_.frmMorvex.mouse_pointer = MousePointer::kDefault;
  Settle();
  EXPECT_EQ(window().cursor().shape(), Qt::ArrowCursor);
  EXPECT_EQ(Get<QWidget>("imList").cursor().shape(), Qt::BitmapCursor);
}

TEST_F(MainWindowTest, LabelsCanHaveTwoLinesAndNothingMovesForThem) {
  Start();
  const int height = window().height();
  const int place = Get<QWidget>("Line7").y();
  program_.frmMorvex.lblTotalFiles.caption = "Scanned: 12\r\nSipped: 3";
  program_.frmMorvex.lblPercentage.caption = "Hits: 7\r\nDone !";
  program_.frmMorvex.lblTijd.caption = "2 min 5 sec";
  Settle();
  EXPECT_EQ(Text("lblTotalFiles"), "Scanned: 12\nSipped: 3");
  EXPECT_EQ(Text("lblPercentage"), "Hits: 7\nDone !");
  EXPECT_EQ(Text("lblTijd"), "2 min 5 sec");
  EXPECT_EQ(window().height(), height);
  EXPECT_EQ(Get<QWidget>("Line7").y(), place);
  for (const char* name : {"lblTotalFiles", "lblPercentage"}) {
    const QLabel& label = Get<QLabel>(name);
    EXPECT_GE(label.height(), label.sizeHint().height()) << name;
    EXPECT_GE(label.width(), label.sizeHint().width()) << name;
  }
}

TEST_F(MainWindowTest, ALabelShowsMarkupAsItStands) {
  Start();
  program_.frmMorvex.lblTotalFiles.caption = "<b>x</b>";
  Settle();
  EXPECT_EQ(Get<QLabel>("lblTotalFiles").textFormat(), Qt::PlainText);
}

TEST_F(MainWindowTest, ALongPathIsShortenedInItsMiddleAndTheToolTipHasAllOfIt) {
  Start();
  const std::string path = "/first/" + std::string(300, 'x') + "/last.txt";
  program_.frmMorvex.lblFiles.caption = path;
  Settle();
  const auto& label = Get<ElidedLabel>("lblFiles");
  EXPECT_TRUE(label.ShownText().startsWith("/first/"));
  EXPECT_TRUE(label.ShownText().endsWith("/last.txt"));
  EXPECT_LE(label.fontMetrics().horizontalAdvance(label.ShownText()), label.width());
  EXPECT_EQ(label.toolTip(), QString::fromStdString(path));
  EXPECT_LT(window().minimumSizeHint().width(), 900);
}

TEST_F(MainWindowTest, TheSettingsFileLeavesTheFileLabelInAReadableHighlightColour) {
  StartWith("/s", "/t");
  EXPECT_EQ(program_.frmMorvex.lblFiles.colour.get(), Colour::kSystemHighlight);
  const QWidget& label = Get<QWidget>("lblFiles");
  EXPECT_NE(label.palette().color(QPalette::WindowText),
            window().palette().color(QPalette::WindowText));
  EXPECT_NE(label.palette().color(QPalette::WindowText),
            window().palette().color(QPalette::Window));
}

TEST_F(MainWindowTest, TheProgressBarShowsRunsOfAnyLength) {
  Start();
  auto& bar = Get<QProgressBar>("ProgressBar1");
  ProgressBar& state = program_.frmMorvex.ProgressBar1;
  state.visible = true;
  for (const std::int64_t maximum :
       {std::int64_t{4}, std::int64_t{9999}, std::int64_t{1} << 33, std::int64_t{1} << 62}) {
    state.SetMaximum(maximum);
    state.SetValue(maximum / 4);
    Settle();
    EXPECT_TRUE(bar.isVisible());
    EXPECT_NEAR(static_cast<double>(bar.value()) / bar.maximum(), 0.25, 0.001) << maximum;
    state.SetValue(maximum);
    Settle();
    EXPECT_EQ(bar.value(), bar.maximum()) << maximum;
    state.SetValue(0);
  }
}

TEST_F(MainWindowTest, AWishForTheFocusCountsOnce) {
  Start();
  Activate();
  program_.frmMorvex.focus = &program_.frmMorvex.Text1(kTargetBox);
  Settle();
  EXPECT_TRUE(target().hasFocus());
  source().setFocus();
  program_.frmMorvex.lblTijd.caption = "1";
  Settle();
  EXPECT_TRUE(source().hasFocus());
}

TEST_F(MainWindowTest, RedIsAnotherOneOnADarkGround) {
  Start();
  program_.frmMorvex.Text1(kSourceBox).colour = Colour::kRed;
  Settle();
  EXPECT_TRUE(IsRed(source()));
  EXPECT_FALSE(IsRed(target()));
  const QColor on_light = source().palette().color(QPalette::Text);
  QPalette dark;
  dark.setColor(QPalette::Base, QColor(20, 20, 20));
  dark.setColor(QPalette::Text, Qt::white);
  window().setPalette(dark);
  Settle();
  EXPECT_GT(source().palette().color(QPalette::Text).lightness(), on_light.lightness());
  program_.frmMorvex.Text1(kSourceBox).colour = Colour::kBlack;
  Settle();
  EXPECT_EQ(source().palette().color(QPalette::Text), QColor(Qt::white));
}

TEST_F(MainWindowTest, ExitEndsTheProgramAndNoWindowIsLeft) {
  Desktop& desktop = Start();
  QSignalSpy ended(&desktop, &Desktop::Ended);
  Click(exit());
  EXPECT_TRUE(program_.Beeindigd);
  EXPECT_TRUE(HasEnded(program_));
  EXPECT_FALSE(window().isVisible());
  EXPECT_GE(ended.count(), 1);
}

TEST_F(MainWindowTest, ExitWhileTheOptionsWindowIsOpenTakesAllWindowsAway) {
  Desktop& desktop = Start();
  imOpties_Click(program_);
  Settle();
  ASSERT_TRUE(desktop.options_window().isVisible());
  cmdExit_Click(program_);
  Settle();
  EXPECT_FALSE(desktop.main_window().isVisible());
  EXPECT_FALSE(desktop.options_window().isVisible());
  EXPECT_FALSE(desktop.editor_window().isVisible());
}

TEST_F(MainWindowTest, TheCloseBoxIsExit) {
  Desktop& desktop = Start();
  QSignalSpy ended(&desktop, &Desktop::Ended);
  window().close();
  Settle();
  EXPECT_TRUE(program_.Beeindigd);
  EXPECT_TRUE(HasEnded(program_));
  EXPECT_GE(ended.count(), 1);
}

TEST_F(MainWindowTest, NothingIsCutOffAtTheSmallestSize) {
  Start();
  program_.frmMorvex.cmdGo.caption = kGoPathsChanged;
  Settle();
  window().resize(window().minimumSizeHint());
  Settle();
  for (const char* name : {"cmdAnonymize", "cmdGo", "cmdExit", "lblPassword_1", "lblPassword_2",
                           "Label1", "imOpties", "imList", "Image1"}) {
    const QWidget& widget = Get<QWidget>(name);
    EXPECT_GE(widget.width(), widget.sizeHint().width()) << name;
    EXPECT_GE(widget.height(), widget.sizeHint().height()) << name;
    EXPECT_TRUE(window().rect().contains(widget.geometry())) << name;
  }
}

}  // namespace
}  // namespace morvex::test
