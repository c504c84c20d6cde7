// A line edit whose text the core keeps as bytes. It refuses files, line breaks, and characters
// that the code page lacks, whether typed, pasted or dropped; until the next change its tool tip
// names the first refused character. One line break at the end of a pasted line is removed.
#pragma once

#include <QLineEdit>
#include <QString>
#include <QTimer>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "ui/qt/code_page.h"

namespace morvex {

// Pasted rows: the two texts of each line, as bytes.
using PastedRows = std::vector<std::pair<std::string, std::string>>;

class ByteLineEdit : public QLineEdit {
  Q_OBJECT

 public:
  // `page` must outlive the widget.
  explicit ByteLineEdit(const CodePage& page, QWidget* parent = nullptr);

  // Shows `bytes` without emitting BytesEdited. If they are not shown already, the caret keeps its
  // distance from the start, and the undo history is cleared.
  void ShowBytes(const std::string& bytes);
  // Sets the tool tip. When a change is refused, the reason takes its place until the next change.
  // `text` is plain text, never markup.
  void ShowToolTip(const QString& text);
  const std::string& bytes() const { return bytes_; }
  // Returns the end of the selection, or the caret's offset, in bytes.
  std::size_t SelectionEnd() const;
  void MoveCaretTo(std::size_t bytes);
  // After this call, a pasted text whose lines have exactly one tab each is taken as table rows:
  // RowsPasted passes the rows on, and this line edit keeps its text. The exception is a text that
  // is nothing but one tab: it is inserted like a character. Any other text with tabs is refused.
  void ExpectRows() { expects_rows_ = true; }
  // Shows in the tool tip, until the next change, why something was refused.
  void TellRefusal(const QString& why);

  // Whether the key is one of the numeric keypad, other than Enter, pressed with Alt. On Windows
  // such keys enter a character by its number. Without NumLock they arrive as arrows or the like
  // and must not count as commands.
  static bool IsDigitWithAlt(const QKeyEvent& event);

 signals:
  // The user changed the text.
  void BytesEdited(const std::string& bytes);
  void RowsPasted(const PastedRows& rows);

 protected:
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  class Validator;
  struct Insertion {
    int at = 0;
    int replaced = 0;  // how many UTF-16 units, counted from `at`, are replaced by `text`
    QString text;
  };

  bool Accepts(const QString& text, int caret);
  Insertion InsertionIn(const QString& text, int caret) const;
  QString Refusal(const QString& inserted, bool refuses_nul, bool is_rows) const;
  void TakeEdit(const QString& text);
  void ApplyDeferred();

  const CodePage& page_;
  std::string bytes_;
  QString shown_;  // the last accepted text
  QString tool_tip_;
  QString refusal_;  // why the change under validation is refused; empty when it is accepted
  // What takes the place of a refused change: the inserted text without its last line break, or the
  // pasted rows, which RowsPasted passes on. At most one of the two is set.
  std::optional<Insertion> without_line_end_;
  std::optional<PastedRows> rows_;
  QTimer deferred_;
  bool expects_rows_ = false;
  qsizetype allowed_nuls_ = 0;  // the number of NULs in the text that the core set
  bool showing_ = false;
};

}  // namespace morvex
