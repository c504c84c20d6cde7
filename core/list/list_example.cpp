#include "core/list/list_example.h"

#include <algorithm>
#include <array>

#include "core/engine/matching/bytes_in_memory.h"
#include "core/engine/matching/substitution.h"
#include "core/tables/substitution_tables.h"

namespace morvex {
namespace {

// One of them has nothing of nearly every ending in it.
constexpr std::array<std::string_view, 3> kWords = {"Renate", "Vollmoor", "418273"};

class Onlooker : public SubstitutionWatcher {
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

std::string RowOutcomes::Of(const std::string& left_cell, const std::string& right_cell,
                            std::uint8_t joker, std::string_view file) {
  const auto holds_joker = [joker](const std::string& cell) {
    return joker != 0 && cell.find(static_cast<char>(joker)) != std::string::npos;
  };
  ReplacementsForm grid;
  grid.rows.resize(1);
  grid.rows.front().txtLinks.text = left_cell;
  grid.rows.front().txtRechts.text = right_cell;
  SubstitutionTables tables;
  Set_Joker(tables, "Left", 0, holds_joker(left_cell));
  Set_Joker(tables, "Right", 0, holds_joker(right_cell));
  FillArrays(grid, joker, tables);
  MemorySource from(file);
  MemorySink to;
  input_.Open(from);
  output_.Open(to);
  CaptureState captured;
  Onlooker onlooker;
  Substitution(tables, joker).Run(input_, output_, captured, onlooker);
  output_.Finish();
  return to.bytes();
}

}  // namespace morvex
