// Compares paths by the places that they lead to. Links, "." and ".." in the paths are resolved.
#pragma once

#include <optional>
#include <string>

#include "core/program/program.h"

namespace morvex {

// Returns the path without links, "." and "..". Names at its end that do not exist stay as they
// are.
std::string RealPlace(const Program& program, const std::string& path);

// Returns the path of `place` relative to `folder`: empty for the folder itself; nothing for a
// place outside the folder, or when either path is empty. Neither needs to exist.
std::optional<std::string> WayFrom(const Program& program, const std::string& folder,
                                   const std::string& place);

// Whether both paths lead to the same file, or would if that file existed. An empty path leads
// nowhere.
bool IsSamePlace(const Program& program, const std::string& one, const std::string& other);

}  // namespace morvex
