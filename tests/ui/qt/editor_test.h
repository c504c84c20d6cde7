// Opens the list editor without a screen and does in it what a user does.
#pragma once

#include <QFileDialog>
#include <QScrollBar>
#include <functional>
#include <string>
#include <utility>

#include "core/list/editor.h"
#include "tests/ui/qt/desktop_test.h"
#include "ui/qt/byte_line_edit.h"

namespace morvex::test {

class EditorTest : public DesktopTest {
 protected:
  // Starts the program and opens the editor.
  EditorWindowWidget& Open() {
    Start();
    return OpenAgain();
  }
  EditorWindowWidget& OpenAgain() {
    imList_Click(program_);
    Settle();
    Activate();
    return Editor();
  }
  // Activates the window, as a window manager activates the window in front.
  void Activate() {
    QApplication::setActiveWindow(&Editor());
    Settle();
  }

  EditorWindowWidget& Editor() { return desktop_->editor_window(); }
  ByteLineEdit& Left(int row) { return Cell("txtLinks_", row); }
  ByteLineEdit& Right(int row) { return Cell("txtRechts_", row); }
  bool HasRow(int row) {
    const QString number = QString::number(row);
    auto* const left = Editor().findChild<ByteLineEdit*>("txtLinks_" + number);
    auto* const right = Editor().findChild<ByteLineEdit*>("txtRechts_" + number);
    return left != nullptr && left->isVisible() && right != nullptr && right->isVisible();
  }
  QPushButton& Command(const char* name) { return Find<QPushButton>(Editor(), name); }
  QScrollBar& Bar() { return Find<QScrollBar>(Editor(), "VScroll1"); }

  // Gives the widget the focus and presses the key.
  void Press(QWidget& widget, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    widget.setFocus();
    QTest::keyClick(&widget, key, modifiers);
    Settle();
  }
  // Presses the key in the widget that has the focus.
  void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    ASSERT_NE(QApplication::focusWidget(), nullptr);
    Press(*QApplication::focusWidget(), key, modifiers);
  }
  void Type(QWidget& widget, const char* text) {
    widget.setFocus();
    QTest::keyClicks(&widget, text);
    Settle();
  }
  // Presses Enter in the last row until there are `count` rows.
  void MakeRows(int count) {
    while (grid_.LastRow + 1 < count) Press(Left(static_cast<int>(grid_.LastRow)), Qt::Key_Return);
  }
  // Types the rows from row 0 on, with Enter between them.
  void TypeRows(const Rows& rows) {
    for (std::size_t i = 0; i < rows.size(); ++i) {
      const int row = static_cast<int>(i);
      if (i > 0) Press(Left(row - 1), Qt::Key_Return);
      Type(Left(row), rows[i].first.c_str());
      Type(Right(row), rows[i].second.c_str());
    }
  }
  Rows GridRows() const {
    Rows rows;
    for (const GridRow& row : grid_.rows) rows.emplace_back(row.txtLinks.text, row.txtRechts.text);
    return rows;
  }
  // Returns the texts of the rows in view, from the top.
  Rows ShownRows() {
    Rows rows;
    for (int row = 0; row <= grid_.LastRow; ++row) {
      if (HasRow(row)) rows.emplace_back(Left(row).bytes(), Right(row).bytes());
    }
    return rows;
  }
  // Returns the numbers of the rows in view, as in "0 1 2".
  std::string RowsInView() {
    std::string rows;
    for (int row = 0; row <= grid_.LastRow + 1; ++row) {
      if (HasRow(row)) rows += (rows.empty() ? "" : " ") + std::to_string(row);
    }
    return rows;
  }
  // Returns the name of the widget that has the focus; "nothing" if there is none.
  static std::string Focus() {
    const QWidget* const widget = QApplication::focusWidget();
    return widget == nullptr ? "nothing" : widget->objectName().toStdString();
  }
  // Turns the wheel by `notches`, three rows each; a positive number scrolls towards the list's
  // end.
  void Wheel(QWidget& over, int notches) {
    const QPointF middle = over.rect().center();
    QWheelEvent event(middle, over.mapToGlobal(middle), {}, {0, -120 * notches}, Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QSpontaneKeyEvent::setSpontaneous(&event);  // marks the event as one from a mouse
    qApp->notify(&over, &event);
    Settle();
  }
  // Returns at once; when the next file dialog is shown, `act` is called with it.
  void OnFileDialog(std::function<void(QFileDialog&)> act) {
    QTimer::singleShot(0, &program_context_, [this, act = std::move(act)]() mutable {
      auto* const dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
      if (dialog == nullptr) {
        OnFileDialog(std::move(act));
        return;
      }
      act(*dialog);
    });
  }
  // Chooses `path` in the next file dialog.
  void Choose(const std::string& path) {
    OnFileDialog([path](QFileDialog& dialog) {
      auto* const name = dialog.findChild<QLineEdit*>("fileNameEdit");
      ASSERT_NE(name, nullptr);
      name->setText(QString::fromStdString(path));
      QMetaObject::invokeMethod(&dialog, "accept");
    });
  }
  void CancelDialog() {
    OnFileDialog([](QFileDialog& dialog) { dialog.reject(); });
  }

  ReplacementsForm& grid_ = program_.frmReplacements;

 private:
  ByteLineEdit& Cell(const char* column, int row) {
    return Find<ByteLineEdit>(Editor(), (column + std::to_string(row)).c_str());
  }
};

}  // namespace morvex::test
