// The scan for offsets where a prefix can begin, by its first three bytes at most. It is the
// innermost loop of a run and has several forms for several instruction sets. Every form may pass
// offsets where no prefix stands, but never leaves out an offset where one stands.
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

// Which bytes a prefix can begin with. The prefixes are dealt out over eight buckets, one bit each.
// At each of the kDepth positions, the low and the high four bits of a byte select the buckets that
// have a prefix with such a byte at that position. An offset passes if some bucket is selected at
// all positions, both times.
struct ScanTables {
  static constexpr std::size_t kDepth = 3;
  static constexpr std::size_t kBuckets = 8;
  // The scan may read kReadAhead bytes behind the last offset that it searches, and overwrite
  // kSpareRoom entries behind the last one that it writes.
  static constexpr std::size_t kReadAhead = 64;
  static constexpr std::size_t kSpareRoom = 2;

  // `prefixes` must be in ascending order. The portable form uses `pairs`, the others use `low` and
  // `high`.
  ScanTables(const std::vector<std::string_view>& prefixes, Kernel kernel);

  using Nibbles = std::array<std::array<std::uint8_t, 16>, kDepth>;
  alignas(16) Nibbles low{};
  alignas(16) Nibbles high{};
  std::vector<std::uint8_t> pairs;  // 1 where some prefix begins with these two bytes
};

// Tests the first `count` (65536 at most) offsets and writes those that pass to `offsets`, in
// ascending order. Returns their number. `offsets` has room for `count` + kSpareRoom elements.
using Scan = std::size_t (*)(const ScanTables& tables, const std::uint8_t* bytes, std::size_t count,
                             std::uint16_t* offsets);
// Returns null if the machine does not support the kernel.
Scan ScanFor(Kernel kernel);

}  // namespace morvex
