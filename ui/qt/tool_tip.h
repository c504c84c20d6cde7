// Tool tips that show a text as it is.
#pragma once

#include <QString>

namespace morvex {

// What a widget's tool tip must be to read like `text`: the same, unless the toolkit would take it
// for markup.
QString PlainToolTip(const QString& text);

}  // namespace morvex
