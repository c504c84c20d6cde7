// The style of all windows: the desktop's own style with more room around texts and controls.
//
// Where the desktop has no style of its own, the toolkit uses its plain style "fusion". Boxes and
// frames of that style have no visible outline on a dark background, so this class draws one.
#pragma once

#include <QProxyStyle>

namespace morvex {

class HouseStyle : public QProxyStyle {
  Q_OBJECT

 public:
  // Based on the style that the toolkit would choose.
  HouseStyle() = default;
  // Based on the named style, such as "fusion".
  explicit HouseStyle(const QString& name) : QProxyStyle(name) {}

  using QProxyStyle::polish;
  // Gives disabled text a readable contrast; some desktops leave it hardly visible.
  void polish(QPalette& palette) override;
  // Draws the background of a button that has its own colour. The style of Windows ignores that
  // colour, and the caption's colour would then not be readable.
  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override;
  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  QRect subElementRect(SubElement element, const QStyleOption* option,
                       const QWidget* widget) const override;
  QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                         const QWidget* widget) const override;

 private:
  void DrawOutline(const QStyleOption& option, QPainter& painter, qreal corner) const;
};

}  // namespace morvex
