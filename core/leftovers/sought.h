// What is sought of a replacement list: the left text of every row, in every encoding in which it
// can be spelled, in any letter case.
//
// A row with the wildcard is sought by its parts: all of them, in their order, no further from each
// other than a match may reach. Each part in one encoding has keys, the beginnings under which an
// index finds it. Keys and files are compared folded, with a bit set in every byte that makes most
// letter cases one; where a letter's cases still differ there is a key for each. Keys with a form
// of a letter that few files hold are kept apart: they need to be looked for around such forms
// alone.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/leftovers/sought_keys.h"
#include "core/leftovers/spelling.h"
#include "core/tables/substitution_tables.h"

namespace morvex {

// Makes one of two letters that differ in case alone, in most alphabets. Nothing becomes a NUL; a
// NUL, which parts the letters of UTF-16, becomes what nothing else does.
constexpr std::uint8_t Folded(std::uint8_t byte) {
  return byte == 0 ? std::uint8_t{1} : static_cast<std::uint8_t>(byte | 0x20);
}

// A row in one encoding.
struct SoughtRow {
  std::int64_t row = 0;  // of the tables
  Encoding encoding = Encoding::kBytes;
  bool is_wildcard = false;
  std::size_t parts = 1;
  // Where it stands in ASCII alone, the row in another encoding stands as well.
  bool ascii_is_told_elsewhere = false;
  std::uint64_t longest_span = 0;  // bytes, from the first part's beginning to the last one's end
  // Of a wildcard row whose right text would be found again: where that stands, nothing is left.
  std::string put_in;
  // Of one that ends in its own beginning, though, a run leaves nearly all of what was to be taken
  // out behind the right text. So the ending is sought there, behind so many bytes or more; 0 for
  // every other row.
  std::size_t least_left = 0;
};

struct SoughtPart {
  static constexpr std::int32_t kNone = -1;

  std::size_t sought_row = 0;
  std::size_t number = 0;  // among the row's parts
  Spelling spelling;
  // The same part in UTF-16 of the other byte order.
  std::int32_t other_order = kNone;
};

class Sought {
 public:
  // `joker` is the wildcard's code, 0 for none; `list_encoding` says how the list's own bytes are
  // read. A text that they cannot be is sought as bytes alone.
  Sought(const SubstitutionTables& tables, std::uint8_t joker, Encoding list_encoding);
  Sought(const Sought&) = delete;
  Sought& operator=(const Sought&) = delete;

  const std::vector<SoughtRow>& rows() const { return rows_; }
  const std::vector<SoughtPart>& parts() const { return parts_; }
  // Rows whose right text puts back what the wildcard took in, together with all parts of the left
  // text: nothing of them is ever gone, so they are not sought.
  const std::vector<std::int64_t>& rows_that_stay() const { return rows_that_stay_; }

  // Rows that end in their own beginning and whose right text has not all of their parts, and those
  // whose wildcard takes in one byte alone: what a run leaves behind them looks like any other
  // text. They are sought as others are.
  const std::vector<std::int64_t>& rows_not_judged() const { return rows_not_judged_; }

  // Rows of which a part cannot be read in the list's encoding: they are sought as bytes alone.
  const std::vector<std::int64_t>& rows_of_bytes() const { return rows_of_bytes_; }

  // No rare key has more bytes.
  static constexpr std::size_t kLongestRareKey = 96;

  // Of letters in their usual forms.
  const SoughtKeys& keys() const { return *keys_; }
  // Those that hold a rare form of a letter, and these forms themselves: each rare key holds one.
  const SoughtKeys& rare_keys() const { return *rare_keys_; }
  const SoughtKeys& rare_forms() const { return *rare_forms_; }

  // So many bytes behind a place may be looked at, so many before it belong to what is found there.
  std::size_t look_ahead() const { return look_ahead_; }
  std::uint64_t look_behind() const { return look_behind_; }

 private:
  struct ListRow;
  void AddRow(const ListRow& row, Encoding encoding, bool ascii_is_told_elsewhere = false);
  void AddOtherOrders(std::size_t first_little, std::size_t first_big);
  void MakeKeys();

  Alphabet alphabet_;
  std::vector<SoughtRow> rows_;
  std::vector<SoughtPart> parts_;
  std::vector<std::int64_t> rows_that_stay_;
  std::vector<std::int64_t> rows_not_judged_;
  std::vector<std::int64_t> rows_of_bytes_;
  std::unique_ptr<SoughtKeys> keys_;
  std::unique_ptr<SoughtKeys> rare_keys_;
  std::unique_ptr<SoughtKeys> rare_forms_;
  std::size_t look_ahead_ = 1;
  std::uint64_t look_behind_ = 0;
};

// UTF-8 when all left texts are that, else Windows-1252.
Encoding GuessEncoding(const SubstitutionTables& tables);

}  // namespace morvex
