// A replacement list as data: what a list file holds, what the grid shows, what the tables are made
// of.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace morvex {

// The texts are unconverted bytes, in which "[CRLF]" still stands for a line break. In a list that
// was read from a file, the texts are bytes of the file, with two exceptions: the right text of the
// final row lacks its last two bytes, and the command "check" drops byte-order marks from left
// texts.
struct ListRow {
  std::string left;
  std::string right;
  bool left_has_wildcard = false;
  bool right_has_wildcard = false;
  bool operator==(const ListRow&) const = default;
};

struct ReplacementList {
  std::string path;           // of its file; empty if it has no file
  std::vector<ListRow> rows;  // in the order in which a run tries them
};

// Returns the wildcard with this code as a text; empty for code 0, which stands for no wildcard.
std::string WildcardText(std::uint8_t code);

// Sets both flags of every row. An empty `wildcard` occurs in no text.
void FlagWildcards(ReplacementList& list, std::string_view wildcard);

}  // namespace morvex
