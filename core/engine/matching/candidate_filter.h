// Finds the offsets where a literal prefix may stand. A scan tests up to three bytes at every
// offset; a hash filter then tests up to 16 bytes at each offset that the scan passes. If the scan
// passes so many offsets of a block that it is not worth its time, the next blocks go without the
// scan.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "core/engine/matching/prefix_index.h"
#include "core/engine/matching/scan_kernel.h"

namespace morvex {

class CandidateFilter {
 public:
  // The most offsets that one Find can test.
  static constexpr std::size_t kBlock = 4096;

  // The number of offsets that Find needs room for.
  static constexpr std::size_t kRoom = kBlock + ScanTables::kSpareRoom;

  // When the scan passes more than one of every kDense offsets of a block, the next blocks go
  // without the scan.
  static constexpr std::size_t kDense = 4;

  // `index` must outlive the filter.
  CandidateFilter(const PrefixIndex& index, const std::vector<CompiledRow>& rows, Kernel kernel,
                  std::size_t dense = kDense);

  // Tests the first `count` (kBlock at most) offsets of `bytes`. Writes the offsets where a prefix
  // may stand to `offsets`, in ascending order, and returns their number. `offsets` must have room
  // for kRoom elements. ScanTables::kReadAhead bytes behind the last offset must be readable.
  std::size_t Find(const std::uint8_t* bytes, std::size_t count, std::uint16_t* offsets);

 private:
  const HashFilter& filter_;
  bool is_empty_;  // there are no prefixes
  ScanTables tables_;
  Scan scan_;
  std::size_t dense_;
  int blocks_without_scan_ = 0;  // the number of coming blocks that skip the scan
};

}  // namespace morvex
