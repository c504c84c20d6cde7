// A line of text that the core keeps as bytes. What the code page cannot write is refused as it is
// typed, pasted or dropped, and so are line breaks and files; the tool tip names the first
// character that was refused, until the next change. The end of a line that was copied whole is
// left out.
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

// Of what was pasted: the two texts of each line, as bytes.
using PastedRows = std::vector<std::pair<std::string, std::string>>;

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
  // From now on lines of two texts with a tab between them are rows of a table, of which RowsPasted
  // tells, and no text of this line; other tabs are refused, but for one that comes alone.
  void ExpectRows() { expects_rows_ = true; }
  // Has the tool tip say, until the next change, why something was not taken over.
  void TellRefusal(const QString& why);

  // Whether the key is Alt with a digit beside the others, which writes a character by its number
  // on Windows. Without NumLock it comes as an arrow or the like, and is no command all the same.
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
  class Judge;
  struct Insertion {
    int at = 0;
    int replaced = 0;  // characters behind `at` that it takes the place of
    QString text;
  };

  bool IsTakenOver(const QString& text, int caret);
  Insertion InsertionIn(const QString& text, int caret) const;
  QString Refusal(const QString& inserted, bool refuses_nul, bool is_rows) const;
  void TakeEdit(const QString& text);
  void DoWhatIsPutOff();

  const CodePage& page_;
  std::string bytes_;
  QString shown_;  // the text as it was last taken over
  QString tool_tip_;
  QString refusal_;  // why the change that is being judged is not taken over
  // What comes in place of a change that was not taken over as it was.
  std::optional<Insertion> without_line_end_;
  std::optional<PastedRows> rows_;
  QTimer put_off_;
  bool expects_rows_ = false;
  qsizetype most_nuls_ = 0;  // as many as the core put there itself
  bool showing_ = false;
};

}  // namespace morvex
