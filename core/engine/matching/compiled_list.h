// A replacement list made ready for a run: of every row the bytes that must stand at a place before
// anything can come of the row there (its key), and what happens then.
//
// A row is plain when its key decides: where the key stands, the row matches it, all of it and
// nothing else. Every other row needs an attempt, which starts behind the key.
//
// Built once per run in time and memory that grow with the size of the list's texts.
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

// What a row does where it matches, in half a cache line.
struct RowEffect {
  static constexpr std::size_t kShort = 16;

  std::array<char, kShort> short_text{};  // the right text without wildcards, if it fits
  std::uint64_t right_begin = 0;          // where it stands in `right_bytes`
  std::uint32_t right_size = 0;
  std::uint16_t key_size = 0;
  bool has_jokers = false;  // and so also writes caught bytes
  bool is_short = false;    // all that it writes stands in `short_text`
};

// Rows count in table order; those that can have no effect on a run are not among them.
struct CompiledRow {
  static constexpr int kPlain = -1;

  std::int64_t table_row = 0;
  std::string_view key;  // 1 to 32766 bytes without a NUL; lies in the tables
  int attempt = kPlain;  // index of the row's attempt
  bool cuts = false;     // an attempt cuts the capture buffer down to one byte
  std::size_t tail_size = 0;
  // The caught bytes are written at these offsets (ascending) of the right text.
  std::vector<std::size_t> jokers;
};

struct CompiledAttempt {
  PatternRow pattern;
  MatchAttempt behind_key;  // as it stands when the key has been looked at
  int tail = 0;             // index into `tails`; 0 when the attempt need not look for a tail
  bool is_usual = false;    // behind the key come the wildcard and its tail, and then nothing
  bool opens_span = false;  // the first round behind the key stands on the wildcard
  std::uint64_t hopeless_until = 0;  // of the file: in front of it nothing ends a span in time
};

struct CompiledList {
  // `tables` must outlive the list and may not change; `joker` is the wildcard's code, 0 for none.
  CompiledList(const SubstitutionTables& tables, std::uint8_t joker);

  std::int64_t table_size = 0;  // rows in the table
  std::vector<CompiledRow> rows;
  std::vector<RowEffect> effects;  // of the rows
  std::string right_bytes;         // kRightPadding more bytes may be read behind each text
  static constexpr std::size_t kRightPadding = 32;
  std::vector<CompiledAttempt> attempts;
  std::vector<std::string_view> tails = {""};  // the distinct tails; the first is none
  // Ascending, by first byte, the table rows whose attempt, once its first byte has fitted, cuts
  // the capture buffer down to one byte.
  std::array<std::vector<std::int64_t>, 256> cutting_rows;

 private:
  // Of the row that is added next.
  void AddRightText(const std::string& text, std::uint8_t joker, CompiledRow& row);
};

}  // namespace morvex
