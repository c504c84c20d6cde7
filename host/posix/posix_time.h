// Converts the system's times to the program's.
#pragma once

#include <sys/stat.h>
#include <time.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <limits>

#include "core/host/file_service.h"

namespace morvex::posix {

// Keeps all nanoseconds. Only the years 1677 to 2262 can be represented; a file's time outside of
// them becomes the nearest time inside.
inline WallTime ToWallTime(const timespec& moment) {
  constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;
  constexpr std::int64_t kFarthest =
      std::numeric_limits<std::int64_t>::max() / kNanosecondsPerSecond - 1;
  const std::int64_t seconds =
      std::clamp<std::int64_t>(moment.tv_sec, -kFarthest, kFarthest) * kNanosecondsPerSecond;
  return WallTime(std::chrono::nanoseconds(seconds + moment.tv_nsec));
}

}  // namespace morvex::posix
