// Reads the outlines of the program's drawings.
#pragma once

#include <QPainterPath>
#include <QString>
#include <optional>

namespace morvex {

// Returns the outline that the attribute "d" of an SVG path describes. It reads M, L, H, V, Z and
// A, absolute and relative; an arc must have equal radii and no rotation. Returns nothing for a
// text with anything else.
std::optional<QPainterPath> ReadPath(const QString& text);

}  // namespace morvex
