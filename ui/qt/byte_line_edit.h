// A line of text that the core keeps as bytes. What the code page cannot write is refused as it is
// typed or pasted, and the tool tip says why until the next change. Line breaks in what is pasted
// are left out.
#pragma once

#include <QLineEdit>
#include <QString>
#include <QTimer>
#include <optional>
#include <string>

#include "ui/qt/code_page.h"

namespace morvex {

class ByteLineEdit : public QLineEdit {
  Q_OBJECT

 public:
  // `page` must outlive the widget.
  explicit ByteLineEdit(const CodePage& page, QWidget* parent = nullptr);

  // Shows other bytes; BytesEdited does not tell of it. The caret stays as far from the start as it
  // was, and nothing that was typed before can be undone.
  void ShowBytes(const std::string& bytes);
  // The tool tip that is shown while nothing is refused; read as it is, never as markup.
  void ShowToolTip(const QString& text);
  const std::string& bytes() const { return bytes_; }
  // Position behind the selection, or of the caret; in bytes.
  std::size_t SelectionEnd() const;
  void MoveCaretTo(std::size_t bytes);

  // Whether the key is Alt with a digit beside the others, which writes a character by its number
  // on Windows. Without NumLock it comes as an arrow or the like, and is no command all the same.
  static bool IsDigitWithAlt(const QKeyEvent& event);

 signals:
  // The user changed the text.
  void BytesEdited(const std::string& bytes);

 protected:
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  class Judge;
  struct Insertion {
    int at = 0;
    int replaced = 0;  // characters behind `at` that it takes the place of
    QString text;
  };

  bool IsTakenOver(const QString& text, int caret);
  QString Refusal(const QString& text) const;
  void TakeEdit(const QString& text);
  void TellRefusal();
  void InsertWithoutBreaks();

  const CodePage& page_;
  std::string bytes_;
  QString shown_;  // the text as it was last taken over
  QString tool_tip_;
  QString refusal_;  // why the change that is being judged is not taken over
  std::optional<Insertion> without_breaks_;
  QTimer insert_later_;
  qsizetype most_nuls_ = 0;  // as many as the core put there itself
  bool showing_ = false;
};

}  // namespace morvex
