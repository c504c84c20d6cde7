// A replacement list prepared for runs with one wildcard. Each row has a literal prefix (short:
// prefix), a beginning of its left text: the row can match or capture bytes at an offset only if
// its prefix stands there.
//
// A row is plain if its prefix decides: where the prefix stands, the row matches exactly the bytes
// of the prefix. Every other row needs an attempt (match_attempt.h), which continues behind the
// prefix.
//
// A compiled list takes memory in proportion to the size of the list's texts.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/engine/matching/match_attempt.h"
#include "core/tables/substitution_tables.h"

namespace morvex {

// What a row writes where it matches. Half a cache line, aligned so that it never lies in two.
struct alignas(32) RowEffect {
  static constexpr std::size_t kShort = 16;

  // The right text without its wildcards and NULs, if it then has kShort bytes at most.
  std::array<char, kShort> short_text{};
  std::uint64_t right_begin = 0;  // offset of the same text in `right_bytes`
  std::uint32_t right_size = 0;
  std::uint16_t prefix_size = 0;
  bool has_wildcards = false;  // captured bytes are written too
  bool is_short = false;       // `short_text` is all that is written
};

// One row of the tables. CompiledList::rows has the rows in table order, except those that are
// known never to match.
struct CompiledRow {
  static constexpr int kPlain = -1;

  std::int64_t table_row = 0;
  std::string_view prefix;  // 1 to 32766 bytes, none of them NUL; a part of the tables' text
  int attempt = kPlain;     // index of the row's attempt
  bool cuts = false;        // trying the row cuts the capture buffer down to one byte
  std::size_t tail_size = 0;
  // Ascending offsets in the right text without its wildcards and NULs: the captured bytes are
  // inserted there.
  std::vector<std::size_t> wildcards;
};

struct CompiledAttempt {
  PatternRow pattern;
  MatchAttempt behind_prefix;  // the attempt's state after the bytes of the prefix
  int tail = 0;                // index into `tails`; 0 when the attempt need not search for a tail
  bool is_usual = false;    // behind the prefix, the left text has only one wildcard and the tail
  bool opens_span = false;  // the wildcard stands directly behind the prefix and opens a span
  // In front of this offset the row fails wherever its prefix stands, because its span stays open
  // to the last round.
  std::uint64_t hopeless_until = 0;
};

struct CompiledList {
  // `tables` must outlive the list and must not change. `wildcard` is the wildcard's character
  // code, 0 for none.
  CompiledList(const SubstitutionTables& tables, std::uint8_t wildcard);

  std::int64_t table_size = 0;  // rows in the table
  std::vector<CompiledRow> rows;
  std::vector<RowEffect> effects;  // by index in `rows`
  // The right texts. At least kRightPadding bytes behind each text are readable.
  std::string right_bytes;
  static constexpr std::size_t kRightPadding = 32;
  std::vector<CompiledAttempt> attempts;
  std::vector<std::string_view> tails = {""};  // the distinct tails; tails[0] means no tail
  // For each byte: the table rows, ascending, that begin with the byte and whose attempt cuts the
  // capture buffer down to one byte as soon as the byte has matched.
  std::array<std::vector<std::int64_t>, 256> cutting_rows;

 private:
  // Adds the row's right text and effect. Call it directly before the row is added to `rows`.
  void AddRightText(const std::string& text, std::uint8_t wildcard, CompiledRow& row);
};

}  // namespace morvex
