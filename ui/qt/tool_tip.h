// Tool tips as plain text.
#pragma once

#include <QString>

namespace morvex {

// Returns a tool tip that is shown as `text`: escaped when the toolkit would take `text` for
// markup, else unchanged.
QString PlainToolTip(const QString& text);

}  // namespace morvex
