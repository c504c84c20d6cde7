#include "ui/qt/byte_line_edit.h"

#include <QDropEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QToolTip>
#include <QValidator>
#include <algorithm>
#include <limits>
#include <utility>

#include "ui/qt/pasted_columns.h"
#include "ui/qt/tool_tip.h"

namespace morvex {
namespace {

bool IsLineBreak(QChar character) { return character == '\r' || character == '\n'; }

QString MissingCharacter(const QString& character) {
  const char32_t code = character.size() == 2 ? QChar::surrogateToUcs4(character[0], character[1])
                                              : static_cast<char32_t>(character[0].unicode());
  const QString number = QString("U+%1").arg(static_cast<uint>(code), 4, 16, QChar('0')).toUpper();
  if (!QChar::isPrint(code)) {
    return ByteLineEdit::tr("Not accepted: the files' character set has no character %1.")
        .arg(number);
  }
  return ByteLineEdit::tr("Not accepted: the files' character set has no \"%1\" (%2).")
      .arg(character, number);
}

}  // namespace

// The toolkit asks the validator before a change takes effect. A refused change leaves text,
// selection and undo history as they were.
class ByteLineEdit::Validator : public QValidator {
 public:
  explicit Validator(ByteLineEdit& line) : QValidator(&line), line_(line) {}

  State validate(QString& text, int& caret) const override {
    return line_.Accepts(text, caret) ? Acceptable : Invalid;
  }

