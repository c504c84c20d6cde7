// The folder tree. While the tree is open, it covers a path box. Its folders exist on the disk.
#include "ui/qt/folder_tree.h"

#include <QAction>
#include <QDir>
#include <QTemporaryDir>
#include <QToolButton>

#include "core/run/main_window_events.h"
#include "tests/ui/qt/main_window_test.h"

namespace morvex::test {
namespace {

class FolderTreeTest : public MainWindowTest {
 protected:
  FolderTreeTest() {
    QDir(root_.path()).mkpath("alpha/inner");
    QDir(root_.path()).mkpath("beta");
    QFile file(root_.filePath("file.txt"));
    file.open(QIODevice::WriteOnly);
  }

  std::string Path(const char* name) { return NativePath(root_.filePath(name)); }
  FolderTreeView& tree() { return Get<FolderTreeView>("FolderTreeview1"); }
  void DoubleClick(PathBox& box) {
    QTest::mouseDClick(&box, Qt::LeftButton);
    Settle();
  }
  // Starts the program with `path` as the source and opens the tree in place of the source box.
  void OpenAt(const std::string& path) {
    StartWith(path, "/t");
    Activate();
    DoubleClick(source());
    WaitForRows();
  }
  void WaitForRows() {
    QTest::qWait(100);
    Settle();
  }
  QModelIndex IndexOf(const char* name) {
    return qobject_cast<QFileSystemModel*>(tree().model())->index(root_.filePath(name));
  }

