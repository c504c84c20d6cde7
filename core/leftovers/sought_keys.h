// The keys, which are the folded beginnings of parts, and an index that finds the keys in a file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "core/engine/matching/compiled_list.h"
#include "core/engine/matching/prefix_index.h"

namespace morvex {

class SoughtKeys {
 public:
  // Maps each key to the parts that can begin with it. A key has at least one byte and no NUL.
  using PartsByKey = std::map<std::string, std::vector<std::int32_t>>;

  explicit SoughtKeys(const PartsByKey& parts_by_key);
  SoughtKeys(const SoughtKeys&) = delete;
  SoughtKeys& operator=(const SoughtKeys&) = delete;

  // The keys as rows, in ascending order.
  const std::vector<CompiledRow>& rows() const { return rows_; }
  const PrefixIndex& index() const { return *index_; }
  // Returns the parts that can begin with the key. `key` is an index of rows().
  const std::vector<std::int32_t>& PartsOf(std::int32_t key) const {
    return parts_[static_cast<std::size_t>(key)];
  }

 private:
  std::vector<std::string> bytes_;  // of the keys; rows_ points into it
  std::vector<CompiledRow> rows_;
  std::vector<std::vector<std::int32_t>> parts_;
  std::unique_ptr<PrefixIndex> index_;
};

}  // namespace morvex
