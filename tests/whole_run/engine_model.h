// The substitution of one file after another, worked out byte by byte on whole strings. It goes
// through the numbered moves of an attempt one at a time and keeps what an attempt leaves behind
// for the next row and the next file: the open-span flag and the capture buffer.

#ifndef MORVEX_TESTS_WHOLE_RUN_ENGINE_MODEL_H_
#define MORVEX_TESTS_WHOLE_RUN_ENGINE_MODEL_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "settings_model.h"

namespace morvex::whole_run {

struct Substituted {
  std::string bytes;
  std::int64_t hits = 0;
};

class EngineModel {
 public:
  // `grid` holds the rows of the editor; `joker` 0 means that there is none.
  EngineModel(const std::vector<Row>& grid, unsigned char joker);

  Substituted Process(std::string_view source);

 private:
  struct Pair {
    std::string left;   // "[CRLF]" already a line break
    std::string right;  // the same
    bool joker_left = false;
    std::string tail;
  };
  struct Attempt;

  bool IsJoker(unsigned char code) const { return joker_ != 0 && code == joker_; }
  // Code at a position counted from 1; 0 past the text's end; absent past the table's width.
  std::optional<unsigned char> LeftCode(const Pair& pair, std::int64_t position) const;
  std::optional<unsigned char> RightCode(const Pair& pair, std::int64_t position) const;
  // Number of bytes that the row takes at `read_pos` (counted from 1), 0 when it does not match.
  std::int64_t Matched(const Pair& pair, std::string_view source, std::int64_t read_pos);
  // One move round the attempt loop after the byte `b` was looked at; false ends the attempt.
  bool Step(const Pair& pair, Attempt* attempt);
  void Capture(const Pair& pair, Attempt* attempt);
  void WriteRight(const Pair& pair, std::int64_t* write_pos, std::string* out) const;

  unsigned char joker_;
  std::vector<Pair> pairs_;
  std::int64_t left_width_ = 0;
  std::int64_t right_width_ = 0;
  bool span_open_ = false;
  std::vector<unsigned char> capture_{0};
};

}  // namespace morvex::whole_run

#endif  // MORVEX_TESTS_WHOLE_RUN_ENGINE_MODEL_H_
