#include "core/forms/replacements_form.h"

namespace morvex {
namespace {

constexpr int kButtonTop = 900;  // below the one row of an empty grid
constexpr int kButtonHeight = 375;

// The caption holds the headings of the two columns.
std::string ColumnHeadings() {
  return std::string(7, ' ') + "replace:" + std::string(81, ' ') + "by:";
}

}  // namespace

ReplacementsForm::ReplacementsForm()
    : Form(ColumnHeadings(), 9330, 1515),
      VScroll1(changes, {8835, 360, 255, 375}, 8),
      cmdJoker(changes, {360, kButtonTop, 375, kButtonHeight}, 0, "", "wildcard"),
      cmdMirror(changes, {2100, kButtonTop, 855, kButtonHeight}, 2, "<-|->", "mirror"),
      cmdCRLF(changes, {900, kButtonTop, 1035, kButtonHeight}, 1, "[CRLF]",
              "carriage return, line feed"),
      cmdReset(changes, {3120, kButtonTop, 855, kButtonHeight}, 3, "Reset", "clear entries"),
      cmdDeleteEmpty(changes, {4140, kButtonTop, 375, kButtonHeight}, 4, "X", "clear empty rows"),
      cmdImport(changes, {4680, kButtonTop, 975, kButtonHeight}, 5, "Import", "from file"),
      cmdSaveList(changes, {5820, kButtonTop, 975, kButtonHeight}, 6, "Save", "to file"),
      cmdOK(changes, {7560, kButtonTop, 1215, kButtonHeight}, 7, "OK",
            "use the above replacements") {}

}  // namespace morvex
