#include "core/tables/replacement_list.h"

namespace morvex {
namespace {

bool Contains(std::string_view text, std::string_view wildcard) {
  return !wildcard.empty() && text.find(wildcard) != std::string_view::npos;
}

}  // namespace

std::string WildcardText(std::uint8_t code) {
  return code == 0 ? std::string() : std::string(1, static_cast<char>(code));
}

void FlagWildcards(ReplacementList& list, std::string_view wildcard) {
  for (ListRow& row : list.rows) {
    row.left_has_wildcard = Contains(row.left, wildcard);
    row.right_has_wildcard = Contains(row.right, wildcard);
  }
}

}  // namespace morvex
