#pragma once

#include <cstdint>
#include <vector>

namespace morvex {

// The capture buffer: the bytes that a wildcard took last, or only the first of them. It outlives
// every attempt: the next row, file and list start with the same buffer. The state of the span
// (match_attempt.h) is not kept, because every attempt ends with its span closed.
struct CaptureState {
  std::vector<std::uint8_t> CaptureBuffer = {0};
};

}  // namespace morvex
