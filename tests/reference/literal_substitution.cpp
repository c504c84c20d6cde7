#include "tests/reference/literal_substitution.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <optional>
#include <string_view>

namespace morvex::test {
namespace {

constexpr std::int64_t kStepsBetweenQuestions = 50'000;

// The counters of an attempt are 16 bits wide. A step out of that range returns false and leaves
// the counter unchanged.
bool Step16(int& counter, std::int64_t by) {
  const std::int64_t next = counter + by;
  if (next < std::numeric_limits<std::int16_t>::min() ||
      next > std::numeric_limits<std::int16_t>::max()) {
    return false;
  }
  counter = static_cast<int>(next);
  return true;
}

}  // namespace

// One attempt to match one row at one offset.
class LiteralSubstitution::Attempt {
 public:
  // `bytes` points to the byte at that offset; the window shows `size` bytes from there on. An
  // attempt that needs more bytes has reached the end of the file and reads NULs.
  Attempt(LiteralSubstitution& owner, std::int64_t row, const std::uint8_t* bytes, std::size_t size)
      : owner_(owner),
        state_(owner.state_),
        tables_(owner.tables_),
        row_(row),
        bytes_(bytes),
        size_(size),
        current_(bytes[0]) {}

  bool Matches() {
    while (Advance()) {
    }
    const std::int64_t needed = tables_.LeftLengths[static_cast<std::size_t>(row_)] + extra_;
    return !overflowed_ && examined_ > needed;
  }

  // Returns how many bytes matched, without the byte that ended the attempt.
  int length() const { return examined_ - 1; }

 private:
  // Does one round of the attempt. Returns false if this round ends the attempt.
  bool Advance() {
    const std::optional<std::uint8_t> pattern = tables_.LeftBytes(row_, position_);
    if (pattern) {
      const bool wildcard_here = owner_.IsJoker(*pattern) && position_ >= 2;
      if (current_ != *pattern && !wildcard_here && !state_.Joker_SET) return false;
    } else {
      error_pending_ = true;
    }
    if (current_ == 0 || error_pending_) {
      state_.Joker_SET = false;
      return false;
    }
    CloseSpanAtTail();
    Capture();
    if (state_.Joker_SET) {
      Count(position_, -1);
      Count(extra_, 1);
    }
    if (StandsOnJoker()) state_.Joker_SET = true;
    const auto ahead = static_cast<std::size_t>(examined_);
    current_ = ahead < size_ ? bytes_[ahead] : 0;
    Count(examined_, 1);
    Count(position_, 1);
    return true;
  }

  void Count(int& counter, std::int64_t by) {
    if (Step16(counter, by)) return;
    error_pending_ = true;
    overflowed_ = true;
  }

  bool StandsOnJoker() const {
    const std::optional<std::uint8_t> pattern = tables_.LeftBytes(row_, position_);
    return pattern && owner_.IsJoker(*pattern);
  }

  // From the first round on in which the examined bytes end with the tail, every round closes the
  // span and adds 1 minus the tail's length to `extra_`.
  void CloseSpanAtTail() {
    const std::string& tail = owner_.TailOf(row_);
    if (tail.empty()) return;
    const auto examined = static_cast<std::size_t>(examined_);
    tail_seen_ =
        tail_seen_ || (examined >= tail.size() &&
                       std::memcmp(bytes_ + examined - tail.size(), tail.data(), tail.size()) == 0);
    if (!tail_seen_) return;
    state_.Joker_SET = false;
    Count(extra_, 1 - static_cast<std::int64_t>(tail.size()));
  }

  void Capture() {
    if (row_ >= static_cast<std::int64_t>(tables_.JokerLeft.size())) {
      error_pending_ = true;
      return;
    }
    std::vector<std::uint8_t>& buffer = state_.CaptureBuffer;
    if (!tables_.JokerLeft[static_cast<std::size_t>(row_)]) {
      buffer.resize(1);
    } else if (state_.Joker_SET || StandsOnJoker()) {
      buffer.resize(static_cast<std::size_t>(captured_) + 1);
      buffer.back() = current_;
      Count(captured_, 1);
    }
  }

