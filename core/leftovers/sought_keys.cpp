#include "core/leftovers/sought_keys.h"

#include <utility>

namespace morvex {

SoughtKeys::SoughtKeys(const PartsByKey& parts_by_key) {
  bytes_.reserve(parts_by_key.size());  // rows_ points into the elements, so they must not move
  for (const auto& [bytes, parts] : parts_by_key) {
    bytes_.push_back(bytes);
    CompiledRow row;
    row.prefix = bytes_.back();
    row.attempt = 0;  // so that the index returns all keys at an offset, not only one
    rows_.push_back(std::move(row));
    parts_.push_back(parts);
  }
  index_ = std::make_unique<PrefixIndex>(rows_);
}

}  // namespace morvex