  QTemporaryDir root_;
};

TEST_F(FolderTreeTest, ADoubleClickShowsTheTreeInPlaceOfTheBoxAtItsFolder) {
  OpenAt(Path("alpha"));
  EXPECT_FALSE(source().isVisible());
  EXPECT_TRUE(target().isVisible());
  EXPECT_TRUE(tree().isVisible());
  EXPECT_TRUE(tree().hasFocus());
  EXPECT_EQ(tree().Current(), Path("alpha"));
  EXPECT_EQ(program_.frmMorvex.EditedBox, kSourceBox);
  EXPECT_TRUE(tree().viewport()->rect().intersects(tree().visualRect(tree().currentIndex())));
}

TEST_F(FolderTreeTest, TheTreeShowsFoldersOnly) {
  OpenAt(root_.path().toStdString());
  EXPECT_EQ(tree().model()->rowCount(tree().currentIndex()), 2);
}

TEST_F(FolderTreeTest, EnterChoosesTheFolder) {
  OpenAt(Path("alpha"));
  QTest::keyClick(&tree(), Qt::Key_Down);
  Settle();
  const std::string folder = tree().Current();
  EXPECT_NE(folder, Path("alpha"));
  QTest::keyClick(&tree(), Qt::Key_Return);
  Settle();
  EXPECT_FALSE(tree().isVisible());
  EXPECT_TRUE(source().isVisible());
  EXPECT_EQ(source().bytes(), folder);
  EXPECT_EQ(program_.frmMorvex.Text1(kSourceBox).text.get(), folder);
  EXPECT_EQ(Caption(go()), ">------------>>>>");
  EXPECT_TRUE(source().hasFocus());
}

TEST_F(FolderTreeTest, OkTakesTheMarkedFolderAsIfItHadBeenChosen) {
  OpenAt(Path("alpha"));
  QTest::keyClick(&tree(), Qt::Key_Down);
  Settle();
  ASSERT_NE(tree().Current(), Path("alpha"));
  const std::string marked = tree().Current();
  Click(ok());
  EXPECT_FALSE(tree().isVisible());
  EXPECT_EQ(source().bytes(), marked);
  EXPECT_EQ(Caption(go()), "GO !");
  EXPECT_TRUE(files_.Bytes("/program/Init.dat").starts_with(marked + "\r\n"));
}

TEST_F(FolderTreeTest, OkTakesAFolderThatIsMarkedByAClickWhereTheTreeWasOpened) {
  OpenAt(Path("file.txt"));
  ASSERT_EQ(tree().Current(), root_.path().toStdString());
  QTest::mouseClick(tree().viewport(), Qt::LeftButton, Qt::NoModifier,
                    tree().visualRect(tree().currentIndex()).center());
  Settle();
  Click(ok());
  EXPECT_EQ(source().bytes(), root_.path().toStdString());
}

TEST_F(FolderTreeTest, OkLeavesThePathWhereNoFolderWasMarked) {
  OpenAt(Path("file.txt"));
  Click(ok());
  EXPECT_FALSE(tree().isVisible());
  EXPECT_EQ(source().bytes(), Path("file.txt"));
  EXPECT_EQ(Caption(go()), "GO !");
}

TEST_F(FolderTreeTest, OkGivenByItsLetterLeavesTheFocusOnNoOtherCommand) {
  OpenAt(Path("alpha"));
  ASSERT_TRUE(tree().hasFocus());
  ok().click();  // like the mnemonic, this leaves the focus where it is
  Settle();
  EXPECT_EQ(Caption(go()), "GO !");
  EXPECT_EQ(window().focusWidget(), &window());
}

TEST_F(FolderTreeTest, AMarkOfTheTreesLastUseCountsNoMore) {
  OpenAt(Path("alpha"));
  QTest::keyClick(&tree(), Qt::Key_Down);
  Settle();
  QTest::keyClick(&tree(), Qt::Key_Escape);
  Settle();
  DoubleClick(source());
  WaitForRows();
  Click(ok());
  EXPECT_EQ(source().bytes(), Path("alpha"));
}

TEST_F(FolderTreeTest, OkDoesNotArmWhereTheMarkedFolderCannotBeChosen) {
  OpenAt(Path("alpha"));
  tree().setCurrentIndex(IndexOf("beta"));
  QTest::mouseClick(tree().viewport(), Qt::LeftButton, Qt::NoModifier,
                    tree().visualRect(tree().currentIndex()).center());
  ASSERT_EQ(tree().Current(), Path("beta"));
  // The folder is deleted, but the tree still shows it.
  ASSERT_TRUE(QDir(root_.path()).rmdir("beta"));
  QTest::mouseClick(&ok(), Qt::LeftButton);
  EXPECT_FALSE(program_.frmMorvex.cmdGo.enabled);
  EXPECT_TRUE(program_.frmMorvex.FolderTreeview1.visible);
}

// The answer No to "Create?" leaves Go enabled.
TEST_F(FolderTreeTest, GoDoesNotRunWithThePathThatAMarkedFolderIsToReplace) {
  StartWith("/s", "/new");
  Activate();
  Click(ok());
  OnMessage([](QMessageBox& box) { box.button(QMessageBox::No)->click(); });
  ClickGo();
  ASSERT_TRUE(go().isEnabled());
  Text1_DblClick(program_, kTargetBox);
  Settle();
  WaitForRows();
  tree().OpenAt(Path("alpha"));
  WaitForRows();
  QTest::keyClick(&tree(), Qt::Key_Down);
  Settle();
  const std::string marked = tree().Current();
  program_.run.end = RunEnd::kNone;
  ClickGo();
  EXPECT_EQ(program_.run.end, RunEnd::kNone) << "it ran without having been armed with that path";
  EXPECT_EQ(target().bytes(), marked);
  EXPECT_FALSE(go().isEnabled());
  EXPECT_TRUE(ok().isEnabled());
}

TEST_F(FolderTreeTest, ADoubleClickChoosesTheFolder) {
  OpenAt(Path("alpha"));
  tree().scrollTo(IndexOf("beta"));
  QTest::mouseDClick(tree().viewport(), Qt::LeftButton, {},
                     tree().visualRect(IndexOf("beta")).center());
  Settle();
  EXPECT_FALSE(tree().isVisible());
  EXPECT_EQ(source().bytes(), Path("beta"));
}

TEST_F(FolderTreeTest, AClickOnlyGoesToTheFolderAndTellsTheProgram) {
  OpenAt(Path("alpha"));
  tree().scrollTo(IndexOf("beta"));
  QTest::mouseClick(tree().viewport(), Qt::LeftButton, {},
                    tree().visualRect(IndexOf("beta")).center());
  Settle();
  EXPECT_TRUE(tree().isVisible());
  EXPECT_EQ(program_.frmMorvex.FolderTreeview1.last_folder_event, Path("beta"));
  EXPECT_EQ(program_.frmMorvex.Text1(kSourceBox).text.get(), Path("alpha"));
}

TEST_F(FolderTreeTest, EscapeGivesTheBoxBackAsItWas) {
  OpenAt(Path("alpha"));
  const QString caption = Caption(go());
  QTest::keyClick(&tree(), Qt::Key_Down);
  QTest::keyClick(&tree(), Qt::Key_Escape);
  Settle();
  EXPECT_FALSE(tree().isVisible());
  EXPECT_TRUE(source().isVisible());
  EXPECT_EQ(source().bytes(), Path("alpha"));
  EXPECT_EQ(Caption(go()), caption);
  EXPECT_TRUE(source().hasFocus());
}

TEST_F(FolderTreeTest, TheWindowTakesItsOldHeightAgainWhenTheTreeGoes) {
  StartWith(Path("alpha"), "/t");
  const int height = window().height();
  DoubleClick(source());
  EXPECT_GT(window().height(), height);
  EXPECT_GT(tree().height(), 100);
  QTest::keyClick(&tree(), Qt::Key_Escape);
  Settle();
  EXPECT_EQ(window().height(), height);
}

TEST_F(FolderTreeTest, TheTreeOfTheTargetChangesOnlyTheTarget) {
  StartWith("/s", Path("beta"));
  DoubleClick(target());
  EXPECT_TRUE(source().isVisible());
  EXPECT_FALSE(target().isVisible());
  EXPECT_GT(tree().y(), source().y());
  QTest::keyClick(&tree(), Qt::Key_Up);
  const std::string folder = tree().Current();
  QTest::keyClick(&tree(), Qt::Key_Enter);
  Settle();
  EXPECT_EQ(target().bytes(), folder);
  EXPECT_EQ(source().bytes(), "/s");
}

TEST_F(FolderTreeTest, ADoubleClickOnTheOtherBoxGivesTheFirstOneBack) {
  StartWith(Path("alpha"), Path("beta"));
  DoubleClick(source());
  DoubleClick(target());
  EXPECT_TRUE(source().isVisible());
  EXPECT_FALSE(target().isVisible());
  EXPECT_TRUE(tree().isVisible());
  EXPECT_EQ(tree().Current(), Path("beta"));
}

TEST_F(FolderTreeTest, APathThatIsNotThereOpensTheNearestFolderAboveIt) {
  OpenAt(Path("alpha/gone/further"));
  EXPECT_EQ(tree().Current(), Path("alpha"));
}

TEST_F(FolderTreeTest, AFileOpensItsFolder) {
  OpenAt(Path("file.txt"));
  EXPECT_EQ(tree().Current(), NativePath(root_.path()));
}

TEST_F(FolderTreeTest, AnEmptyBoxOpensTheUsersOwnFolder) {
  Start();
  DoubleClick(source());
  EXPECT_EQ(tree().Current(), NativePath(QDir::homePath()));
}

TEST_F(FolderTreeTest, AHiddenFolderCanBeShown) {
  QDir(root_.path()).mkpath(".hidden/inner");
  OpenAt(Path(".hidden/inner"));
  EXPECT_EQ(tree().Current(), Path(".hidden/inner"));
}

TEST_F(FolderTreeTest, AFolderThatIsGoneCannotBeChosen) {
  OpenAt(Path("alpha"));
  tree().setCurrentIndex(IndexOf("beta"));
  QDir(root_.path()).rmdir("beta");
  QTest::keyClick(&tree(), Qt::Key_Return);
  EXPECT_EQ(program_.frmMorvex.Text1(kSourceBox).text.get(), Path("alpha"));
}

TEST_F(FolderTreeTest, AFolderWithALineBreakInItsNameCannotBeChosen) {
  QDir(root_.path()).mkpath("two\nlines");
  OpenAt(Path("alpha"));
  tree().setCurrentIndex(IndexOf("two\nlines"));
  QTest::keyClick(&tree(), Qt::Key_Return);
  Settle();
  EXPECT_TRUE(tree().isVisible());
  EXPECT_EQ(program_.frmMorvex.Text1(kSourceBox).text.get(), Path("alpha"));
}

TEST_F(FolderTreeTest, OkGivesTheChoiceUpSoTheArmedPathsStay) {
  OpenAt(Path("alpha"));
  Click(ok());
  EXPECT_FALSE(tree().isVisible());
  EXPECT_TRUE(source().isVisible());
  EXPECT_EQ(Caption(go()), "GO !");
  EXPECT_EQ(source().bytes(), Path("alpha"));
}

TEST_F(FolderTreeTest, WhileARunIsArmedADoubleClickShowsNoTree) {
  StartWith(Path("alpha"), "/t");
  Click(ok());
  DoubleClick(source());
  EXPECT_FALSE(tree().isVisible());
}

TEST_F(FolderTreeTest, AltAndADigitThatIsAlsoAnArrowDoesNotShowTheTree) {
  StartWith("/s", "/t");
  QTest::keyClick(&source(), Qt::Key_Down, Qt::AltModifier | Qt::KeypadModifier);
  Settle();
  EXPECT_FALSE(tree().isVisible());
}

TEST_F(FolderTreeTest, AltAndDownShowsTheTreeToo) {
  StartWith(Path("alpha"), "/t");
  QTest::keyClick(&source(), Qt::Key_Down, Qt::AltModifier);
  Settle();
  EXPECT_TRUE(tree().isVisible());
}

TEST_F(FolderTreeTest, TheFolderAtTheBoxesEndShowsTheTreeToo) {
  StartWith("/s", Path("beta"));
  auto* const button = target().findChild<QToolButton*>();
  ASSERT_NE(button, nullptr);
  Click(*button);
  EXPECT_TRUE(tree().isVisible());
  EXPECT_EQ(program_.frmMorvex.EditedBox, kTargetBox);
}

}  // namespace
}  // namespace morvex::test
