#include "core/list/list_line.h"

#include <algorithm>
#include <cstddef>

namespace morvex {
namespace {

// Cut off the right text of the last row, whatever the separator's length.
constexpr std::size_t kFinalRowMark = 2;

}  // namespace

ListLineParser::ListLineParser(std::string_view separator) : separator_(separator) {}

ListLine ListLineParser::Parse(std::string_view line) {
  ListLine parsed;
  const std::size_t found = separator_.empty() ? std::string_view::npos : line.find(separator_);
  if (found == std::string_view::npos) return parsed;
  if (line == separator_ + separator_ + separator_) {
    parsed.kind = ListLine::Kind::kEnd;
    return parsed;
  }
  if (line.find(separator_ + separator_) != std::string_view::npos) final_row_seen_ = true;
  parsed.kind = ListLine::Kind::kRow;
  parsed.left = line.substr(0, found);
  parsed.right = line.substr(found + separator_.size());
  if (final_row_seen_) {
    parsed.right.resize(parsed.right.size() - std::min(parsed.right.size(), kFinalRowMark));
  }
  return parsed;
}

}  // namespace morvex
