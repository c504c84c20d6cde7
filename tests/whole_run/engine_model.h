// The model of the engine: it replaces texts byte by byte, in the whole content of one file after
// another. Each attempt to match a row leaves two things to the next attempt, even in the next
// file: the flag that a capture is open, and the captured bytes.

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
  // `grid` holds the rows of the editor; `joker` is the wildcard, or 0 if there is none.
  EngineModel(const std::vector<Row>& grid, unsigned char joker);

  Substituted Process(std::string_view source);

 private:
  struct Pair {
    std::string left;   // with CR LF in place of each "[CRLF]"
    std::string right;  // with CR LF in place of each "[CRLF]"
    bool joker_left = false;
    std::string tail;
  };
  struct Attempt;

  bool IsJoker(unsigned char code) const { return joker_ != 0 && code == joker_; }
  // Both return the byte at a position (counted from 1) of the left or right text, and 0 at a
  // position outside of this text. But behind the end of the list's longest left text, LeftCode
  // returns nothing; behind the end of the longest right text, RightCode returns nothing.
  std::optional<unsigned char> LeftCode(const Pair& pair, std::int64_t position) const;
  std::optional<unsigned char> RightCode(const Pair& pair, std::int64_t position) const;
  // Returns the number of bytes that the row matches at `read_pos` (counted from 1), or 0.
  std::int64_t Matched(const Pair& pair, std::string_view source, std::int64_t read_pos);
  // Handles the byte `attempt->b`. Returns false if this byte ends the attempt.
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
