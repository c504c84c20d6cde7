// The model of the engine. Positions count from 1. The counters of an attempt to match a row have
// 16 bits. `k` counts the bytes that the attempt has looked at; the last of these bytes is not part
// of the match.

#include "engine_model.h"

#include <algorithm>

namespace morvex::whole_run {
namespace {

constexpr std::int64_t kLargest16 = 32767;
constexpr std::int64_t kSmallest16 = -32768;

std::string WithLineBreaks(const std::string& text) {
  const std::string token = "[CRLF]";
  std::string result;
  std::size_t at = 0;
  while (at < text.size()) {
    if (text.compare(at, token.size(), token) == 0) {
      result += "\r\n";
      at += token.size();
    } else {
      result += text[at++];
    }
  }
  return result;
}

bool EndsWith(const std::string& text, const std::string& end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

void Put(std::int64_t position, unsigned char code, std::string* out) {
  if (position < 1) {
    return;
  }
  const auto index = static_cast<std::size_t>(position - 1);
  if (index >= out->size()) {
    out->resize(index + 1, '\0');
  }
  (*out)[index] = static_cast<char>(code);
}

unsigned char ByteAt(std::string_view source, std::int64_t position) {
  const auto index = static_cast<std::size_t>(position - 1);
  return index < source.size() ? static_cast<unsigned char>(source[index]) : 0;
}

}  // namespace

struct EngineModel::Attempt {
  unsigned char b = 0;
  std::int64_t k = 1;
  std::int64_t j = 1;
  std::int64_t extra = 0;
  std::int64_t capture_count = 0;
  std::string match_text;
  bool tail_found = false;  // once true, stays true until the attempt ends
  bool error_pending = false;
  bool overflowed = false;

  void Store(std::int64_t value, std::int64_t* counter) {
    if (value > kLargest16 || value < kSmallest16) {
      error_pending = true;
      overflowed = true;
    } else {
      *counter = value;
    }
  }
};

EngineModel::EngineModel(const std::vector<Row>& grid, unsigned char joker) : joker_(joker) {
  for (const Row& row : grid) {
    Pair pair;
    pair.left = WithLineBreaks(row.left);
    pair.right = WithLineBreaks(row.right);
    const auto joker_char = static_cast<char>(joker);
    pair.joker_left = joker != 0 && row.left.find(joker_char) != std::string::npos;
    if (pair.joker_left) {
      const std::size_t at = pair.left.find(joker_char);
      pair.tail = at == std::string::npos ? pair.left : pair.left.substr(at + 1);
    }
    left_width_ = std::max(left_width_, static_cast<std::int64_t>(pair.left.size()));
    right_width_ = std::max(right_width_, static_cast<std::int64_t>(pair.right.size()));
    pairs_.push_back(pair);
  }
}

std::optional<unsigned char> EngineModel::LeftCode(const Pair& pair, std::int64_t position) const {
  if (position > left_width_) {
    return std::nullopt;
  }
  return position < 1 ? static_cast<unsigned char>(0) : ByteAt(pair.left, position);
}

std::optional<unsigned char> EngineModel::RightCode(const Pair& pair, std::int64_t position) const {
  if (position > right_width_) {
    return std::nullopt;
  }
  return ByteAt(pair.right, position);
}

void EngineModel::Capture(const Pair& pair, Attempt* attempt) {
  if (!pair.joker_left) {
    capture_.resize(1, 0);
    return;
  }
  const std::optional<unsigned char> code = LeftCode(pair, attempt->j);
  if (span_open_ || (code && IsJoker(*code))) {
    capture_.resize(static_cast<std::size_t>(attempt->capture_count) + 1, 0);
    capture_[static_cast<std::size_t>(attempt->capture_count)] = attempt->b;
    attempt->Store(attempt->capture_count + 1, &attempt->capture_count);
  }
}

bool EngineModel::Step(const Pair& pair, Attempt* attempt) {
  const std::optional<unsigned char> code = LeftCode(pair, attempt->j);
  if (!code) {
    attempt->error_pending = true;
  } else {
    const bool joker_here = IsJoker(*code) && attempt->j >= 2;
    if (attempt->b != *code && !joker_here && !span_open_) {
      return false;
    }
  }
  attempt->match_text += static_cast<char>(attempt->b);
  if (attempt->b == 0 || attempt->error_pending) {
    span_open_ = false;
    return false;
  }
  attempt->tail_found = attempt->tail_found || EndsWith(attempt->match_text, pair.tail);
  if (!pair.tail.empty() && attempt->tail_found) {
    span_open_ = false;
    const auto tail_length = static_cast<std::int64_t>(pair.tail.size());
    attempt->Store(attempt->extra - tail_length + 1, &attempt->extra);
  }
  Capture(pair, attempt);
  if (span_open_) {
    attempt->Store(attempt->j - 1, &attempt->j);
    attempt->Store(attempt->extra + 1, &attempt->extra);
  }
  const std::optional<unsigned char> code_now = LeftCode(pair, attempt->j);
  if (code_now && IsJoker(*code_now)) {
    span_open_ = true;
  }
  return true;
}

std::int64_t EngineModel::Matched(const Pair& pair, std::string_view source,
                                  std::int64_t read_pos) {
  Attempt attempt;
  attempt.b = ByteAt(source, read_pos);
  while (Step(pair, &attempt)) {
    attempt.b = ByteAt(source, read_pos + attempt.k);
    attempt.Store(attempt.k + 1, &attempt.k);
    attempt.Store(attempt.j + 1, &attempt.j);
  }
  const auto length = static_cast<std::int64_t>(pair.left.size());
  return !attempt.overflowed && attempt.k > length + attempt.extra ? attempt.k - 1 : 0;
}

void EngineModel::WriteRight(const Pair& pair, std::int64_t* write_pos, std::string* out) const {
  const auto bound = static_cast<std::int64_t>(capture_.size()) - 1;
  const std::int64_t last = static_cast<std::int64_t>(pair.right.size()) + bound;
  for (std::int64_t j = 1; j <= last; ++j) {
    const std::optional<unsigned char> code = RightCode(pair, j);
    if (!code) {
      return;
    }
    if (IsJoker(*code)) {
      const std::int64_t n = bound - static_cast<std::int64_t>(pair.tail.size()) + 1;
      for (std::int64_t i = 0; i <= std::min(n, bound); ++i) {
        Put(*write_pos + i, capture_[static_cast<std::size_t>(i)], out);
      }
      *write_pos += n;
      if (n > bound) {
        return;
      }
      ++*write_pos;
    } else if (*code != 0) {
      Put(*write_pos, *code, out);
      ++*write_pos;
    }
  }
}

Substituted EngineModel::Process(std::string_view source) {
  Substituted result;
  std::int64_t write_pos = 0;
  const auto size = static_cast<std::int64_t>(source.size());
  for (std::int64_t read_pos = 1; read_pos <= size; ++read_pos) {
    ++write_pos;
    const unsigned char first = ByteAt(source, read_pos);
    bool matched = false;
    for (const Pair& pair : pairs_) {
      const std::int64_t taken = pair.left.empty() ? 0 : Matched(pair, source, read_pos);
      if (taken > 0) {
        ++result.hits;
        WriteRight(pair, &write_pos, &result.bytes);
        --write_pos;
        read_pos += taken - 1;
        matched = true;
        break;
      }
    }
    if (!matched) {
      Put(write_pos, first, &result.bytes);
    }
  }
  return result;
}

}  // namespace morvex::whole_run
