#include "core/forms/options_form.h"

namespace morvex {

OptionsForm::OptionsForm()
    : Form("Opties", 5055, 4170),
      lblJoker(changes, {240, 240, 1695, 255}, "wildcard"),
      lblJokerWhere(changes, {240, 480, 1695, 255}, "in replacement list"),
      lblSeparator(changes, {240, 960, 1695, 255}, "separator"),
      lblSeparatorWhere(changes, {240, 1200, 1695, 255}, "in replacement list"),
      txtJoker(changes, {2160, 300, 735, 375}, 0),
      txtSeparator(changes, {2160, 1020, 735, 375}, 1),
      cmdToepassen(changes, {3600, 3240, 1215, 375}, 7, "Toepassen"),
      txtExtensie(changes, {2160, 1740, 1455, 375}, 2),
      lstExtensie(changes, {2160, 2115, 1815, 1935}, 4),
      cmdListExtensie_Down(changes, {3615, 1740, 360, 375}, 3, "v"),
      lblExtensies(changes, {240, 1800, 1815, 255}, "extensions :"),
      chkLoggen(changes, {240, 2520, 1695, 375}, 5, "logging"),
      imOptionsToFolder(changes, {240, 3120, 480, 480}, 6) {}

}  // namespace morvex
