#include "core/engine/candidate_filter.h"

namespace morvex {
namespace {

// When the scan lets more than one place in so many pass, it is left out for some blocks.
constexpr std::size_t kDense = 4;
constexpr int kBlocksWithoutScan = 64;

std::vector<std::string_view> Keys(const KeyIndex& index, const std::vector<CompiledRow>& rows) {
  std::vector<std::string_view> keys;
  keys.reserve(index.rows_by_key().size());
  for (const std::int32_t row : index.rows_by_key()) {
    keys.push_back(rows[static_cast<std::size_t>(row)].key);
  }
  return keys;
}

// Keeps those of the `count` places given by `place_at` that pass `may_hold`.
template <class PlaceAt, class MayHold>
std::size_t Keep(const std::uint8_t* bytes, std::size_t count, std::uint16_t* places,
                 PlaceAt place_at, MayHold may_hold) {
  std::size_t kept = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t place = place_at(i);
    places[kept] = static_cast<std::uint16_t>(place);
    kept += may_hold(bytes + place);
  }
  return kept;
}

// Those that pass one of the filters.
template <class PlaceAt>
std::size_t Keep(const std::vector<BeginFilter>& filters, const std::uint8_t* bytes,
                 std::size_t count, std::uint16_t* places, PlaceAt place_at) {
  const BeginFilter& filter = filters.front();
  if (filters.size() > 1) {
    return Keep(bytes, count, places, place_at, [&filters](const std::uint8_t* place) {
      std::uint8_t may = 0;
      for (const BeginFilter& each : filters) may |= each.MayHold(place);
      return may;
    });
  }
  if (filter.is_large()) {
    return Keep(bytes, count, places, place_at, [&filter](const std::uint8_t* place) {
      return filter.MayHold<BeginFilter::kLargeBits>(place);
    });
  }
  return Keep(bytes, count, places, place_at, [&filter](const std::uint8_t* place) {
    return filter.MayHold<BeginFilter::kSmallBits>(place);
  });
}

}  // namespace

CandidateFilter::CandidateFilter(const KeyIndex& index, const std::vector<CompiledRow>& rows,
                                 Kernel kernel)
    : filters_(index.filters()), tables_(Keys(index, rows), kernel), scan_(ScanFor(kernel)) {}

std::size_t CandidateFilter::Find(const std::uint8_t* bytes, std::size_t count,
                                  std::uint16_t* places) {
  if (filters_.empty()) return 0;
  if (blocks_without_scan_ > 0) {
    --blocks_without_scan_;
    return Keep(filters_, bytes, count, places, [](std::size_t i) { return i; });
  }
  const std::size_t scanned = scan_(tables_, bytes, count, places);
  if (scanned > count / kDense) blocks_without_scan_ = kBlocksWithoutScan;
  return Keep(filters_, bytes, scanned, places,
              [places](std::size_t i) { return static_cast<std::size_t>(places[i]); });
}

}  // namespace morvex
