// The form of the options window: wildcard, separator, logging, and the extensions whose files are
// processed.
#pragma once

#include "core/forms/control.h"

namespace morvex {

struct OptionsForm : Form {
  OptionsForm();

  Label lblJoker;           // "wildcard", above lblJokerWhere
  Label lblJokerWhere;      // "in replacement list"
  Label lblSeparator;       // "separator", above lblSeparatorWhere
  Label lblSeparatorWhere;  // "in replacement list"
  TextBox txtJoker;
  TextBox txtSeparator;
  Button cmdToepassen;
  TextBox txtExtensie;
  ListBox lstExtensie;  // the extension filter itself
  Button cmdListExtensie_Down;
  Label lblExtensies;
  CheckBox chkLoggen;
  Picture imOptionsToFolder;
};

}  // namespace morvex
