// A line of text that the core keeps as bytes. What the code page cannot write is refused as it is
// typed or pasted, and the tool tip says why until the next change.
#pragma once

#include <QLineEdit>
#include <string>

#include "ui/qt/code_page.h"

namespace morvex {

class ByteLineEdit : public QLineEdit {
  Q_OBJECT

 public:
  // `page` must outlive the widget.
  explicit ByteLineEdit(const CodePage& page, QWidget* parent = nullptr);

  // Shows other bytes; no signal tells of it. The caret stays as far from the start as it was.
  void ShowBytes(const std::string& bytes);
  // The tool tip that is shown while nothing is refused.
  void ShowToolTip(const QString& text);
  const std::string& bytes() const { return bytes_; }
  // Position behind the selection, or of the caret; in bytes.
  std::size_t SelectionEnd() const;
  void MoveCaretTo(std::size_t bytes);

 signals:
  // The user changed the text.
  void BytesEdited(const std::string& bytes);

 private:
  void TakeEdit(const QString& shown);

  const CodePage& page_;
  std::string bytes_;
  QString tool_tip_;
};

}  // namespace morvex
