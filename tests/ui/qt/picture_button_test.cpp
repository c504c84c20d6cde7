// Pictures drawn at any scale and in the palette's colours, and picture buttons used by mouse and
// keyboard.
#include "ui/qt/picture_button.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QImage>
#include <QPainter>
#include <QSignalSpy>
#include <QTest>

namespace morvex::test {
namespace {

QImage Drawn(LineDrawing& drawing, int size, const QColor& ink) {
  QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  drawing.Paint(painter, image.rect(), ink);
  return image;
}

bool Holds(const QImage& image, QRgb colour) {
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      if (image.pixel(x, y) == colour) return true;
    }
  }
  return false;
}

TEST(Pictures, EveryDrawingIsThereAndDrawsSomething) {
  LoadPictures();
  for (const char* name : {"folder", "hand", "list", "mask", "morvex", "options"}) {
    const QString resource = QString(":/pictures/%1.svg").arg(name);
    ASSERT_TRUE(QFile::exists(resource)) << name;
    LineDrawing drawing(resource);
    QImage empty(64, 64, QImage::Format_ARGB32_Premultiplied);
    empty.fill(Qt::transparent);
    EXPECT_NE(Drawn(drawing, 64, Qt::black), empty) << name;
  }
}

TEST(Pictures, LinesTakeTheInk) {
  for (const char* name : {"folder", "list", "options"}) {
    LineDrawing drawing(QString(":/pictures/%1.svg").arg(name));
    EXPECT_TRUE(Holds(Drawn(drawing, 96, Qt::black), qRgb(0, 0, 0))) << name;
    EXPECT_TRUE(Holds(Drawn(drawing, 96, Qt::white), qRgb(255, 255, 255))) << name;
    EXPECT_FALSE(Holds(Drawn(drawing, 96, Qt::white), qRgb(0, 0, 0))) << name;
  }
}

TEST(Pictures, TheCursorHasThePixelsOfItsScreensScale) {
  for (const qreal scale : {1.0, 1.5, 2.0}) {
    const QCursor cursor = HandCursor(scale);
    EXPECT_EQ(cursor.pixmap().width(), qRound(32 * scale));
    EXPECT_EQ(cursor.pixmap().devicePixelRatio(), scale);
    EXPECT_LT(cursor.hotSpot().x(), 32);
    EXPECT_LT(cursor.hotSpot().y(), 32);
  }
}

TEST(Pictures, TheProgramsIconIsSharpFromSmallToLarge) {
  const QIcon icon = ProgramIcon();
  for (const int size : {16, 32, 48, 256}) {
    EXPECT_EQ(icon.pixmap(size, size).width(), size);
  }
}

class PictureButtonTest : public testing::Test {
 protected:
  PictureButtonTest() {
    button_.show();
    button_.activateWindow();
    QTest::qWait(1);
  }

  PictureButton button_{":/pictures/folder.svg", nullptr};
  QSignalSpy clicks_{&button_, &QAbstractButton::clicked};
};

TEST_F(PictureButtonTest, IsClickedByMouseSpaceAndEnter) {
  QTest::mouseClick(&button_, Qt::LeftButton);
  EXPECT_EQ(clicks_.count(), 1);
  QTest::keyClick(&button_, Qt::Key_Space);
  EXPECT_EQ(clicks_.count(), 2);
  QTest::keyClick(&button_, Qt::Key_Return);
  EXPECT_EQ(clicks_.count(), 3);
  QTest::keyClick(&button_, Qt::Key_Enter);
  EXPECT_EQ(clicks_.count(), 4);
}

TEST_F(PictureButtonTest, AKeyThatIsHeldDownClicksOnce) {
  QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, "\r", true);
  QApplication::sendEvent(&button_, &repeated);
  EXPECT_EQ(clicks_.count(), 0);
}

TEST_F(PictureButtonTest, DisabledItIsPaleAndCannotBeClicked) {
  const QImage enabled = button_.grab().toImage();
  button_.setEnabled(false);
  EXPECT_NE(button_.grab().toImage(), enabled);
  QTest::mouseClick(&button_, Qt::LeftButton);
  EXPECT_EQ(clicks_.count(), 0);
}

TEST_F(PictureButtonTest, TheFocusIsSeen) {
  button_.clearFocus();
  const QImage without = button_.grab().toImage();
  button_.setFocus();
  EXPECT_NE(button_.grab().toImage(), without);
}

TEST_F(PictureButtonTest, TellsThatThePointerMoves) {
  QSignalSpy moves(&button_, &PictureButton::PointerMoved);
  QTest::mouseMove(&button_, QPoint(10, 10));
  QTest::mouseMove(&button_, QPoint(12, 12));
  EXPECT_GE(moves.count(), 1);
}

TEST_F(PictureButtonTest, ShowsThePointerThatItIsTold) {
  button_.ShowPointer(MousePointer::kCustom);
  EXPECT_EQ(button_.cursor().shape(), Qt::BitmapCursor);
  button_.ShowPointer(MousePointer::kDefault);
  EXPECT_EQ(button_.cursor().shape(), Qt::ArrowCursor);
}

}  // namespace
}  // namespace morvex::test
