// Converts the system's times to the program's.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <limits>

#include "core/host/file_service.h"
#include "host/windows/windows_api.h"

namespace morvex::windows {

// The system counts units of 100 nanoseconds since 1601. Only the years 1677 to 2262 can be
// represented; a file's time outside of them becomes the nearest time inside.
inline WallTime ToWallTime(const FILETIME& moment) {
  constexpr std::int64_t kFrom1601To1970 = 116'444'736'000'000'000;
  constexpr std::int64_t kNanosecondsPerStep = 100;
  constexpr std::int64_t kFarthest =
      std::numeric_limits<std::int64_t>::max() / kNanosecondsPerStep - 1;
  const auto steps =
      static_cast<std::int64_t>(std::uint64_t{moment.dwHighDateTime} << 32 | moment.dwLowDateTime);
  const std::int64_t since_1970 = std::clamp<std::int64_t>(
      std::max<std::int64_t>(steps, 0) - kFrom1601To1970, -kFarthest, kFarthest);
  return WallTime(std::chrono::nanoseconds(since_1970 * kNanosecondsPerStep));
}

}  // namespace morvex::windows
