// A second substitution engine, as plain as can be: whole files as strings, a matrix of codes, and
// the attempt's steps in their order. The real engine is compared with this one. Texts and files
// must be short, because the counters of the real engine end at 16 bits, but those of this engine
// do not.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/tables/substitution_tables.h"

namespace morvex::test {

class NaiveEngine {
 public:
  NaiveEngine(const SubstitutionTables& tables, std::uint8_t joker);

  // Returns the bytes of the result. Does not reset the state that earlier files left.
  std::string Process(const std::string& file);

  std::int64_t hits = 0;  // of the last file
  bool Joker_SET = false;
  std::vector<std::uint8_t> CaptureBuffer = {0};

 private:
  using Matrix = std::vector<std::vector<std::uint8_t>>;  // [row][position]

  static Matrix CodesOf(const std::vector<std::string>& texts);
  // The number of bytes that the row matches from the 1-based position `read_pos` on; nothing if
  // the row does not match.
  std::optional<int> Matched(std::size_t row, const std::string& file, int read_pos);
  void Capture(std::size_t row, int position, std::uint8_t byte, int& count);
  void WriteRightText(std::size_t row, int& write_pos, std::string& result) const;
  bool IsJoker(std::uint8_t code) const { return joker_ != 0 && code == joker_; }

  const SubstitutionTables& tables_;
  std::uint8_t joker_;
  Matrix left_;
  Matrix right_;
};

}  // namespace morvex::test
