#include "core/engine/matching/candidate_filter.h"

namespace morvex {
namespace {

constexpr int kBlocksWithoutScan = 64;

std::vector<std::string_view> Keys(const KeyIndex& index, const std::vector<CompiledRow>& rows) {
  std::vector<std::string_view> keys;
  keys.reserve(index.rows_by_key().size());
  for (const std::int32_t row : index.rows_by_key()) {
    keys.push_back(rows[static_cast<std::size_t>(row)].key);
  }
  return keys;
}

// Keeps those of the `count` places given by `place_at` that pass the filter.
template <BeginFilter::Form kForm, class PlaceAt>
std::size_t Keep(const BeginFilter& filter, const std::uint8_t* bytes, std::size_t count,
                 std::uint16_t* places, PlaceAt place_at) {
  std::size_t kept = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t place = place_at(i);
    places[kept] = static_cast<std::uint16_t>(place);
    kept += filter.MayHold<kForm>(bytes + place);
  }
  return kept;
}

template <class PlaceAt>
std::size_t Keep(const BeginFilter& filter, const std::uint8_t* bytes, std::size_t count,
                 std::uint16_t* places, PlaceAt place_at) {
  using Form = BeginFilter::Form;
  std::size_t kept = 0;
  switch (filter.form()) {
    case Form::kBytes:
      kept = Keep<Form::kBytes>(filter, bytes, count, places, place_at);
      break;
    case Form::kBits:
      kept = Keep<Form::kBits>(filter, bytes, count, places, place_at);
      break;
    case Form::kLengths:
      kept = Keep<Form::kLengths>(filter, bytes, count, places, place_at);
      break;
  }
  if (!filter.looks_further()) return kept;
  std::size_t left = 0;
  for (std::size_t i = 0; i < kept; ++i) {
    places[left] = places[i];
    left += filter.MayGoOn(bytes + places[i]);
  }
  return left;
}

}  // namespace

CandidateFilter::CandidateFilter(const KeyIndex& index, const std::vector<CompiledRow>& rows,
                                 Kernel kernel, std::size_t dense)
    : filter_(index.filter()),
      is_empty_(index.rows_by_key().empty()),
      tables_(Keys(index, rows), kernel),
      scan_(ScanFor(kernel)),
      dense_(dense) {}

std::size_t CandidateFilter::Find(const std::uint8_t* bytes, std::size_t count,
                                  std::uint16_t* places) {
  if (is_empty_) return 0;
  if (blocks_without_scan_ > 0) {
    --blocks_without_scan_;
    return Keep(filter_, bytes, count, places, [](std::size_t i) { return i; });
  }
  const std::size_t scanned = scan_(tables_, bytes, count, places);
  if (scanned > count / dense_) blocks_without_scan_ = kBlocksWithoutScan;
  return Keep(filter_, bytes, scanned, places,
              [places](std::size_t i) { return static_cast<std::size_t>(places[i]); });
}

}  // namespace morvex
