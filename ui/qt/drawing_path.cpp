#include "ui/qt/drawing_path.h"

#include <QLineF>
#include <QPointF>
#include <QRectF>
#include <algorithm>
#include <cmath>

namespace morvex {
namespace {

// Adds an arc of a circle from the current position to `to`. A radius that is too small is enlarged
// to fit. `large`: whether the arc is the longer one of the two possible arcs. `clockwise`: its
// direction on the screen.
void AddArc(QPainterPath& path, QPointF to, qreal radius, bool large, bool clockwise) {
  const QPointF from = path.currentPosition();
  const QPointF half = (to - from) / 2;
  const qreal half_length = std::hypot(half.x(), half.y());
  if (half_length == 0) return;
  const qreal r = std::max(std::abs(radius), half_length);
  // The centre is beside the middle of the chord: to the right of its direction for the short arc
  // clockwise and the long arc counter-clockwise, else to the left.
  const qreal aside = std::sqrt(r * r - half_length * half_length) / half_length;
  const QPointF right(-half.y() * aside, half.x() * aside);
  const QPointF centre = (from + to) / 2 + (large == clockwise ? -right : right);
  // The toolkit's angles grow counter-clockwise.
  const qreal start = QLineF(centre, from).angle();
  qreal sweep = QLineF(centre, to).angle() - start;
  if (clockwise && sweep > 0) sweep -= 360;
  if (!clockwise && sweep < 0) sweep += 360;
  path.arcTo(QRectF(centre.x() - r, centre.y() - r, 2 * r, 2 * r), start, sweep);
}

class PathReader {
 public:
  explicit PathReader(const QString& text) : text_(text) {}

  std::optional<QPainterPath> Read() {
    QChar command;
    for (SkipBlanks(); place_ < text_.size(); SkipBlanks()) {
      if (text_[place_].isLetter()) {
        command = text_[place_++];
      } else if (command.toUpper() == 'Z') {
        return std::nullopt;  // Z takes no numbers.
      }
      if (!Step(command) || failed_) return std::nullopt;
      // In SVG, the points that follow the first point of a move are the ends of lines.
      if (command == 'M') command = 'L';
      if (command == 'm') command = 'l';
    }
    return path_;
  }

 private:
  void SkipBlanks() {
    while (place_ < text_.size() && (text_[place_].isSpace() || text_[place_] == ',')) ++place_;
  }

  qreal Number() {
    SkipBlanks();
    const qsizetype first = place_;
    bool point = false;
    for (; place_ < text_.size(); ++place_) {
      const QChar letter = text_[place_];
      const bool sign = place_ == first && (letter == '-' || letter == '+');
      const bool first_point = letter == '.' && !point;
      if (!letter.isDigit() && !sign && !first_point) break;
      point = point || first_point;
    }
    bool understood = false;
    const qreal number = text_.mid(first, place_ - first).toDouble(&understood);
    failed_ = failed_ || !understood;
    return number;
  }

  QPointF Point(QPointF origin) {
    const qreal x = Number();
    return origin + QPointF(x, Number());
  }

  bool Step(QChar command) {
    const QPointF here = path_.currentPosition();
    const QPointF origin = command.isLower() ? here : QPointF();
    switch (command.toUpper().unicode()) {
      case 'M':
        path_.moveTo(Point(origin));
        return true;
      case 'L':
        path_.lineTo(Point(origin));
        return true;
      case 'H':
        path_.lineTo(origin.x() + Number(), here.y());
        return true;
      case 'V':
        path_.lineTo(here.x(), origin.y() + Number());
        return true;
      case 'Z':
        path_.closeSubpath();
        return true;
      case 'A':
        return Arc(origin);
      default:
        return false;
    }
  }

  bool Arc(QPointF origin) {
    const qreal radius = Number();
    const qreal other_radius = Number();
    const qreal turn = Number();
    const qreal large = Number();
    const qreal clockwise = Number();
    const QPointF to = Point(origin);
    if (failed_ || radius != other_radius || turn != 0) return false;
    AddArc(path_, to, radius, large != 0, clockwise != 0);
    return true;
  }

  const QString text_;
  qsizetype place_ = 0;
  bool failed_ = false;
  QPainterPath path_;
};

}  // namespace

std::optional<QPainterPath> ReadPath(const QString& text) { return PathReader(text).Read(); }

}  // namespace morvex
