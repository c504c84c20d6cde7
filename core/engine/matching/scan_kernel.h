// The scan for places where a key can begin, by the first three bytes alone: the innermost loop of
// a run, in several forms for several instruction sets. All forms may give places where no key
// begins; none leaves out a place where one does.
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

// Which bytes a key can begin with. Keys are dealt out over eight buckets, one bit each: a byte's
// two nibbles give the buckets that hold a key with such a byte there.
struct ScanTables {
  static constexpr std::size_t kDepth = 3;
  static constexpr std::size_t kBuckets = 8;
  // The scan may read so many bytes behind the last place that it is asked about, and overwrite so
  // many entries behind the last place that it gives.
  static constexpr std::size_t kReadAhead = 64;
  static constexpr std::size_t kSpareRoom = 2;

  // For the keys in ascending order. The portable form needs `pairs`, the others need the nibbles.
  ScanTables(const std::vector<std::string_view>& keys, Kernel kernel);

  using Nibbles = std::array<std::array<std::uint8_t, 16>, kDepth>;
  alignas(16) Nibbles low{};
  alignas(16) Nibbles high{};
  std::vector<std::uint8_t> pairs;  // 1 where some key begins with these two bytes
};

// Writes the offsets of the places among the first `count` bytes, ascending, to `places`, which has
// room for `count` and kSpareRoom more; gives how many they are. `count` is at most 65536.
using Scan = std::size_t (*)(const ScanTables& tables, const std::uint8_t* bytes, std::size_t count,
                             std::uint16_t* places);
Scan ScanFor(Kernel kernel);

}  // namespace morvex
