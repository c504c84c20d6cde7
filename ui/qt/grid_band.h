// The visible rows of the replacement grid: at most six pairs of cell widgets, however long the
// list is. While a row is in view, it keeps its pair of widgets, with caret, selection and undo
// history. A row that comes into view takes the pair of a row that went out of view.
#pragma once

#include <QObject>
#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "core/forms/replacements_form.h"
#include "ui/qt/byte_line_edit.h"
#include "ui/qt/code_page.h"
#include "ui/qt/twip_scale.h"

namespace morvex {

class GridBand : public QObject {
  Q_OBJECT

 public:
  // The cells become children of `window`, which also filters their events. All three arguments
  // must outlive this object; it may be a member of `window`.
  GridBand(ReplacementsForm& grid, const CodePage& page, QWidget& window);

  // Sets texts, tool tips, colours and carets to the grid's state. May emit CaretMoved.
  void Show();
  // Positions the cells. Each column is `wider` pixels wider than its twips say.
  void Place(const TwipScale& scale, int wider);
  // Makes the next Show compute all colours again.
  void ForgetColours();

  // Returns null when the cell is not in view.
  ByteLineEdit* At(CellAddress cell) const;
  // Returns nothing when the widget is no cell in view.
  std::optional<CellAddress> AddressOf(const QObject* widget) const;
  // Returns the end of the cell's selection, or its caret's offset, in bytes; the caller must pass
  // it on to the grid. The cell must be in view.
  std::size_t TakeCaret(CellAddress cell);
  // Returns the cells in view, row by row from the top, left before right.
  std::vector<ByteLineEdit*> InTabOrder() const;

 signals:
  // The user changed a text.
  void TextEdited(CellAddress cell, const std::string& text);
  // The user or Show moved a caret or changed a selection.
  void CaretMoved(CellAddress cell);
  // The user pasted or dropped rows on a cell; its text is unchanged.
  void RowsPasted(CellAddress cell, const PastedRows& rows);

 private:
  struct CellWidget {
    ByteLineEdit* edit = nullptr;
    std::size_t caret = 0;  // the grid's selection_end when it was last shown or reported
    std::optional<Colour> colour;
  };
  struct RowWidgets {
    std::int64_t row = -1;  // -1: unused, and hidden
    CellWidget left;
    CellWidget right;
  };

  void MakeCell(CellWidget& cell, Column column, std::size_t place);
  void Bind(RowWidgets& widgets, std::int64_t row);
  void ShowCell(CellWidget& widget, const Cell& cell, bool is_new);
  void ShowColour(CellWidget& widget, Colour colour);

  ReplacementsForm& grid_;
  const CodePage& page_;
  QWidget& window_;
  std::array<RowWidgets, kRowsInBand> rows_;  // row r uses the pair r modulo 6
};

}  // namespace morvex
