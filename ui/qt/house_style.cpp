#include "ui/qt/house_style.h"

#include <QPainter>
#include <QStyleOption>
#include <QWidget>
#include <array>

#include "ui/qt/show_control.h"

namespace morvex {
namespace {

// Pixels above and below a text, including the outline.
constexpr int kRoomInBox = 6;
constexpr int kRoomInButton = 8;
constexpr int kRoomInRow = 4;

constexpr int kRoomBesideText = 3;  // pixels, in addition to the base style's
constexpr int kLeastButton = 88;    // pixels of width

constexpr qreal kCorner = 3;

// Percent for QColor::darker; above 100 is darker.
constexpr int kHotDarker = 110;
constexpr int kDownDarker = 125;

constexpr double kLeastPaleContrast = 3.5;  // of disabled text; see Readable

struct TextOnGround {
  QPalette::ColorRole text;
  QPalette::ColorRole ground;
};
constexpr std::array<TextOnGround, 3> kTexts = {{{QPalette::WindowText, QPalette::Window},
                                                 {QPalette::Text, QPalette::Base},
                                                 {QPalette::ButtonText, QPalette::Button}}};

}  // namespace

void HouseStyle::polish(QPalette& palette) {
  QProxyStyle::polish(palette);
  for (const auto& [text, ground] : kTexts) {
    const QColor pale =
        Readable(palette.color(QPalette::Disabled, text), palette.color(QPalette::Active, text),
                 palette.color(QPalette::Disabled, ground), kLeastPaleContrast);
    palette.setColor(QPalette::Disabled, text, pale);
  }
}

void HouseStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                               QPainter* painter, const QWidget* widget) const {
  const bool is_plain = baseStyle()->name() == "fusion";
  if (is_plain && element == PE_FrameLineEdit) return DrawOutline(*option, *painter, kCorner);
  if (is_plain && element == PE_Frame) return DrawOutline(*option, *painter, 0);
  QProxyStyle::drawPrimitive(element, option, painter, widget);
  if (is_plain && element == PE_IndicatorCheckBox) DrawOutline(*option, *painter, kCorner);
}

void HouseStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                             const QWidget* widget) const {
  const bool is_coloured = element == CE_PushButtonBevel && widget != nullptr &&
                           widget->palette().isBrushSet(QPalette::Active, QPalette::Button);
  if (!is_coloured || baseStyle()->name() == "fusion") {
    return QProxyStyle::drawControl(element, option, painter, widget);
  }
  const bool is_down = option->state.testFlag(State_Sunken);
  const bool is_hot = option->state.testFlag(State_MouseOver);
  const QColor colour = option->palette.color(QPalette::Button);
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  painter->setPen(Qt::NoPen);
  painter->setBrush(is_down || is_hot ? colour.darker(is_down ? kDownDarker : kHotDarker) : colour);
  painter->drawRoundedRect(QRectF(option->rect).adjusted(1, 1, -1, -1), kCorner, kCorner);
  painter->restore();
}

void HouseStyle::DrawOutline(const QStyleOption& option, QPainter& painter, qreal corner) const {
  const bool has_focus = option.state.testFlag(State_HasFocus);
  const bool is_enabled = option.state.testFlag(State_Enabled);
  QColor colour = has_focus ? option.palette.color(QPalette::Highlight) : Outline(option.palette);
  if (!is_enabled) colour.setAlphaF(colour.alphaF() / 2);
  const qreal line = has_focus ? 2 : 1;
  const qreal half = line / 2;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(colour, line));
  const QRectF edge = QRectF(option.rect).adjusted(half, half, -half, -half);
  painter.drawRoundedRect(edge, corner, corner);
  painter.restore();
}

QRect HouseStyle::subElementRect(SubElement element, const QStyleOption* option,
                                 const QWidget* widget) const {
  const QRect place = QProxyStyle::subElementRect(element, option, widget);
  const auto* const frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
  const bool is_box = element == SE_LineEditContents && frame != nullptr && frame->lineWidth > 0;
  return is_box ? place.adjusted(kRoomBesideText, 0, -kRoomBesideText, 0) : place;
}

QSize HouseStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                   const QWidget* widget) const {
  const QSize made = QProxyStyle::sizeFromContents(type, option, size, widget);
  const int letters = option->fontMetrics.height();
  switch (type) {
    case CT_LineEdit:
      return made.expandedTo({0, letters + 2 * kRoomInBox});
    case CT_PushButton:
      return made.expandedTo({kLeastButton, letters + 2 * kRoomInButton});
    case CT_ItemViewItem:
      return made.expandedTo({0, letters + 2 * kRoomInRow});
    default:
      return made;
  }
}

}  // namespace morvex
