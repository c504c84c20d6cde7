#pragma once

#include <cstdint>
#include <vector>

namespace morvex {

// The capture buffer, which outlives every attempt: the next row, file and list start with it. No
// span is kept, because every attempt ends with its span closed.
struct CaptureState {
  std::vector<std::uint8_t> CaptureBuffer = {0};
};

}  // namespace morvex
