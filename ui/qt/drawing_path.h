// Reads the outlines of the program's drawings.
#pragma once

#include <QPainterPath>
#include <QString>
#include <optional>

namespace morvex {

// Returns the outline that the attribute "d" of an SVG path describes. The commands M, L, H, V, Z
// and A are known, absolute and relative; an arc must have equal radii and no rotation. Returns
// nothing for a text with any other command or arc.
std::optional<QPainterPath> ReadPath(const QString& text);

}  // namespace morvex
