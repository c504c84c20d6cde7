#include "ui/qt/show_control.h"

#include <QFontDatabase>
#include <QWidget>
#include <algorithm>
#include <cmath>

namespace morvex {
namespace {

constexpr QRgb kRedOnLight = 0xFFC01C28;
constexpr QRgb kRedOnDark = 0xFFFF7B72;
constexpr int kMiddleLightness = 128;
constexpr double kLeastContrast = 4.5;
constexpr int kBlendSteps = 10;
constexpr float kOutlineShare = 0.42F;  // opacity of the text's colour over the background

// Returns the relative luminance, 0 to 1, from which the contrast ratio is computed.
double Luminance(const QColor& colour) {
  const auto linear = [](double part) {
    return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
         0.0722 * linear(colour.blueF());
}

double Contrast(const QColor& one, const QColor& other) {
  const auto [least, most] = std::minmax({Luminance(one), Luminance(other)});
  return (most + 0.05) / (least + 0.05);
}

QColor Blend(const QColor& one, const QColor& other, float part) {
  const auto mix = [part](float a, float b) { return a + (b - a) * part; };
  return QColor::fromRgbF(mix(one.redF(), other.redF()), mix(one.greenF(), other.greenF()),
                          mix(one.blueF(), other.blueF()));
}

}  // namespace

QColor Readable(const QColor& colour, const QColor& ink, const QColor& ground, double contrast) {
  for (int step = 0; step <= kBlendSteps; ++step) {
    const float part = static_cast<float>(step) / static_cast<float>(kBlendSteps);
    const QColor blended = Blend(colour, ink, part);
    if (Contrast(blended, ground) >= contrast) return blended;
  }
  return ink;
}

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
      // Highlight is a background colour, so its contrast as text has to be ensured.
      return Readable(palette.color(QPalette::Highlight), palette.color(QPalette::WindowText),
                      palette.color(QPalette::Window), kLeastContrast);
  }
  return palette.color(QPalette::Text);
}

QColor Outline(const QPalette& palette) {
  return Blend(palette.color(QPalette::Base), palette.color(QPalette::Text), kOutlineShare);
}

void ShowTextColour(QWidget& widget, const Control& control, QPalette::ColorRole role) {
  QPalette own;
  if (control.colour.get() != Colour::kBlack) {
    const QWidget* const around = widget.parentWidget();
    const QColor colour =
        TextColour(control.colour, around == nullptr ? QPalette() : around->palette());
    own.setColor(QPalette::Active, role, colour);
    own.setColor(QPalette::Inactive, role, colour);
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
