#include "tests/reference/naive_engine.h"

#include <algorithm>

namespace morvex::test {
namespace {

// Positions count from 1.
std::uint8_t ByteAt(const std::string& file, int position) {
  const auto index = static_cast<std::size_t>(position - 1);
  return index < file.size() ? static_cast<std::uint8_t>(file[index]) : std::uint8_t{0};
}

void Write(std::string& result, int position, std::uint8_t byte) {
  if (position < 1) return;
  const auto index = static_cast<std::size_t>(position - 1);
  if (index >= result.size()) result.resize(index + 1);
  result[index] = static_cast<char>(byte);
}

bool InBounds(const std::vector<std::uint8_t>& cells, int position) {
  return position >= 0 && position < static_cast<int>(cells.size());
}

}  // namespace

NaiveEngine::NaiveEngine(const SubstitutionTables& tables, std::uint8_t joker)
    : tables_(tables),
      joker_(joker),
      left_(CodesOf(tables.LeftTexts)),
      right_(CodesOf(tables.RightTexts)) {}

NaiveEngine::Matrix NaiveEngine::CodesOf(const std::vector<std::string>& texts) {
  std::size_t width = 0;
  for (const std::string& text : texts) width = std::max(width, text.size());
  Matrix codes;
  for (const std::string& text : texts) {
    std::vector<std::uint8_t>& cells = codes.emplace_back(width + 1);
    for (std::size_t i = 0; i < text.size(); ++i) {
      cells[i + 1] = static_cast<std::uint8_t>(text[i]);
    }
  }
  return codes;
}

std::string NaiveEngine::Process(const std::string& file) {
  hits = 0;
  std::string result;
  int write_pos = 0;
  for (int read_pos = 1; read_pos <= static_cast<int>(file.size()); ++read_pos) {
    ++write_pos;
    bool matched = false;
    for (std::size_t row = 0; row < left_.size() && !matched; ++row) {
      if (tables_.LeftTexts[row].empty()) continue;
      const std::optional<int> length = Matched(row, file, read_pos);
      if (!length) continue;
      matched = true;
      ++hits;
      read_pos += *length - 1;
      WriteRightText(row, write_pos, result);
      --write_pos;
    }
    if (!matched) Write(result, write_pos, ByteAt(file, read_pos));
  }
  return result;
}

std::optional<int> NaiveEngine::Matched(std::size_t row, const std::string& file, int read_pos) {
  const std::vector<std::uint8_t>& pattern = left_[row];
  const std::string& tail = tables_.JokerTail[row];
  std::uint8_t byte = ByteAt(file, read_pos);
  int k = 1;
  int j = 1;
  int extra = 0;
  int capture_count = 0;
  std::string match_text;
  bool bounds_error = false;
  for (;;) {
    if (!InBounds(pattern, j)) {
      bounds_error = true;
    } else {
      const bool joker_here = IsJoker(pattern[static_cast<std::size_t>(j)]) && j >= 2;
      if (byte != pattern[static_cast<std::size_t>(j)] && !joker_here && !Joker_SET) break;
    }
    match_text += static_cast<char>(byte);
    if (byte == 0) {
      Joker_SET = false;
      break;
    }
    if (bounds_error) {
      Joker_SET = false;
      break;
    }
    if (!tail.empty() && match_text.find(tail) != std::string::npos) {
      Joker_SET = false;
      extra = extra - static_cast<int>(tail.size()) + 1;
    }
    Capture(row, j, byte, capture_count);
    if (Joker_SET) {
      --j;
      ++extra;
    }
    if (InBounds(pattern, j) && IsJoker(pattern[static_cast<std::size_t>(j)])) Joker_SET = true;
    byte = ByteAt(file, read_pos + k);
    ++k;
    ++j;
  }
  if (k > static_cast<int>(tables_.LeftTexts[row].size()) + extra) return k - 1;
  return std::nullopt;
}

void NaiveEngine::Capture(std::size_t row, int position, std::uint8_t byte, int& count) {
  if (!tables_.JokerLeft[row]) {
    CaptureBuffer.resize(1);
    return;
  }
  if (!IsJoker(left_[row][static_cast<std::size_t>(position)]) && !Joker_SET) return;
  CaptureBuffer.resize(static_cast<std::size_t>(count) + 1);
  CaptureBuffer[static_cast<std::size_t>(count)] = byte;
  ++count;
}

void NaiveEngine::WriteRightText(std::size_t row, int& write_pos, std::string& result) const {
  const int bound = static_cast<int>(CaptureBuffer.size()) - 1;
  const int last = static_cast<int>(tables_.RightTexts[row].size()) + bound;
  for (int j = 1; j <= last; ++j) {
    if (!InBounds(right_[row], j)) return;
    const std::uint8_t code = right_[row][static_cast<std::size_t>(j)];
    if (code == 0) continue;
    if (!IsJoker(code)) {
      Write(result, write_pos, code);
      ++write_pos;
      continue;
    }
    const int n = bound - static_cast<int>(tables_.JokerTail[row].size()) + 1;
    for (int i = 0; i <= n && i <= bound; ++i) {
      Write(result, write_pos + i, CaptureBuffer[static_cast<std::size_t>(i)]);
    }
    write_pos += n;
    if (n > bound) return;
    ++write_pos;
  }
}

}  // namespace morvex::test
