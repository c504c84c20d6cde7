#include "ui/qt/byte_line_edit.h"

#include <algorithm>
#include <limits>

namespace morvex {

ByteLineEdit::ByteLineEdit(const CodePage& page, QWidget* parent) : QLineEdit(parent), page_(page) {
  setMaxLength(std::numeric_limits<int>::max());
  connect(this, &QLineEdit::textEdited, this, &ByteLineEdit::TakeEdit);
}

void ByteLineEdit::ShowBytes(const std::string& bytes) {
  if (bytes == bytes_) return;
  bytes_ = bytes;
  const int caret = cursorPosition();
  setText(page_.Shown(bytes));
  setCursorPosition(caret);
}

void ByteLineEdit::ShowToolTip(const QString& text) {
  if (text == tool_tip_) return;
  tool_tip_ = text;
  setToolTip(text);
}

std::size_t ByteLineEdit::SelectionEnd() const {
  const int end = hasSelectedText() ? selectionEnd() : cursorPosition();
  return page_.BytesInFront(text(), end);
}

void ByteLineEdit::MoveCaretTo(std::size_t bytes) {
  setCursorPosition(static_cast<int>(page_.CharactersInFront(text(), bytes)));
}

void ByteLineEdit::TakeEdit(const QString& shown) {
  QString line = shown;
  line.remove(QChar('\r')).remove(QChar('\n'));
  const std::optional<std::string> bytes = page_.Bytes(line);
  if (!bytes) {
    const qsizetype added = shown.size() - page_.Shown(bytes_).size();
    const int caret = static_cast<int>(std::max<qsizetype>(0, cursorPosition() - added));
    setText(page_.Shown(bytes_));
    setCursorPosition(caret);
    setToolTip(tr("Not taken over: the files' character set has no such character."));
    return;
  }
  setToolTip(tool_tip_);
  bytes_ = *bytes;
  if (line != shown) {
    const int caret = cursorPosition();
    setText(line);
    setCursorPosition(caret);
  }
  emit BytesEdited(bytes_);
}

}  // namespace morvex
