// The scan for offsets where a prefix can begin, by the first three bytes alone: the innermost loop
// of a run, in several forms for several instruction sets. Every form may pass offsets where no
// prefix stands; none leaves out an offset where one does.
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
// By position, the low and the high four bits of a byte each select the buckets that have a prefix
// with such a byte there; an offset passes when a bucket is left after all positions.
struct ScanTables {
  static constexpr std::size_t kDepth = 3;
  static constexpr std::size_t kBuckets = 8;
  // The scan may read so many bytes behind the last offset that it is asked about, and overwrite so
  // many entries behind the last offset that it returns.
  static constexpr std::size_t kReadAhead = 64;
  static constexpr std::size_t kSpareRoom = 2;

  // For the prefixes in ascending order. The portable form uses `pairs`, the others `low` and
  // `high`.
  ScanTables(const std::vector<std::string_view>& prefixes, Kernel kernel);

  using Nibbles = std::array<std::array<std::uint8_t, 16>, kDepth>;
  alignas(16) Nibbles low{};
  alignas(16) Nibbles high{};
  std::vector<std::uint8_t> pairs;  // 1 where some prefix begins with these two bytes
};

// Writes the offsets that pass among the first `count` bytes, ascending, to `offsets`, which has
// room for `count` and kSpareRoom more; returns how many. `count` is at most 65536.
using Scan = std::size_t (*)(const ScanTables& tables, const std::uint8_t* bytes, std::size_t count,
                             std::uint16_t* offsets);
// Null when the machine does not support the kernel.
Scan ScanFor(Kernel kernel);

}  // namespace morvex
