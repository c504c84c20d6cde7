#include "core/engine/matching/unfinished_keys.h"

#include <algorithm>
#include <string_view>

namespace morvex {

UnfinishedKeys::UnfinishedKeys(const std::vector<CompiledRow>& rows,
                               const std::vector<std::int32_t>& rows_by_key)
    : rows_(rows), rows_by_key_(rows_by_key) {
  for (const std::int32_t row : rows_by_key_) {
    longest_ = std::max(longest_, rows_[static_cast<std::size_t>(row)].key.size());
  }
}

std::uint64_t UnfinishedKeys::FirstPlace(const InputWindow& window, std::uint64_t from) {
  const std::uint64_t end = window.end();
  settled_ = std::max(settled_, from);
  // A longer piece holds every key whole.
  if (end >= longest_) settled_ = std::max(settled_, end - longest_ + 1);
  for (settled_ = std::min(settled_, end); settled_ < end; ++settled_) {
    const auto* const bytes = reinterpret_cast<const char*>(window.At(settled_));
    if (IsBeginning({bytes, static_cast<std::size_t>(end - settled_)})) break;
  }
  return settled_;
}

// The keys that go on behind the bytes stand right behind them in order.
bool UnfinishedKeys::IsBeginning(std::string_view bytes) const {
  const auto next = std::upper_bound(rows_by_key_.begin(), rows_by_key_.end(), bytes,
                                     [this](std::string_view text, std::int32_t row) {
                                       return text < rows_[static_cast<std::size_t>(row)].key;
                                     });
  return next != rows_by_key_.end() &&
         rows_[static_cast<std::size_t>(*next)].key.starts_with(bytes);
}

}  // namespace morvex
