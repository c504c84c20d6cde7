// The extension filter in the options window: its list, its entry field, their keys.
#include <QScrollBar>
#include <QStyleFactory>
#include <memory>

#include "tests/ui/qt/options_test.h"

namespace morvex::test {
namespace {

class OptionsListTest : public OptionsTest {
 protected:
  std::vector<ListEntry> Stored() { return state().lstExtensie.entries; }
};

using Entries = std::vector<ListEntry>;

TEST_F(OptionsListTest, TheEntryFieldTellsItsKeysWhenItGetsTheFocus) {
  Open();
  EXPECT_EQ(entry().toolTip(), "add: CTRL + <enter>  ;  delete:  CTRL + <delete>");
}

TEST_F(OptionsListTest, ControlAndEnterAddsTheExtensionSelected) {
  Open();
  AddExtension("txt");
  EXPECT_EQ(ShownEntries(), (Entries{{".txt", true}}));
  EXPECT_EQ(Stored(), ShownEntries());
  EXPECT_EQ(entry().text(), "");
  EXPECT_EQ(Caption("lblExtensies"), "extensions 1(1)");
  EXPECT_EQ(program_.frmMorvex.lblExtensions.caption.get(), ".txt");
}

TEST_F(OptionsListTest, TheKeypadsEnterAddsToo) {
  Open();
  Fill(entry(), "txt");
  Key(entry(), Qt::Key_Enter, Qt::ControlModifier | Qt::KeypadModifier);
  EXPECT_EQ(ShownEntries(), (Entries{{".txt", true}}));
}

TEST_F(OptionsListTest, EnterAloneOrWithMoreKeysAddsNothing) {
  Open();
  Fill(entry(), "txt");
  Key(entry(), Qt::Key_Return);
  Key(entry(), Qt::Key_Return, Qt::AltModifier);
  Key(entry(), Qt::Key_Return, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_TRUE(ShownEntries().empty());
  EXPECT_EQ(entry().text(), "txt");
}

TEST_F(OptionsListTest, AnExtensionIsTakenFromAFileNameAsFromAPointedOne) {
  Open();
  AddExtension(".csv");
  AddExtension("file.txt");
  EXPECT_EQ(ShownEntries(), (Entries{{".csv", true}, {".txt", true}}));
}

TEST_F(OptionsListTest, ALonePointIsAnEntry) {
  Open();
  AddExtension(".");
  EXPECT_EQ(ShownEntries(), (Entries{{".", true}}));
}

TEST_F(OptionsListTest, AKnownExtensionOnlyClearsTheField) {
  Open({{".txt", false}});
  AddExtension("txt");
  EXPECT_EQ(ShownEntries(), (Entries{{".txt", false}}));
  EXPECT_EQ(entry().text(), "");
}

TEST_F(OptionsListTest, CapitalsMakeAnotherExtension) {
  Open({{".txt", true}});
  AddExtension(".TXT");
  EXPECT_EQ(ShownEntries(), (Entries{{".txt", true}, {".TXT", true}}));
}

TEST_F(OptionsListTest, MoreThanOnePointGivesAMessageAndAddsNothing) {
  Open();
  bool told = false;
  OnMessage([&](QMessageBox& box) {
    told = true;
    EXPECT_EQ(box.text(), "Incorrect input format ! ");
    EXPECT_EQ(box.icon(), QMessageBox::NoIcon);
    EXPECT_EQ(box.standardButtons(), QMessageBox::Ok);
    box.accept();
  });
  AddExtension("a.b.c");
  EXPECT_TRUE(told);
  EXPECT_TRUE(ShownEntries().empty());
  EXPECT_EQ(entry().text(), "a.b.c");
  EXPECT_EQ(window().focusWidget(), &entry());
}

TEST_F(OptionsListTest, ControlAndDeleteInTheFieldRemovesTheCurrentEntryAndNoText) {
  Open({{".a", true}, {".b", false}, {".c", true}});
  state().lstExtensie.current = 1;
  Settle();
  Fill(entry(), "some words");
  entry().setCursorPosition(0);
  Key(entry(), Qt::Key_Delete, Qt::ControlModifier);
  EXPECT_EQ(ShownEntries(), (Entries{{".a", true}, {".c", true}}));
  EXPECT_EQ(entry().text(), "some words");
  EXPECT_EQ(Caption("lblExtensies"), "extensions 2(2)");
}

TEST_F(OptionsListTest, WithoutACurrentEntryNothingIsRemoved) {
  Open({{".a", true}});
  Key(entry(), Qt::Key_Delete, Qt::ControlModifier);
  EXPECT_EQ(ShownEntries(), (Entries{{".a", true}}));
}

TEST_F(OptionsListTest, DeleteAloneIsForTheFieldsText) {
  Open({{".a", true}});
  state().lstExtensie.current = 0;
  Fill(entry(), "ab");
  entry().setCursorPosition(0);
  Key(entry(), Qt::Key_Delete);
  EXPECT_EQ(entry().text(), "b");
  EXPECT_EQ(state().txtExtensie.text.get(), "b");
  EXPECT_EQ(ShownEntries(), (Entries{{".a", true}}));
}

TEST_F(OptionsListTest, BothCommandsWorkInTheList) {
  Open({{".a", true}, {".b", true}});
  OpenList();
  Fill(entry(), "c");
  ClickRow(0);
  EXPECT_TRUE(list().hasFocus());
  Key(list(), Qt::Key_Return, Qt::ControlModifier);
  EXPECT_EQ(ShownEntries(), (Entries{{".a", false}, {".b", true}, {".c", true}}));
  Key(list(), Qt::Key_Delete, Qt::ControlModifier);
  EXPECT_EQ(ShownEntries(), (Entries{{".b", true}, {".c", true}}));
  EXPECT_EQ(list().currentRow(), state().lstExtensie.current.get());
}

TEST_F(OptionsListTest, TypedLettersMoveTheMarkAndSelectOrDeselectNothing) {
  const Entries entries = {{".txt", true}, {".log", true}, {".csv", false}, {".c", true}};
  Open(entries);
  OpenList();
  list().setFocus();
  list().setCurrentRow(1, QItemSelectionModel::NoUpdate);
  for (const char* typed : {".csv", "t", ".", "x", ".t"}) {
    QTest::keyClicks(&list(), typed);
    Settle();
    EXPECT_EQ(Stored(), entries) << "after " << typed;
    EXPECT_EQ(ShownEntries(), entries) << "after " << typed;
    EXPECT_EQ(list().currentRow(), state().lstExtensie.current.get()) << "after " << typed;
  }
}

TEST_F(OptionsListTest, TypedLettersFindTheEntryThatBeginsWithThem) {
  Open({{".txt", true}, {".log", true}, {".csv", false}});
  OpenList();
  list().setFocus();
  QTest::keyClicks(&list(), ".cs");
  Settle();
  EXPECT_EQ(state().lstExtensie.current, 2);
}

TEST_F(OptionsListTest, KeysButSpaceSelectAndDeselectNothing) {
  const Entries entries = {{".a", true}, {".b", false}, {".c", true}, {".d", false}};
  Open(entries);
  OpenList();
  list().setFocus();
  for (const Qt::Key key : {Qt::Key_Down, Qt::Key_End, Qt::Key_Up, Qt::Key_Home, Qt::Key_PageDown,
                            Qt::Key_A, Qt::Key_Select, Qt::Key_Return, Qt::Key_F2}) {
    for (const Qt::KeyboardModifier modifier :
         {Qt::NoModifier, Qt::ShiftModifier, Qt::ControlModifier}) {
      if (key == Qt::Key_Return && modifier == Qt::ControlModifier) continue;  // adds an entry
      Key(list(), key, modifier);
      EXPECT_EQ(Stored(), entries) << "key " << key << " with " << modifier;
    }
  }
}

TEST_F(OptionsListTest, SpaceSelectsAndDeselectsTheMarkedEntry) {
  Open({{".a", true}, {".b", false}});
  OpenList();
  list().setFocus();
  list().setCurrentRow(0, QItemSelectionModel::NoUpdate);
  Key(list(), Qt::Key_Space);
  EXPECT_EQ(Stored(), (Entries{{".a", false}, {".b", false}}));
  Key(list(), Qt::Key_Down);
  Key(list(), Qt::Key_Space);
  EXPECT_EQ(Stored(), (Entries{{".a", false}, {".b", true}}));
}

TEST_F(OptionsListTest, RemovingTheLastEntryLeavesAnEmptyList) {
  Open({{".a", true}});
  OpenList();
  ClickRow(0);
  Key(list(), Qt::Key_Delete, Qt::ControlModifier);
  Key(list(), Qt::Key_Delete, Qt::ControlModifier);
  EXPECT_TRUE(ShownEntries().empty());
  EXPECT_EQ(Caption("lblExtensies"), "extensions 0(0)");
  EXPECT_EQ(program_.settings.N_Extension_Total, 0);
}

TEST_F(OptionsListTest, IsHiddenAtFirstAndTheButtonShowsAndHidesIt) {
  Open(Numbered(4));
  EXPECT_FALSE(list().isVisible());
  Line("txtJoker").setFocus();
  Click(list_button());
  EXPECT_TRUE(list().isVisible());
  EXPECT_TRUE(entry().hasFocus());
  Click(list_button());
  EXPECT_FALSE(list().isVisible());
  EXPECT_TRUE(entry().hasFocus());
}

TEST_F(OptionsListTest, AltAndDownShowsAndHidesIt) {
  Open(Numbered(4));
  Key(entry(), Qt::Key_Down, Qt::AltModifier);
  EXPECT_TRUE(list().isVisible());
  EXPECT_TRUE(entry().hasFocus());
  Key(entry(), Qt::Key_Down, Qt::AltModifier);
  EXPECT_FALSE(list().isVisible());
  Key(entry(), Qt::Key_Down);
  EXPECT_FALSE(list().isVisible());
}

TEST_F(OptionsListTest, DigitsWithAltDoNotShowItThoughTheyComeAsArrows) {
  Open(Numbered(4));
  Key(entry(), Qt::Key_Down, Qt::AltModifier | Qt::KeypadModifier);
  EXPECT_FALSE(list().isVisible());
}

TEST_F(OptionsListTest, ASelectedRowStandsOutWithoutTheFocusInStylesThatWouldPaleIt) {
  Open({{".a", true}, {".b", false}});
  OpenList();
  QPalette pale;
  pale.setColor(QPalette::Active, QPalette::Highlight, Qt::blue);
  pale.setColor(QPalette::Inactive, QPalette::Highlight, QColor(240, 240, 240));
  const std::unique_ptr<QStyle> style(QStyleFactory::create("windows"));
  list().setStyle(style.get());
  list().setPalette(pale);
  list().setCurrentRow(1, QItemSelectionModel::NoUpdate);
  entry().setFocus();
  Settle();
  const auto ground = [&](int row) {
    const QRect place = list().visualItemRect(list().item(row));
    return list().viewport()->grab().toImage().pixelColor(place.right() - 5, place.center().y());
  };
  EXPECT_EQ(ground(0), QColor(Qt::blue));
  EXPECT_NE(ground(1), QColor(Qt::blue));
  list().setStyle(nullptr);
}

TEST_F(OptionsListTest, EscapeHidesTheListFirstAndThenTheWindow) {
  Open(Numbered(4));
  OpenList();
  Key(entry(), Qt::Key_Escape);
  EXPECT_FALSE(list().isVisible());
  EXPECT_TRUE(window().isVisible());
  Key(entry(), Qt::Key_Escape);
  EXPECT_FALSE(window().isVisible());
}

TEST_F(OptionsListTest, EscapeInTheListHidesItAndGoesBackToTheField) {
  Open(Numbered(4));
  OpenList();
  ClickRow(1);
  Key(list(), Qt::Key_Escape);
  EXPECT_FALSE(list().isVisible());
  EXPECT_TRUE(window().isVisible());
  EXPECT_TRUE(entry().hasFocus());
}

TEST_F(OptionsListTest, AClickSelectsOrDeselectsOneEntryAndLeavesTheOthers) {
  Open({{".a", true}, {".b", false}, {".c", true}});
  OpenList();
  ClickRow(1);
  EXPECT_EQ(Stored(), (Entries{{".a", true}, {".b", true}, {".c", true}}));
  EXPECT_EQ(state().lstExtensie.current.get(), 1);
  EXPECT_EQ(Caption("lblExtensies"), "extensions 3(3)");
  EXPECT_EQ(program_.frmMorvex.lblExtensions.caption.get(), ".a.b.c");
  ClickRow(0);
  EXPECT_EQ(Stored(), (Entries{{".a", false}, {".b", true}, {".c", true}}));
  EXPECT_EQ(state().lstExtensie.current.get(), 0);
  EXPECT_EQ(Stored(), ShownEntries());
  EXPECT_EQ(program_.frmMorvex.lblExtensions.caption.get(), ".b.c");
}

TEST_F(OptionsListTest, ArrowsMoveTheFocusMarkAndSpaceSelects) {
  Open({{".a", true}, {".b", false}, {".c", true}});
  OpenList();
  list().setFocus();
  Settle();
  Key(list(), Qt::Key_Home);
  Key(list(), Qt::Key_Down);
  EXPECT_EQ(state().lstExtensie.current.get(), 1);
  EXPECT_EQ(Stored(), (Entries{{".a", true}, {".b", false}, {".c", true}}));
  Key(list(), Qt::Key_Space);
  EXPECT_EQ(Stored(), (Entries{{".a", true}, {".b", true}, {".c", true}}));
  Key(list(), Qt::Key_Space);
  EXPECT_EQ(Stored(), (Entries{{".a", true}, {".b", false}, {".c", true}}));
}

TEST_F(OptionsListTest, TheFocusMarkIsSeenWhileTheEntryFieldHasTheFocus) {
  Open({{".a", true}, {".b", false}, {".c", true}});
  OpenList();
  EXPECT_TRUE(entry().hasFocus());
  const QImage without = list().viewport()->grab().toImage();
  for (int current = 0; current < 3; ++current) {
    state().lstExtensie.current = current;
    Settle();
    const QImage with = list().viewport()->grab().toImage();
    for (int row = 0; row < 3; ++row) {
      const QRect place = list().visualItemRect(list().item(row));
      EXPECT_EQ(with.copy(place) != without.copy(place), row == current) << row;
    }
  }
}

TEST_F(OptionsListTest, ADragSelectsAllThatItPassesAndTheLastHasTheFocusMark) {
  Open({{".a", false}, {".b", false}, {".c", false}, {".d", false}});
  OpenList();
  const auto middle = [&](int row) { return list().visualItemRect(list().item(row)).center(); };
  QTest::mousePress(list().viewport(), Qt::LeftButton, Qt::NoModifier, middle(0));
  for (int row = 1; row <= 2; ++row) {
    QMouseEvent move(QEvent::MouseMove, middle(row), list().viewport()->mapToGlobal(middle(row)),
                     Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(list().viewport(), &move);
  }
  QTest::mouseRelease(list().viewport(), Qt::LeftButton, Qt::NoModifier, middle(2));
  Settle();
  EXPECT_EQ(Stored(), (Entries{{".a", true}, {".b", true}, {".c", true}, {".d", false}}));
  EXPECT_EQ(state().lstExtensie.current.get(), 2);
  EXPECT_EQ(Stored(), ShownEntries());
}

TEST_F(OptionsListTest, LeavingTheListCountsAnew) {
  Open({{".a", true}, {".b", false}});
  OpenList();
  list().setFocus();
  state().lstExtensie.entries = Entries{{".a", true}, {".b", true}, {".c", false}};
  program_.frmMorvex.lblExtensions.caption = "stale";
  entry().setFocus();
  Settle();
  EXPECT_EQ(program_.settings.N_Extension_Selected, 2);
  EXPECT_EQ(program_.settings.N_Extension_Total, 3);
  EXPECT_EQ(program_.frmMorvex.lblExtensions.caption.get(), ".a.b");
  EXPECT_EQ(Caption("lblExtensies"), "extensions 2(3)");
}

TEST_F(OptionsListTest, DropsDownBelowItsFieldAboveTheOtherControls) {
  Open(Numbered(5));
  OpenList();
  EXPECT_EQ(list().x(), entry().x());
  EXPECT_GT(list().y(), entry().geometry().bottom());
  EXPECT_EQ(list().geometry().right(), list_button().geometry().right());
  EXPECT_EQ(window().childAt(list().geometry().center()), list().viewport());
}

TEST_F(OptionsListTest, IsAsHighAsItsEntriesAndScrollsWhenTheyAreTooMany) {
  Open(Numbered(2));
  OpenList();
  const int row = list().sizeHintForRow(0);
  EXPECT_EQ(list().viewport()->height(), 2 * row);
  EXPECT_FALSE(list().verticalScrollBar()->isVisible());
  AddExtension("more");
  EXPECT_EQ(list().viewport()->height(), 3 * row);
  state().lstExtensie.entries = Numbered(100);
  Settle();
  EXPECT_TRUE(list().verticalScrollBar()->isVisible());
  EXPECT_LE(list().geometry().bottom(), window().rect().bottom());
  EXPECT_FALSE(list().geometry().intersects(apply().geometry()));
  EXPECT_GE(list().viewport()->height(), 6 * row);
}

TEST_F(OptionsListTest, TheWindowIsTallerWhileTheListIsOpenAndAsTheUserHadItAfterwards) {
  Open(Numbered(100));
  const QSize closed(window().width() + 20, window().height() + 10);
  window().resize(closed);
  Settle();
  const int button_top = apply().y();
  OpenList();
  EXPECT_GT(window().height(), closed.height());
  EXPECT_GT(apply().y(), button_top);
  OpenList();
  EXPECT_FALSE(list().isVisible());
  EXPECT_EQ(window().size(), closed);
  EXPECT_EQ(apply().y(), button_top);
}

TEST_F(OptionsListTest, AWindowWithRoomForTheListStaysAsItIs) {
  Open(Numbered(3));
  window().resize(window().width(), window().height() + 300);
  Settle();
  const QSize size = window().size();
  OpenList();
  EXPECT_EQ(window().size(), size);
  OpenList();
  EXPECT_EQ(window().size(), size);
}

TEST_F(OptionsListTest, AnEntryAddedBelowTheLastOneSeenComesIntoView) {
  Open(Numbered(100));
  OpenList();
  AddExtension("new");
  const QRect place = list().visualItemRect(list().item(100));
  EXPECT_TRUE(list().viewport()->rect().contains(place));
}

TEST_F(OptionsListTest, GrowsWithTheWindow) {
  Open(Numbered(100));
  OpenList();
  const int height = list().height();
  const int width = list().width();
  window().resize(window().width() + 100, window().height() + 100);
  Settle();
  EXPECT_GT(list().height(), height);
  EXPECT_EQ(list().width(), width + 100);
}

TEST_F(OptionsListTest, AnEmptyListCanBeShown) {
  Open();
  OpenList();
  EXPECT_TRUE(list().isVisible());
  EXPECT_GT(list().viewport()->height(), 0);
}

TEST_F(OptionsListTest, EntriesThatChangeInTheirMiddleAreShownAnew) {
  Open({{".a", true}, {".b", false}, {".c", true}});
  state().lstExtensie.entries = Entries{{".x", false}, {".c", true}};
  Settle();
  EXPECT_EQ(ShownEntries(), (Entries{{".x", false}, {".c", true}}));
}

TEST_F(OptionsListTest, AnExtensionOfOtherBytesThanTextIsKeptAsItIs) {
  system_.codec = TextCodec::kUtf8;
  Open({{".\xFFz", false}});
  OpenList();
  ClickRow(0);
  EXPECT_EQ(Stored(), (Entries{{".\xFFz", true}}));
}

}  // namespace
}  // namespace morvex::test
