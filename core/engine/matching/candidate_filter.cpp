#include "core/engine/matching/candidate_filter.h"

namespace morvex {
namespace {

constexpr int kBlocksWithoutScan = 64;

std::vector<std::string_view> Prefixes(const PrefixIndex& index,
                                       const std::vector<CompiledRow>& rows) {
  std::vector<std::string_view> prefixes;
  prefixes.reserve(index.rows_by_prefix().size());
  for (const std::int32_t row : index.rows_by_prefix()) {
    prefixes.push_back(rows[static_cast<std::size_t>(row)].prefix);
  }
  return prefixes;
}

// Tests the offsets offset_at(0) to offset_at(count - 1), writes those that pass the filter to
// `offsets`, and returns their number.
template <HashFilter::Form kForm, class OffsetAt>
std::size_t Keep(const HashFilter& filter, const std::uint8_t* bytes, std::size_t count,
                 std::uint16_t* offsets, OffsetAt offset_at) {
  std::size_t kept = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t offset = offset_at(i);
    offsets[kept] = static_cast<std::uint16_t>(offset);
    kept += filter.MayHold<kForm>(bytes + offset);
  }
  return kept;
}

template <class OffsetAt>
std::size_t Keep(const HashFilter& filter, const std::uint8_t* bytes, std::size_t count,
                 std::uint16_t* offsets, OffsetAt offset_at) {
  using Form = HashFilter::Form;
  std::size_t kept = 0;
  switch (filter.form()) {
    case Form::kBytes:
      kept = Keep<Form::kBytes>(filter, bytes, count, offsets, offset_at);
      break;
    case Form::kBits:
      kept = Keep<Form::kBits>(filter, bytes, count, offsets, offset_at);
      break;
    case Form::kLengths:
      kept = Keep<Form::kLengths>(filter, bytes, count, offsets, offset_at);
      break;
  }
  if (!filter.has_second_probe()) return kept;
  std::size_t left = 0;
  for (std::size_t i = 0; i < kept; ++i) {
    offsets[left] = offsets[i];
    left += filter.PassesSecondProbe(bytes + offsets[i]);
  }
  return left;
}

}  // namespace

CandidateFilter::CandidateFilter(const PrefixIndex& index, const std::vector<CompiledRow>& rows,
                                 Kernel kernel, std::size_t dense)
    : filter_(index.filter()),
      is_empty_(index.rows_by_prefix().empty()),
      tables_(Prefixes(index, rows), kernel),
      scan_(ScanFor(kernel)),
      dense_(dense) {}

std::size_t CandidateFilter::Find(const std::uint8_t* bytes, std::size_t count,
                                  std::uint16_t* offsets) {
  if (is_empty_) return 0;
  if (blocks_without_scan_ > 0) {
    --blocks_without_scan_;
    return Keep(filter_, bytes, count, offsets, [](std::size_t i) { return i; });
  }
  const std::size_t scanned = scan_(tables_, bytes, count, offsets);
  if (scanned > count / dense_) blocks_without_scan_ = kBlocksWithoutScan;
  return Keep(filter_, bytes, scanned, offsets,
              [offsets](std::size_t i) { return static_cast<std::size_t>(offsets[i]); });
}

}  // namespace morvex
