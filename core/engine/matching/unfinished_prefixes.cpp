#include "core/engine/matching/unfinished_prefixes.h"

#include <algorithm>
#include <string_view>

namespace morvex {

UnfinishedPrefixes::UnfinishedPrefixes(const std::vector<CompiledRow>& rows,
                                       const std::vector<std::int32_t>& rows_by_prefix)
    : rows_(rows), rows_by_prefix_(rows_by_prefix) {
  for (const std::int32_t row : rows_by_prefix_) {
    longest_ = std::max(longest_, rows_[static_cast<std::size_t>(row)].prefix.size());
  }
}

std::uint64_t UnfinishedPrefixes::FirstOffset(const InputWindow& window, std::uint64_t from) {
  const std::uint64_t end = window.end();
  settled_ = std::max(settled_, from);
  // All bytes of a prefix that begins longest_ or more bytes in front of the end have arrived.
  if (end >= longest_) settled_ = std::max(settled_, end - longest_ + 1);
  for (settled_ = std::min(settled_, end); settled_ < end; ++settled_) {
    const auto* const bytes = reinterpret_cast<const char*>(window.At(settled_));
    if (IsBeginning({bytes, static_cast<std::size_t>(end - settled_)})) break;
  }
  return settled_;
}

// Whether a longer prefix begins with `bytes`. In ascending order such prefixes directly follow
// `bytes`.
bool UnfinishedPrefixes::IsBeginning(std::string_view bytes) const {
  const auto next = std::upper_bound(rows_by_prefix_.begin(), rows_by_prefix_.end(), bytes,
                                     [this](std::string_view text, std::int32_t row) {
                                       return text < rows_[static_cast<std::size_t>(row)].prefix;
                                     });
  return next != rows_by_prefix_.end() &&
         rows_[static_cast<std::size_t>(*next)].prefix.starts_with(bytes);
}

}  // namespace morvex
