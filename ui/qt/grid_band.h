// The rows of the replacement grid that can be seen: at most six pairs of cells, whatever the
// list's length. A row keeps its pair of widgets as long as it is in view, and with it caret,
// selection and what can be undone; a row that comes into view takes over the pair of one that has
// left it.
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
  // The cells become children of `window`, which also filters their events. All must outlive the
  // object, the window's destructor excepted.
  GridBand(ReplacementsForm& grid, const CodePage& page, QWidget& window);

  // Brings texts, tool tips, colours and carets in line with the grid. The cells may give signals
  // meanwhile.
  void Show();
  // Puts the cells in their places; `wider` is what each column has beyond its twips, in pixels.
  void Place(const TwipScale& scale, int wider);
  // Colours are chosen anew at the next Show.
  void ForgetColours();

  // Nothing when the cell is not in view.
  ByteLineEdit* At(CellAddress cell) const;
  // Nothing when the widget is not a cell in view.
  std::optional<CellAddress> AddressOf(const QObject* widget) const;
  // Position behind a cell's selection, or of its caret, in bytes: for telling the grid. The cell
  // must be in view.
  std::size_t TakeCaret(CellAddress cell);
  // From the uppermost left cell to the lowest right one.
  std::vector<ByteLineEdit*> InTabOrder() const;

 signals:
  // The user, or Show, changed a text or moved a caret or selection.
  void TextEdited(CellAddress cell, const std::string& text);
  void CaretMoved(CellAddress cell);
  // The user pasted or dropped rows there; the cell's text is as it was.
  void RowsPasted(CellAddress cell, const PastedRows& rows);

 private:
  struct CellWidget {
    ByteLineEdit* edit = nullptr;
    std::size_t caret = 0;  // the grid's selection_end as it was shown or told last
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
  std::array<RowWidgets, kRowsInBand> rows_;  // row r has the pair r modulo 6
};

}  // namespace morvex
