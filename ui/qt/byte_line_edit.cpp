#include "ui/qt/byte_line_edit.h"

#include <QKeyEvent>
#include <QToolTip>
#include <QValidator>
#include <algorithm>
#include <limits>
#include <utility>

#include "ui/qt/tool_tip.h"

namespace morvex {
namespace {

bool IsLineBreak(QChar character) { return character == '\r' || character == '\n'; }

}  // namespace

// Asked by the toolkit before a change counts; what it refuses leaves text, selection and undo
// steps as they were.
class ByteLineEdit::Judge : public QValidator {
 public:
  explicit Judge(ByteLineEdit& line) : QValidator(&line), line_(line) {}

  State validate(QString& text, int& caret) const override {
    return line_.IsTakenOver(text, caret) ? Acceptable : Invalid;
  }

 private:
  ByteLineEdit& line_;
};

ByteLineEdit::ByteLineEdit(const CodePage& page, QWidget* parent) : QLineEdit(parent), page_(page) {
  insert_later_.setSingleShot(true);
  connect(&insert_later_, &QTimer::timeout, this, &ByteLineEdit::InsertWithoutBreaks);
  setMaxLength(std::numeric_limits<int>::max());
  setValidator(new Judge(*this));
  connect(this, &QLineEdit::textEdited, this, &ByteLineEdit::TakeEdit);
  connect(this, &QLineEdit::inputRejected, this, &ByteLineEdit::TellRefusal);
}

void ByteLineEdit::ShowBytes(const std::string& bytes) {
  if (bytes == bytes_) return;
  bytes_ = bytes;
  most_nuls_ = std::count(bytes.begin(), bytes.end(), '\0');
  const int caret = cursorPosition();
  showing_ = true;
  shown_ = page_.Shown(bytes);
  setText(shown_);
  showing_ = false;
  setCursorPosition(caret);
}

void ByteLineEdit::ShowToolTip(const QString& text) {
  const QString plain = PlainToolTip(text);
  if (plain == tool_tip_) return;
  tool_tip_ = plain;
  setToolTip(plain);
}

std::size_t ByteLineEdit::SelectionEnd() const {
  const int end = hasSelectedText() ? selectionEnd() : cursorPosition();
  return page_.BytesInFront(text(), end);
}

void ByteLineEdit::MoveCaretTo(std::size_t bytes) {
  setCursorPosition(static_cast<int>(page_.CharactersInFront(text(), bytes)));
}

bool ByteLineEdit::IsDigitWithAlt(const QKeyEvent& event) {
  const bool is_enter = event.key() == Qt::Key_Enter;
  return !is_enter && event.modifiers().testFlags(Qt::AltModifier | Qt::KeypadModifier);
}

bool ByteLineEdit::event(QEvent* event) {
  const bool handled = QLineEdit::event(event);
  InsertWithoutBreaks();
  return handled;
}

void ByteLineEdit::keyPressEvent(QKeyEvent* event) {
  // A letter with Alt is meant as a command, and must not become part of a name when there is none.
  // The other Alt key, by which characters are written, comes with Ctrl or without either.
  const Qt::KeyboardModifiers modifiers = event->modifiers();
  const bool is_command =
      modifiers.testFlag(Qt::AltModifier) && !modifiers.testFlag(Qt::ControlModifier);
  if (is_command && !event->text().isEmpty() && event->text().front().isPrint()) {
    event->ignore();
    return;
  }
  QLineEdit::keyPressEvent(event);
}

bool ByteLineEdit::IsTakenOver(const QString& text, int caret) {
  if (showing_ || text == shown_) return true;
  if (!std::any_of(text.begin(), text.end(), IsLineBreak)) {
    refusal_ = Refusal(text);
    return refusal_.isEmpty();
  }
  // The caret stands behind what was inserted, so the rest is as it was.
  const qsizetype rest = text.size() - caret;
  const qsizetype limit = std::clamp<qsizetype>(shown_.size() - rest, 0, caret);
  const qsizetype at =
      std::mismatch(text.begin(), text.begin() + limit, shown_.begin()).first - text.begin();
  QString inserted = text.mid(at, caret - at);
  inserted.remove('\r').remove('\n');
  without_breaks_ =
      Insertion{static_cast<int>(at),
                static_cast<int>(std::max<qsizetype>(0, shown_.size() - rest - at)), inserted};
  // Once the toolkit has taken the change back: at the end of this event, or soon after a command
  // that did not come as one.
  insert_later_.start(0);
  return false;
}

void ByteLineEdit::InsertWithoutBreaks() {
  if (!without_breaks_) return;
  const Insertion insertion = *std::exchange(without_breaks_, std::nullopt);
  if (insertion.text.isEmpty()) return;
  setSelection(insertion.at, insertion.replaced);
  insert(insertion.text);
}

// Why the text cannot be taken over; empty when it can.
QString ByteLineEdit::Refusal(const QString& text) const {
  if (text.count(QChar(u'\0')) > most_nuls_) {
    return tr("Not taken over: a text has no place for the character NUL.");
  }
  if (!page_.Bytes(text)) {
    return tr("Not taken over: the files' character set has no such character.");
  }
  return {};
}

void ByteLineEdit::TakeEdit(const QString& text) {
  setToolTip(tool_tip_);
  shown_ = text;
  std::string bytes = page_.Bytes(text).value_or(bytes_);
  if (bytes == bytes_) return;
  bytes_ = std::move(bytes);
  emit BytesEdited(bytes_);
}

void ByteLineEdit::TellRefusal() {
  if (refusal_.isEmpty()) return;
  setToolTip(refusal_);
  if (isVisible()) QToolTip::showText(mapToGlobal(cursorRect().bottomLeft()), refusal_, this);
  refusal_.clear();
}

}  // namespace morvex
