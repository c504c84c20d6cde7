#pragma once

#include <cstdint>
#include <vector>

namespace morvex {

// What a match attempt leaves for the next one, across rows, files and lists. Every attempt ends
// with its span closed, so nothing of a span is kept.
struct CaptureState {
  std::vector<std::uint8_t> CaptureBuffer = {0};
};

}  // namespace morvex
