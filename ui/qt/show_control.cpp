#include "ui/qt/show_control.h"

#include <QFontDatabase>
#include <QWidget>

namespace morvex {
namespace {

constexpr QRgb kRedOnLight = 0xFFC01C28;
constexpr QRgb kRedOnDark = 0xFFFF7B72;
constexpr int kMiddleLightness = 128;

}  // namespace

void ShowPresence(QWidget& widget, const Control& control) {
  if (widget.isHidden() == control.visible) widget.setVisible(control.visible);
  const bool is_enabled = !widget.testAttribute(Qt::WA_ForceDisabled);
  if (is_enabled != control.enabled) widget.setEnabled(control.enabled);
}

QColor TextColour(Colour colour, const QPalette& palette) {
  switch (colour) {
    case Colour::kBlack:
      break;
    case Colour::kRed:
      return QColor(palette.color(QPalette::Base).lightness() < kMiddleLightness ? kRedOnDark
                                                                                 : kRedOnLight);
    case Colour::kSystemHighlight:
      return palette.color(QPalette::Highlight);
  }
  return palette.color(QPalette::Text);
}

void ShowTextColour(QWidget& widget, const Control& control, QPalette::ColorRole role) {
  QPalette own;
  if (control.colour.get() != Colour::kBlack) {
    const QColor colour = TextColour(control.colour, widget.palette());
    own.setColor(QPalette::Active, role, colour);
    own.setColor(QPalette::Inactive, role, colour);
  }
  const bool has_own = widget.testAttribute(Qt::WA_SetPalette);
  if (own.resolveMask() == 0 && !has_own) return;
  if (has_own && widget.palette().color(QPalette::Active, role) == own.color(role) &&
      own.resolveMask() != 0) {
    return;
  }
  widget.setPalette(own);
}

QString ShownLines(const CodePage& page, const std::string& caption) {
  return page.Shown(caption).replace("\r\n", "\n");
}

QString WithoutMnemonics(const QString& text) { return QString(text).replace("&", "&&"); }

QString WithMnemonic(const QString& text, QChar key) {
  const qsizetype at = text.indexOf(key, 0, Qt::CaseInsensitive);
  if (at < 0) return WithoutMnemonics(text);
  return WithoutMnemonics(text.left(at)) + '&' + WithoutMnemonics(text.mid(at));
}

QFont NamedFont(const std::string& name, const QFont& fallback) {
  const QString family = QString::fromStdString(name);
  if (family.isEmpty() || !QFontDatabase::hasFamily(family)) return fallback;
  QFont font = fallback;
  font.setFamily(family);
  return font;
}

}  // namespace morvex
