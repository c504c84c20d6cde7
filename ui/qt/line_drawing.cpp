#include "ui/qt/line_drawing.h"

#include <QFile>
#include <QPainter>
#include <QPen>
#include <QStringList>
#include <QXmlStreamReader>
#include <algorithm>
#include <optional>
#include <utility>

#include "ui/qt/drawing_path.h"

// The toolkit's macro works outside of namespaces only.
static void InitResource() { Q_INIT_RESOURCE(pictures); }

namespace morvex {
namespace {

// Reads one drawing. An element inherits the style of the group around it. An element's attributes
// are style or geometry; any other attribute makes reading fail.
class DrawingReader {
 public:
  explicit DrawingReader(const QByteArray& svg) : xml_(svg) {}

  bool Read() {
    if (!xml_.readNextStartElement() || xml_.name() != QLatin1String("svg")) return false;
    const QStringList view = xml_.attributes().value("viewBox").toString().split(' ');
    if (view.size() != 4) return false;
    view_ = QRectF(Number(view[0]), Number(view[1]), Number(view[2]), Number(view[3]));
    Content({});
    return understood_ && !xml_.hasError() && view_.isValid();
  }

  const QRectF& view() const { return view_; }
  std::vector<DrawingShape> TakeShapes() { return std::move(shapes_); }

 private:
  void Content(const DrawingStyle& around) {
    while (understood_ && xml_.readNextStartElement()) {
      geometry_ = QXmlStreamAttributes();
      DrawingStyle style = around;
      for (const QXmlStreamAttribute& attribute : xml_.attributes()) {
        if (!SetStyle(style, attribute.name().toString(), attribute.value().toString())) {
          geometry_.append(attribute);
        }
      }
      const QString name = xml_.name().toString();
      if (name == "g") {
        NoOtherThan({});
        Content(style);
        continue;
      }
      shapes_.push_back({Outline(name), style});
      understood_ = understood_ && !xml_.readNextStartElement();
    }
  }

  QPainterPath Outline(const QString& name) {
    QPainterPath path;
    if (name == "path") {
      NoOtherThan({"d"});
      const std::optional<QPainterPath> read = ReadPath(geometry_.value("d").toString());
      understood_ = understood_ && read;
      if (read) path = *read;
    } else if (name == "rect") {
      NoOtherThan({"x", "y", "width", "height", "rx"});
      const QRectF box(Length("x"), Length("y"), Length("width"), Length("height"));
      const qreal round = geometry_.hasAttribute("rx") ? Length("rx") : 0;
      path.addRoundedRect(box, round, round);
    } else if (name == "circle") {
      NoOtherThan({"cx", "cy", "r"});
      const qreal radius = Length("r");
      path.addEllipse(QPointF(Length("cx"), Length("cy")), radius, radius);
    } else {
      understood_ = false;
    }
    return path;
  }

  void NoOtherThan(const QStringList& names) {
    for (const QXmlStreamAttribute& attribute : geometry_) {
      understood_ = understood_ && names.contains(attribute.name().toString());
    }
  }

  qreal Length(const char* name) { return Number(geometry_.value(name).toString()); }

  qreal Number(const QString& text) {
    bool is_number = false;
    const qreal number = text.toDouble(&is_number);
    understood_ = understood_ && is_number;
    return number;
  }

  // Returns false when the attribute `name` is no part of a style.
  bool SetStyle(DrawingStyle& style, const QString& name, const QString& value) {
    if (name == "fill") {
      SetInk(style.fill, value);
    } else if (name == "fill-opacity") {
      style.fill.opacity = Number(value);
    } else if (name == "stroke") {
      SetInk(style.stroke, value);
    } else if (name == "stroke-opacity") {
      style.stroke.opacity = Number(value);
    } else if (name == "stroke-width") {
      style.stroke_width = Number(value);
    } else if (name == "stroke-linecap") {
      understood_ = understood_ && value == "round";
      style.cap = Qt::RoundCap;
    } else if (name == "stroke-linejoin") {
      understood_ = understood_ && value == "round";
      style.join = Qt::RoundJoin;
    } else {
      return false;
    }
    return true;
  }

  void SetInk(DrawingInk& ink, const QString& value) {
    using Kind = DrawingInk::Kind;
    ink.kind = value == "none"           ? Kind::kNone
               : value == "currentColor" ? Kind::kSurroundings
                                         : Kind::kColour;
    ink.colour = QColor();
    if (ink.kind != Kind::kColour) return;
    ink.colour.setNamedColor(value);
    understood_ = understood_ && ink.colour.isValid();
  }

  QXmlStreamReader xml_;
  QXmlStreamAttributes geometry_;
  QRectF view_;
  std::vector<DrawingShape> shapes_;
  bool understood_ = true;
};

QColor InkColour(const DrawingInk& ink, const QColor& surroundings) {
  QColor colour = ink.kind == DrawingInk::Kind::kColour ? ink.colour : surroundings;
  colour.setAlphaF(colour.alphaF() * static_cast<float>(ink.opacity));
  return colour;
}

QByteArray Contents(const QString& resource) {
  LoadPictures();
  QFile file(resource);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

}  // namespace

void LoadPictures() { InitResource(); }

LineDrawing::LineDrawing(const QString& resource) : LineDrawing(FromText(Contents(resource))) {}

LineDrawing LineDrawing::FromText(const QByteArray& svg) {
  LineDrawing drawing;
  DrawingReader reader(svg);
  if (reader.Read()) {
    drawing.view_ = reader.view();
    drawing.shapes_ = reader.TakeShapes();
  }
  return drawing;
}

void LineDrawing::Paint(QPainter& painter, const QRectF& box, const QColor& ink) const {
  if (IsEmpty()) return;
  const qreal scale = std::min(box.width() / view_.width(), box.height() / view_.height());
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(box.center());
  painter.scale(scale, scale);
  painter.translate(-view_.center());
  for (const auto& [path, style] : shapes_) {
    if (style.fill.kind != DrawingInk::Kind::kNone) {
      painter.fillPath(path, InkColour(style.fill, ink));
    }
    if (style.stroke.kind != DrawingInk::Kind::kNone) {
      painter.strokePath(path, QPen(InkColour(style.stroke, ink), style.stroke_width, Qt::SolidLine,
                                    style.cap, style.join));
    }
  }
  painter.restore();
}

}  // namespace morvex
