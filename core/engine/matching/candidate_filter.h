// Finds the places where a key may stand: first a scan by three bytes, then a hash of up to eight.
// Where the scan lets too many places pass to be worth its time, it is left out for a while.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "core/engine/matching/key_index.h"
#include "core/engine/matching/scan_kernel.h"

namespace morvex {

class CandidateFilter {
 public:
  // Places are looked for in blocks of at most so many bytes.
  static constexpr std::size_t kBlock = 4096;

  static constexpr std::size_t kRoom = kBlock + ScanTables::kSpareRoom;

  // When the scan lets more than one place in so many pass, it is left out for some blocks.
  static constexpr std::size_t kDense = 4;

  // `index` must outlive the filter.
  CandidateFilter(const KeyIndex& index, const std::vector<CompiledRow>& rows, Kernel kernel,
                  std::size_t dense = kDense);

  // Writes the offsets of the places among the first `count` bytes, ascending, to `places`, which
  // has room for kRoom; gives how many they are. ScanTables::kReadAhead more bytes may be read.
  std::size_t Find(const std::uint8_t* bytes, std::size_t count, std::uint16_t* places);

 private:
  const BeginFilter& filter_;
  bool is_empty_;  // there are no keys
  ScanTables tables_;
  Scan scan_;
  std::size_t dense_;
  int blocks_without_scan_ = 0;  // that are still to come
};

}  // namespace morvex
