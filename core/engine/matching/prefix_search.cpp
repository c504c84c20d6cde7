#include "core/engine/matching/prefix_search.h"

namespace morvex {
namespace {

// An automaton is built only if all prefixes together have at most this many bytes. With so many,
// building it takes about 100 ms and 25 MiB.
constexpr std::size_t kMostAutomatonBytes = std::size_t{1} << 20;

std::size_t PrefixBytes(const PrefixIndex& index, const std::vector<CompiledRow>& rows) {
  std::size_t bytes = 0;
  for (const std::int32_t row : index.rows_by_prefix()) {
    bytes += rows[static_cast<std::size_t>(row)].prefix.size();
  }
  return bytes;
}

}  // namespace

PrefixSearch::PrefixSearch(const PrefixIndex& index, const std::vector<CompiledRow>& rows,
                           Kernel kernel, SearchMethod method, std::size_t dense)
    : index_(index),
      rows_(rows),
      filter_(index, rows, kernel, dense),
      always_automaton_(method == SearchMethod::kAutomaton),
      automaton_refused_(PrefixBytes(index, rows) > kMostAutomatonBytes) {
  Reset();
}

void PrefixSearch::RunAutomaton(const std::uint8_t* bytes, std::size_t count, std::size_t size) {
  if (!automaton_) automaton_.emplace(rows_, index_.rows_by_prefix());
  states_.clear();
  automaton_->Find(bytes, count, size, states_);
}

}  // namespace morvex
