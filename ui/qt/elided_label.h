// A label of one line that shortens a text that does not fit. The tool tip then shows the whole
// text.
#pragma once

#include <QFrame>
#include <QString>

namespace morvex {

class ElidedLabel : public QFrame {
  Q_OBJECT

 public:
  ElidedLabel(Qt::TextElideMode mode, QWidget* parent);

  void ShowText(const QString& text);
  // Sets the first line of the tool tip.
  void ShowHint(const QString& hint);
  const QString& text() const { return text_; }
  // Returns the text as it is drawn at the current width.
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
