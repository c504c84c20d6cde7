// The options window, opened by its picture in the main window.
#pragma once

#include <QCheckBox>
#include <QLineEdit>
#include <QListWidget>
#include <QToolButton>
#include <string>
#include <utility>
#include <vector>

#include "core/settings/options.h"
#include "tests/ui/qt/desktop_test.h"
#include "ui/qt/picture_button.h"

namespace morvex::test {

class OptionsTest : public DesktopTest {
 protected:
  // Starts the program, fills the extension list with `entries` and opens the options window.
  void Open(std::vector<ListEntry> entries = {}) {
    Start();
    state().lstExtensie.entries = std::move(entries);
    Reopen();
  }
  void Reopen() {
    imOpties_Click(program_);
    Settle();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window()));
    Settle();
  }

  OptionsForm& state() { return program_.frmOpties; }
  OptionsWindowWidget& window() { return desktop_->options_window(); }
  QLineEdit& Line(const char* name) { return Find<QLineEdit>(window(), name); }
  QLineEdit& entry() { return Line("txtExtensie"); }
  QListWidget& list() { return Find<QListWidget>(window(), "lstExtensie"); }
  QToolButton& list_button() { return Find<QToolButton>(window(), "cmdListExtensie_Down"); }
  QCheckBox& logging() { return Find<QCheckBox>(window(), "chkLoggen"); }
  // Clicks the box itself, because some styles ignore a click beside the box and its text.
  void ClickLogging() {
    QTest::mouseClick(&logging(), Qt::LeftButton, Qt::NoModifier,
                      QPoint(8, logging().height() / 2));
    Settle();
  }
  QPushButton& apply() { return Find<QPushButton>(window(), "cmdToepassen"); }
  // Returns a label's text without the "&" of its mnemonic.
  QString Caption(const char* name) { return Find<QLabel>(window(), name).text().remove('&'); }

  void Key(QWidget& widget, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(&widget, key, modifiers);
    Settle();
  }
  // Replaces the text of a field.
  void Fill(QLineEdit& line, const char* text) {
    line.selectAll();
    if (*text == '\0') QTest::keyClick(&line, Qt::Key_Delete);
    QTest::keyClicks(&line, text);
    Settle();
  }
  void AddExtension(const char* typed) {
    Fill(entry(), typed);
    Key(entry(), Qt::Key_Return, Qt::ControlModifier);
  }
  void OpenList() { Click(list_button()); }
  void ClickRow(int row) {
    QTest::mouseClick(list().viewport(), Qt::LeftButton, Qt::NoModifier,
                      list().visualItemRect(list().item(row)).center());
    Settle();
  }
  // Returns the entries that the list shows, and whether each is selected.
  std::vector<ListEntry> ShownEntries() {
    std::vector<ListEntry> entries;
    for (int row = 0; row < list().count(); ++row) {
      entries.push_back({list().item(row)->text().toStdString(), list().item(row)->isSelected()});
    }
    return entries;
  }
  static std::vector<ListEntry> Numbered(int count) {
    std::vector<ListEntry> entries;
    for (int i = 0; i < count; ++i) entries.push_back({".e" + std::to_string(i), i < 3});
    return entries;
  }
};

inline void PrintTo(const ListEntry& entry, std::ostream* out) {
  *out << entry.text << (entry.selected ? " (selected)" : "");
}

}  // namespace morvex::test
