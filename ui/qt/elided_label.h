// One line of text that is shortened where it does not fit. The tool tip has the whole of a
// shortened text.
#pragma once

#include <QFrame>
#include <QString>

namespace morvex {

class ElidedLabel : public QFrame {
  Q_OBJECT

 public:
  ElidedLabel(Qt::TextElideMode mode, QWidget* parent);

  void ShowText(const QString& text);
  // What the tool tip says first.
  void ShowHint(const QString& hint);
  const QString& text() const { return text_; }
  // The text as it is drawn at the present width.
  QString ShownText() const;

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 signals:
  void Clicked();

 protected:
  void changeEvent(QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void UpdateToolTip();

  Qt::TextElideMode mode_;
  QString text_;
  QString hint_;
};

}  // namespace morvex
