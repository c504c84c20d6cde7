// Finds the offsets where a prefix may stand: first a scan by three bytes, then a hash of up to 8
// or 16 bytes. When the scan passes too many offsets to be worth its time, the next blocks skip it.
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

  // When the scan passes more than one in kDense offsets, the next blocks skip it.
  static constexpr std::size_t kDense = 4;

  // `index` must outlive the filter.
  CandidateFilter(const PrefixIndex& index, const std::vector<CompiledRow>& rows, Kernel kernel,
                  std::size_t dense = kDense);

  // Tests the first `count` offsets and writes those where a prefix may stand to `offsets`, in
  // ascending order. Returns their number. `offsets` has room for kRoom elements.
  // ScanTables::kReadAhead bytes behind the last offset must be readable.
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
