#include "core/engine/matching/scan_kernel.h"

#include "core/engine/matching/scan_forms.h"

namespace morvex {

Scan ScanFor(Kernel kernel) {
  switch (kernel) {
    case Kernel::kSsse3:
      return Ssse3Scan();
    case Kernel::kAvx2:
      return Avx2Scan();
    case Kernel::kPortable:
      break;
  }
  return PortableScan();
}

bool IsSupported(Kernel kernel) { return ScanFor(kernel) != nullptr; }

Kernel BestKernel() {
  for (const Kernel kernel : {Kernel::kAvx2, Kernel::kSsse3}) {
    if (IsSupported(kernel)) return kernel;
  }
  return Kernel::kPortable;
}

namespace {

// Deals the prefixes out over the buckets so that those in one bucket begin alike, because the
// fewer different bytes a bucket has, the fewer offsets pass it. A prefix that is shorter than
// kDepth accepts every byte behind its end, so short prefixes have buckets of their own.
class Dealer {
 public:
  explicit Dealer(const std::vector<std::string_view>& prefixes) {
    std::string_view last;
    for (const std::string_view prefix : prefixes) {
      const std::string_view begin = prefix.substr(0, ScanTables::kDepth);
      if (begin.size() < ScanTables::kDepth) {
        has_short_[begin.size()] = true;
      } else if (begin != last) {
        ++beginnings_;
        last = begin;
      }
    }
    first_long_ = (has_short_[1] ? 1U : 0U) + (has_short_[2] ? 1U : 0U);
  }

  // Returns the prefix's bucket. Call it for the prefixes in the order in which the constructor saw
  // them.
  std::size_t BucketOf(std::string_view prefix) {
    const std::string_view begin = prefix.substr(0, ScanTables::kDepth);
    if (begin.size() < ScanTables::kDepth) return begin.size() == 2 && has_short_[1] ? 1 : 0;
    if (begin != last_) {
      last_ = begin;
      ++dealt_;
    }
    return first_long_ + (dealt_ - 1) * (ScanTables::kBuckets - first_long_) / beginnings_;
  }

 private:
  std::array<bool, ScanTables::kDepth> has_short_{};
  std::size_t first_long_ = 0;
  std::size_t beginnings_ = 0;
  std::size_t dealt_ = 0;
  std::string_view last_;
};

}  // namespace

ScanTables::ScanTables(const std::vector<std::string_view>& prefixes, Kernel kernel) {
  if (kernel == Kernel::kPortable) {
    pairs.resize(std::size_t{1} << 16);
    for (const std::string_view prefix : prefixes) {
      std::array<std::uint8_t, 2> pair = {static_cast<std::uint8_t>(prefix[0]), 0};
      for (int second = 0; second < 256; ++second) {
        pair[1] = static_cast<std::uint8_t>(prefix.size() > 1 ? prefix[1] : second);
        pairs[PairAt(pair.data())] = 1;
      }
    }
    return;
  }
  Dealer dealer(prefixes);
  for (const std::string_view prefix : prefixes) {
    const auto bit = static_cast<std::uint8_t>(1U << dealer.BucketOf(prefix));
    for (std::size_t depth = 0; depth < kDepth; ++depth) {
      if (depth < prefix.size()) {
        const auto byte = static_cast<std::uint8_t>(prefix[depth]);
        low[depth][byte & 15] |= bit;
        high[depth][byte >> 4] |= bit;
      } else {
        for (std::uint8_t& buckets : low[depth]) buckets |= bit;
        for (std::uint8_t& buckets : high[depth]) buckets |= bit;
      }
    }
  }
}

}  // namespace morvex
