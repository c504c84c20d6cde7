#include "core/list/list_example.h"

#include <algorithm>
#include <array>

#include "core/engine/matching/bytes_in_memory.h"
#include "core/engine/matching/substitution.h"
#include "core/tables/substitution_tables.h"

namespace morvex {
namespace {

// Words to put in place of the wildcard. They have no byte in common, so at most one of them
// contains the ending (the text behind the wildcard), unless the ending is empty.
constexpr std::array<std::string_view, 3> kWords = {"Renate", "Vollmoor", "418273"};

class NoWatcher : public SubstitutionWatcher {
 public:
  void OnHits(std::int64_t /*count*/) override {}
  bool KeepGoing(std::uint64_t /*read*/) override { return true; }
};

}  // namespace

std::string ExampleFor(std::string_view left, std::uint8_t joker) {
  const std::size_t wildcard = left.find(static_cast<char>(joker), 1);
  if (joker == 0 || wildcard == std::string_view::npos) return std::string(left);
  const std::string_view ending = left.substr(wildcard + 1);
  const auto word = std::find_if(kWords.begin(), kWords.end(), [ending](std::string_view each) {
    return ending.empty() || each.find(ending) == std::string_view::npos;
  });
  return std::string(left.substr(0, wildcard))
      .append(word == kWords.end() ? kWords.front() : *word)
      .append(ending);
}

std::string RowOutcomes::Of(const std::string& left, const std::string& right, std::uint8_t joker,
                            std::string_view file) {
  ReplacementList list;
  list.rows.push_back({left, right});
  FlagWildcards(list, WildcardText(joker));
  SubstitutionTables tables;
  MakeTables(list, joker, tables);
  MemorySource from(file);
  MemorySink to;
  input_.Open(from);
  output_.Open(to);
  CaptureState captured;
  NoWatcher watcher;
  Substitution(tables, joker).Run(input_, output_, captured, watcher);
  output_.Finish();
  return to.bytes();
}

}  // namespace morvex
