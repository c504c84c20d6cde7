// What the search for leftovers looks for: the left text of every row of a list, in every encoding
// that has its characters, in any letter case.
//
// A wildcard row is split into parts, the texts between its wildcards. It is found where all parts
// occur in their order, within the bytes that a match may span. Each part has keys in each
// encoding: the beginnings of the part, by which an index finds the part. Keys and files are
// compared folded (see Folded), which makes the two cases of most letters equal. Where the two
// cases still differ, there is a key for each. Keys with a rare form of a letter (see OtherCase)
// are kept apart, because they need to be searched only around such forms.
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

// Maps a byte so that the two cases of most letters become equal. No byte becomes NUL. NUL, which
// is every second byte of an ASCII text in UTF-16, becomes 1, and no other byte does.
constexpr std::uint8_t Folded(std::uint8_t byte) {
  return byte == 0 ? std::uint8_t{1} : static_cast<std::uint8_t>(byte | 0x20);
}

// One row in one encoding.
struct SoughtRow {
  std::int64_t row = 0;  // row of the tables
  Encoding encoding = Encoding::kBytes;
  bool is_wildcard = false;
  std::size_t parts = 1;
  // If true, an occurrence that consists of ASCII bytes is not reported here, because it is
  // reported for the same row in another encoding.
  bool ascii_is_told_elsewhere = false;
  // The most bytes from the first part's beginning to the last part's end; 0 for a row of one part.
  std::uint64_t longest_span = 0;
  // The right text of a wildcard row, if it holds all parts of the left text in their order and no
  // wildcard, and is not too long; else empty. A run writes this text, so an occurrence of `put_in`
  // is no leftover.
  std::string put_in;
  // In bytes: 1 (2 in UTF-16) for a row whose left text has its ending in front of the wildcard,
  // too; else 0. A match of such a row ends too early, so behind the right text a run leaves most
  // of what the wildcard was meant to capture. Therefore, where the first part is the beginning of
  // `put_in`, the next part is searched only from this many bytes behind `put_in`.
  std::size_t least_left = 0;
};

struct SoughtPart {
  static constexpr std::int32_t kNone = -1;

  std::size_t sought_row = 0;
  std::size_t number = 0;  // index among the row's parts
  Spelling spelling;
  // The index of the same part in UTF-16 of the other byte order; kNone for other encodings.
  std::int32_t other_order = kNone;
};

class Sought {
 public:
  // `joker` is the wildcard's code, 0 for none. `list_encoding` is the encoding of the list; a row
  // that is malformed in it is searched only as bytes.
  Sought(const SubstitutionTables& tables, std::uint8_t joker, Encoding list_encoding);
  Sought(const Sought&) = delete;
  Sought& operator=(const Sought&) = delete;

  const std::vector<SoughtRow>& rows() const { return rows_; }
  const std::vector<SoughtPart>& parts() const { return parts_; }
  // Rows that are not searched: their right text holds all parts of the left text and a wildcard,
  // so a run removes nothing.
  const std::vector<std::int64_t>& rows_that_stay() const { return rows_that_stay_; }

  // Rows of which the search may find nothing although a run left something, because what a run
  // leaves of them looks like any other text: rows whose left text has its ending in front of the
  // wildcard, too (unless SoughtRow::put_in is set), and rows whose wildcard captures only one
  // byte. They are searched like all others.
  const std::vector<std::int64_t>& rows_not_judged() const { return rows_not_judged_; }

  // Rows with a part that is malformed in the list's encoding: they are searched only as bytes.
  const std::vector<std::int64_t>& rows_of_bytes() const { return rows_of_bytes_; }

  // The most bytes of a rare key.
  static constexpr std::size_t kLongestRareKey = 96;

  // Keys of letters in their usual forms.
  const SoughtKeys& keys() const { return *keys_; }
  // rare_keys: keys that hold a rare form of a letter. rare_forms: the rare forms alone, at least
  // one of them for each rare key.
  const SoughtKeys& rare_keys() const { return *rare_keys_; }
  const SoughtKeys& rare_forms() const { return *rare_forms_; }

  // look_ahead: the most bytes from an offset on that are read to decide what stands there.
  // look_behind: no occurrence of a row begins more bytes than this in front of its last part.
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

// Returns kUtf8 when all left texts are well-formed UTF-8, else kWindows1252.
Encoding GuessEncoding(const SubstitutionTables& tables);

}  // namespace morvex
