// Finds the offsets where a prefix may stand: first a scan by three bytes, then a hash of up to
// eight or sixteen. Where the scan passes so many offsets that it does not pay, it is left out for
// a while.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "core/engine/matching/prefix_index.h"
#include "core/engine/matching/scan_kernel.h"

namespace morvex {

class CandidateFilter {
 public:
  // The most bytes that one Find can take.
  static constexpr std::size_t kBlock = 4096;

  // The number of offsets that Find needs room for.
  static constexpr std::size_t kRoom = kBlock + ScanTables::kSpareRoom;

  // When the scan passes more than one offset in so many, it is left out for some blocks.
  static constexpr std::size_t kDense = 4;

  // `index` must outlive the filter.
  CandidateFilter(const PrefixIndex& index, const std::vector<CompiledRow>& rows, Kernel kernel,
                  std::size_t dense = kDense);

  // Writes the offsets among the first `count` bytes, ascending, to `offsets`, which has room for
  // kRoom; returns how many. ScanTables::kReadAhead more bytes may be read.
  std::size_t Find(const std::uint8_t* bytes, std::size_t count, std::uint16_t* offsets);

 private:
  const HashFilter& filter_;
  bool is_empty_;  // there are no prefixes
  ScanTables tables_;
  Scan scan_;
  std::size_t dense_;
  int blocks_without_scan_ = 0;  // that are still to come
};

}  // namespace morvex
