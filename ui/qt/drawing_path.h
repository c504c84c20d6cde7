// The outline language of the program's drawings.
#pragma once

#include <QPainterPath>
#include <QString>
#include <optional>

namespace morvex {

// The outline that an SVG path's "d" describes. Understood are M, L, H, V, Z and A, absolute and
// relative, an arc being part of a circle: of equal radii and not turned. Nothing comes of a text
// that holds anything else.
std::optional<QPainterPath> ReadPath(const QString& text);

}  // namespace morvex
