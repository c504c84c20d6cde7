// Keys, the folded beginnings under which what is sought is found, and their index.
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
  // For each key, 1 or more bytes without a NUL, the parts of which it is a beginning.
  using PartsByKey = std::map<std::string, std::vector<std::int32_t>>;

  explicit SoughtKeys(const PartsByKey& parts_by_key);
  SoughtKeys(const SoughtKeys&) = delete;
  SoughtKeys& operator=(const SoughtKeys&) = delete;

  // In ascending order.
  const std::vector<CompiledRow>& rows() const { return rows_; }
  const PrefixIndex& index() const { return *index_; }
  // The parts of a key, an index into rows().
  const std::vector<std::int32_t>& PartsOf(std::int32_t key) const {
    return parts_[static_cast<std::size_t>(key)];
  }

 private:
  std::vector<std::string> bytes_;  // of the keys, which lie in it
  std::vector<CompiledRow> rows_;
  std::vector<std::vector<std::int32_t>> parts_;
  std::unique_ptr<PrefixIndex> index_;
};

}  // namespace morvex