 private:
  ByteLineEdit& line_;
};

ByteLineEdit::ByteLineEdit(const CodePage& page, QWidget* parent) : QLineEdit(parent), page_(page) {
  deferred_.setSingleShot(true);
  connect(&deferred_, &QTimer::timeout, this, &ByteLineEdit::ApplyDeferred);
  setMaxLength(std::numeric_limits<int>::max());
  setValidator(new Validator(*this));
  connect(this, &QLineEdit::textEdited, this, &ByteLineEdit::TakeEdit);
  connect(this, &QLineEdit::inputRejected, this, [this] {
    if (!refusal_.isEmpty()) TellRefusal(std::exchange(refusal_, QString()));
  });
}

void ByteLineEdit::ShowBytes(const std::string& bytes) {
  if (bytes == bytes_) return;
  bytes_ = bytes;
  allowed_nuls_ = std::count(bytes.begin(), bytes.end(), '\0');
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
  ApplyDeferred();
  return handled;
}

void ByteLineEdit::keyPressEvent(QKeyEvent* event) {
  // Alt with a letter is a command and never enters the letter, even where no such command exists.
  // AltGr, which does enter characters, arrives as Ctrl+Alt or as no modifier.
  const Qt::KeyboardModifiers modifiers = event->modifiers();
  const bool is_command =
      modifiers.testFlag(Qt::AltModifier) && !modifiers.testFlag(Qt::ControlModifier);
  if (is_command && !event->text().isEmpty() && event->text().front().isPrint()) {
    event->ignore();
    return;
  }
  QLineEdit::keyPressEvent(event);
}

bool ByteLineEdit::Accepts(const QString& text, int caret) {
  // Undo and redo bring back text that was accepted before.
  if (showing_ || text == shown_ || isRedoAvailable()) return true;
  const Insertion insertion = InsertionIn(text, caret);
  const auto rows = expects_rows_ ? ColumnsOf(insertion.text) : std::nullopt;
  const QString line = rows ? insertion.text : WithoutLastLineEnd(insertion.text);
  const bool refuses_nul = rows || text.count(QChar(u'\0')) > allowed_nuls_;
  refusal_ = Refusal(line.isEmpty() ? insertion.text : line, refuses_nul, rows.has_value());
  if (!refusal_.isEmpty()) return false;
  if (rows) {
    rows_.emplace();
    for (const auto& [left, right] : *rows) {
      rows_->emplace_back(page_.Bytes(left).value_or(""), page_.Bytes(right).value_or(""));
    }
  } else if (line.size() < insertion.text.size()) {
    without_line_end_ = Insertion{insertion.at, insertion.replaced, line};
  } else {
    return true;
  }
  // rows_ or without_line_end_ is taken once the toolkit has reverted the change: at the end of
  // this event, or by the timer when the change came without an event.
  deferred_.start(0);
  return false;
}

// Returns what was inserted. The caret is behind the inserted text, so everything from the caret on
// is unchanged.
ByteLineEdit::Insertion ByteLineEdit::InsertionIn(const QString& text, int caret) const {
  const qsizetype rest = text.size() - caret;
  const qsizetype limit = std::clamp<qsizetype>(shown_.size() - rest, 0, caret);
  qsizetype at =
      std::mismatch(text.begin(), text.begin() + limit, shown_.begin()).first - text.begin();
  if (at > 0 && text[at - 1].isHighSurrogate()) --at;
  return {static_cast<int>(at), static_cast<int>(std::max<qsizetype>(0, shown_.size() - rest - at)),
          text.mid(at, caret - at)};
}

// Returns why the text is refused, naming its first character that is not allowed; empty when the
// text is accepted.
QString ByteLineEdit::Refusal(const QString& inserted, bool refuses_nul, bool is_rows) const {
  const bool has_bytes = page_.Bytes(inserted).has_value();
  for (qsizetype at = 0, size = 1; at < inserted.size(); at += size) {
    const QChar unit = inserted[at];
    const bool is_pair =
        unit.isHighSurrogate() && at + 1 < inserted.size() && inserted[at + 1].isLowSurrogate();
    size = is_pair ? 2 : 1;
    if (unit.isNull() && refuses_nul) {
      return tr("Not accepted: a text cannot hold the character NUL.");
    }
    if (IsLineBreak(unit) && !is_rows) {
      const bool is_both = inserted.mid(at, 2) == "\r\n";
      return tr("Not accepted: this is one line and cannot hold a line break (%1).")
                 .arg(is_both        ? "CR LF"
                      : unit == '\n' ? "LF"
                                     : "CR") +
             (expects_rows_ ? tr(" Lines of two texts with a tab between them become rows.")
                            : QString());
    }
    if (unit == '\t' && expects_rows_ && !is_rows && inserted.size() > 1) {
      return tr(
          "Not accepted: a tab separates the two texts of a row, so each line must have one.");
    }
    if (has_bytes) continue;
    const QString character = inserted.mid(at, size);
    if (!page_.Bytes(character)) return MissingCharacter(character);
  }
  return {};
}

void ByteLineEdit::ApplyDeferred() {
  if (rows_) emit RowsPasted(*std::exchange(rows_, std::nullopt));
  if (!without_line_end_) return;
  const Insertion insertion = *std::exchange(without_line_end_, std::nullopt);
  setSelection(insertion.at, insertion.replaced);
  insert(insertion.text);
}

void ByteLineEdit::TakeEdit(const QString& text) {
  setToolTip(tool_tip_);
  shown_ = text;
  std::string bytes = page_.Bytes(text).value_or(bytes_);
  if (bytes == bytes_) return;
  bytes_ = std::move(bytes);
  emit BytesEdited(bytes_);
}

void ByteLineEdit::TellRefusal(const QString& why) {
  setToolTip(why);
  if (isVisible()) QToolTip::showText(mapToGlobal(cursorRect().bottomLeft()), why, this);
}

// A dropped file would enter its URL as text, so files are refused.
void ByteLineEdit::dragEnterEvent(QDragEnterEvent* event) {
  if (event->mimeData()->hasUrls()) return event->ignore();
  QLineEdit::dragEnterEvent(event);
}

void ByteLineEdit::dragMoveEvent(QDragMoveEvent* event) {
  if (event->mimeData()->hasUrls()) return event->ignore();
  QLineEdit::dragMoveEvent(event);
}

void ByteLineEdit::dropEvent(QDropEvent* event) {
  if (event->mimeData()->hasUrls()) return event->ignore();
  QLineEdit::dropEvent(event);
}

}  // namespace morvex
