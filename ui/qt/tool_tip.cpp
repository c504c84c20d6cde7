#include "ui/qt/tool_tip.h"

#include <QTextDocument>

namespace morvex {

QString PlainToolTip(const QString& text) {
  if (!Qt::mightBeRichText(text)) return text;
  return "<p style='white-space:pre'>" + text.toHtmlEscaped() + "</p>";
}

}  // namespace morvex
