// Where a path leads and what it lies in, whatever links and other spellings stand in it.
#pragma once

#include <optional>
#include <string>

#include "core/program/program.h"

namespace morvex {

// The path without links, "." and "..". Names at its end that lead nowhere yet stay as they are.
std::string RealPlace(const Program& program, const std::string& path);

// The names that lead from the folder, which may still have to be made, down to the place: empty
// for the folder itself, nothing for a place that does not lie in it. An empty path names nothing.
std::optional<std::string> WayFrom(const Program& program, const std::string& folder,
                                   const std::string& place);

// They lead, or will lead, to the same file.
bool IsSamePlace(const Program& program, const std::string& one, const std::string& other);

}  // namespace morvex
