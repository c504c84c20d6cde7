// The forms of the scan, one per file. Only scan_kernel.cpp chooses among them.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "core/engine/matching/scan_kernel.h"

#if defined(__x86_64__) && defined(__GNUC__)
#define MORVEX_X86_VECTORS
#include <immintrin.h>
#endif

namespace morvex {

// Each returns null if this machine lacks the instructions of the form.
Scan PortableScan();
Scan Ssse3Scan();
Scan Avx2Scan();

#ifdef MORVEX_X86_VECTORS
inline __m128i Load16(const std::uint8_t* bytes) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
}
#endif

// Returns two bytes as an index into ScanTables::pairs.
inline std::size_t PairAt(const std::uint8_t* bytes) {
  std::uint16_t pair = 0;
  std::memcpy(&pair, bytes, sizeof pair);
  return pair;
}

// The forms that use vectors test as many offsets at once as a vector has bytes. They share the
// functions below, in which `hits` has a bit for each of these offsets, set if the offset passes.
// The lowest bit stands for the offset `at`.

// Writes the offset of every set bit of `hits` to `offsets` and returns the number of set bits.
// Always writes at least two elements, because that costs less than a branch, which could not be
// predicted.
inline std::size_t WriteOffsets(std::uint32_t hits, std::size_t at, std::uint16_t* offsets) {
  // The highest bit keeps the value from being zero, for which countr_zero would need a test.
  std::uint64_t bits = hits | std::uint64_t{1} << 63;
  const auto take = [at, &bits] {
    const auto bit = static_cast<std::size_t>(std::countr_zero(bits));
    bits &= (bits - 1) | std::uint64_t{1} << 63;
    return static_cast<std::uint16_t>(at + bit);
  };
  const auto count = static_cast<std::size_t>(std::popcount(hits));
  offsets[0] = take();
  offsets[1] = take();
  for (std::size_t i = 2; i < count; ++i) offsets[i] = take();
  return count;
}

// Clears in `hits` the bits of all offsets that are not below `count`, and returns the result.
// `width`: how many offsets are tested at once.
inline std::uint32_t InFrontOf(std::size_t count, std::size_t at, std::size_t width,
                               std::uint32_t hits) {
  return at + width <= count ? hits : hits & ((std::uint32_t{1} << (count - at)) - 1);
}

}  // namespace morvex
