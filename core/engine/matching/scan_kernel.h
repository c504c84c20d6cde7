// The scan tests up to three bytes at an offset and lets the offset pass if a literal prefix can
// begin with such bytes. In most runs the scan reads nearly every byte, so it has a fast form for
// each of several instruction sets. Every form may pass offsets where no prefix stands, but never
// leaves out an offset where one stands.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace morvex {

enum class Kernel { kPortable, kSsse3, kAvx2 };

bool IsSupported(Kernel kernel);
Kernel BestKernel();

// The bytes with which prefixes can begin. The prefixes are dealt out over eight buckets, and each
// bucket has one bit. For each of the first kDepth positions, `low` maps the low four bits of a
// byte to the buckets that have a prefix with such low bits at that position; `high` does the same
// for the high four bits. An offset passes if both tables select the same bucket at all positions.
struct ScanTables {
  static constexpr std::size_t kDepth = 3;
  static constexpr std::size_t kBuckets = 8;
  // At least kReadAhead bytes behind the last offset searched must be readable. The scan may
  // overwrite kSpareRoom elements behind the last offset that it writes.
  static constexpr std::size_t kReadAhead = 64;
  static constexpr std::size_t kSpareRoom = 2;

  // `prefixes` must be in ascending order. The portable form uses `pairs`, the others use `low` and
  // `high`.
  ScanTables(const std::vector<std::string_view>& prefixes, Kernel kernel);

  using Nibbles = std::array<std::array<std::uint8_t, 16>, kDepth>;
  alignas(16) Nibbles low{};
  alignas(16) Nibbles high{};
  std::vector<std::uint8_t> pairs;  // by pair of bytes: 1 if a prefix can begin with the pair
};

// Tests the first `count` (65536 at most) offsets and writes those that pass to `offsets`, in
// ascending order. Returns their number. `offsets` must have room for `count` +
// ScanTables::kSpareRoom elements.
using Scan = std::size_t (*)(const ScanTables& tables, const std::uint8_t* bytes, std::size_t count,
                             std::uint16_t* offsets);
// Returns null if the machine does not support the kernel.
Scan ScanFor(Kernel kernel);

}  // namespace morvex
