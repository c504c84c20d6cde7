// What one line of a list file says. The one grammar for importing a list and for reviewing it.
#pragma once

#include <string>
#include <string_view>

namespace morvex {

struct ListLine {
  enum class Kind {
    kNoRow,  // the separator does not occur: the line is passed over
    kRow,
    kEnd,  // three separators and nothing else
  };
  Kind kind = Kind::kNoRow;
  std::string left;
  std::string right;
};

// Takes the lines of one file in turn.
class ListLineParser {
 public:
  explicit ListLineParser(std::string_view separator);

  ListLine Parse(std::string_view line);

  // A line with two separators in a row has come: it was the final row, and so is every later one.
  bool final_row_seen() const { return final_row_seen_; }

 private:
  const std::string separator_;
  bool final_row_seen_ = false;
};

}  // namespace morvex
