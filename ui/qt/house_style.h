// The style of all windows: the desktop's own, with some room around what is read and hit.
//
// Where the desktop brings none, the toolkit's plain style draws; on a dark ground its boxes have
// no outline that could be seen, so they get one.
#pragma once

#include <QProxyStyle>

namespace morvex {

class HouseStyle : public QProxyStyle {
  Q_OBJECT

 public:
  // Around the style that the toolkit would choose.
  HouseStyle() = default;
  // Around the style of that name, such as "fusion".
  explicit HouseStyle(const QString& name) : QProxyStyle(name) {}

  using QProxyStyle::polish;
  // Makes what is disabled pale but readable; some desktops leave it nearly as dark as its ground.
  void polish(QPalette& palette) override;
  // A button with a colour of its own has it in every style; that of Windows would leave its ground
  // light under a caption that is meant for a dark one.
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