  LiteralSubstitution& owner_;
  LiteralState& state_;
  const SubstitutionTables& tables_;
  std::int64_t row_;
  const std::uint8_t* bytes_;
  std::size_t size_;
  std::uint8_t current_;
  int examined_ = 1;  // bytes looked at, the current one included
  int position_ = 1;  // position in the left text, from 1
  int extra_ = 0;     // bytes that a match takes beyond the length of the left text
  int captured_ = 0;
  bool tail_seen_ = false;
  bool error_pending_ = false;
  bool overflowed_ = false;
};

LiteralSubstitution::LiteralSubstitution(const SubstitutionTables& tables, std::uint8_t joker,
                                         LiteralState& state)
    : tables_(tables), joker_(joker), state_(state) {
  for (std::int64_t row = 0; row < tables.PairCount; ++row) {
    const std::string& left = tables.LeftTexts[static_cast<std::size_t>(row)];
    if (left.empty()) continue;
    rows_.push_back({row, static_cast<std::uint8_t>(left.front())});
    starts_a_row_[rows_.back().first] = true;
  }
}

SubstitutionEnd LiteralSubstitution::Run(InputWindow& input, PositionedOutput& output,
                                         SubstitutionWatcher& watcher) {
  watcher_ = &watcher;
  read_pos_ = 0;
  std::int64_t write_pos = 0;
  std::int64_t last_match_pos = 0;
  steps_ = kStepsBetweenQuestions;
  for (;;) {
    if (steps_ >= kStepsBetweenQuestions) {
      if (!MayGoOn()) return SubstitutionEnd::kStopped;
      if (output.error() != ErrorNumber::kNone) return SubstitutionEnd::kWriteFailed;
    }
    ++read_pos_;
    ++write_pos;
    if (read_pos_ == last_match_pos) return SubstitutionEnd::kNoProgress;
    read_error_ = input.MoveTo(static_cast<std::uint64_t>(read_pos_ - 1));
    if (read_error_ != ErrorNumber::kNone) return SubstitutionEnd::kReadFailed;
    if (input.size() == 0) return SubstitutionEnd::kWholeFile;

    bool stopped = false;
    const Match match = FirstMatchingRow(input, stopped);
    if (stopped) return SubstitutionEnd::kStopped;
    if (match.row == nullptr) {
      output.Put(write_pos, {reinterpret_cast<const char*>(input.data()), 1});
      continue;
    }
    watcher.OnHits(1);
    last_match_pos = read_pos_;
    read_pos_ += match.length - 1;
    write_pos = WriteRightText(match.row->row, write_pos, output) - 1;
  }
}

bool LiteralSubstitution::MayGoOn() {
  steps_ = 0;
  return watcher_->KeepGoing(static_cast<std::uint64_t>(read_pos_));
}

LiteralSubstitution::Match LiteralSubstitution::FirstMatchingRow(const InputWindow& input,
                                                                 bool& stopped) {
  const std::uint8_t first = *input.data();
  ++steps_;
  // Nearly every attempt would end at its first byte. So this byte is compared before any attempt,
  // first with all rows together, then with each row. While a span is open (Joker_SET), every row
  // is tried.
  if (!starts_a_row_[first] && !state_.Joker_SET) return {};
  for (const UsableRow& row : rows_) {
    ++steps_;
    if (first != row.first && !state_.Joker_SET) continue;
    // With a long list and long spans, the attempts at a single byte can take long, so the watcher
    // is asked between them, too.
    if (steps_ >= kStepsBetweenQuestions && !MayGoOn()) {
      stopped = true;
      return {};
    }
    Attempt attempt(*this, row.row, input.data(), input.size());
    const bool matches = attempt.Matches();
    steps_ += attempt.length();
    if (matches) return {&row, attempt.length()};
  }
  return {};
}

std::int64_t LiteralSubstitution::WriteRightText(std::int64_t row, std::int64_t position,
                                                 PositionedOutput& output) {
  const std::vector<std::uint8_t>& buffer = state_.CaptureBuffer;
  const auto bound = static_cast<std::int64_t>(buffer.size()) - 1;
  const auto tail = static_cast<std::int64_t>(TailOf(row).size());
  const std::int64_t last = tables_.RightLengths[static_cast<std::size_t>(row)] + bound;
  for (std::int64_t j = 1; j <= last; ++j) {
    const std::optional<std::uint8_t> code = tables_.RightBytes(row, j);
    if (!code) break;
    if (!IsJoker(*code)) {
      if (*code == 0) continue;
      const char byte = static_cast<char>(*code);
      output.Put(position, {&byte, 1});
      ++position;
      continue;
    }
    // Writes the captured bytes 0 to n. The bytes behind byte n count as bytes of the tail that
    // were captured before the tail was recognised.
    const std::int64_t n = bound - tail + 1;
    const std::int64_t written = std::min(n, bound) + 1;
    if (written > 0) {
      output.Put(position, std::string_view(reinterpret_cast<const char*>(buffer.data()),
                                            static_cast<std::size_t>(written)));
    }
    position += n;
    if (n > bound) break;  // the buffer ends in front of byte n, which ends the right text
    ++position;
  }
  return position;
}

}  // namespace morvex::test
