// The attempt to match one row at one place, round by round: each round looks at one byte.
//
// The order of the steps in a round is what a replacement list means. What looks like a slip in
// them (a tail that is recognised in the text before the wildcard, a second wildcard in the tail,
// counters of 16 bits) is part of that meaning.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace morvex {

// A row as an attempt sees it.
struct PatternRow {
  enum class Flag {
    kPlain,     // catches nothing and cuts the capture buffer down to one byte
    kWildcard,  // catches bytes
    kMissing,   // a row behind the last flag: the first round fails
  };

  std::string_view left;
  std::string_view tail;   // empty for a row without the wildcard
  std::int64_t width = 0;  // the longest left text of the list
  std::uint8_t joker = 0;  // 0: none
  Flag flag = Flag::kPlain;

  // The code at a position counted from 1: 0 behind the text, -1 outside of the table.
  int Cell(int position) const {
    if (position < 0 || position > width) return -1;
    if (position == 0 || static_cast<std::size_t>(position) > left.size()) return 0;
    return static_cast<std::uint8_t>(left[static_cast<std::size_t>(position - 1)]);
  }
  bool IsJoker(int code) const { return joker != 0 && code == joker; }
  bool IsWildcardAt(int position) const { return position >= 2 && IsJoker(Cell(position)); }
};

class MatchAttempt {
 public:
  // The last byte that an attempt can look at: its counters are 16 bits wide.
  static constexpr int kLastRound = 32767;

  // Looks at the byte of the round `round()`. `tail_ends_here`: the row's tail stands in the bytes
  // looked at so far and ends with this one. False: the attempt has ended, without the byte. A
  // caught byte that does not follow the others in the file is appended to `more`.
  bool Round(const PatternRow& row, std::uint8_t byte, bool tail_ends_here,
             std::vector<std::uint8_t>& more);

  // Goes ahead to `round` as if every byte up to there had been looked at. Only while InOpenSpan;
  // no NUL and no end of the tail may stand in front of it, and it is at most kLastRound.
  void SkipTo(const PatternRow& row, int round);

  // The state after all rounds of an attempt that went on from `behind_key`, on the wildcard, and
  // in which no NUL and no end of the tail came.
  void FailInSpan(const PatternRow& row, const MatchAttempt& behind_key);

  // The state after all rounds of an attempt that went on from `behind_key`, on the row's only
  // wildcard, and in which the tail, the rest of the left text, ended with the byte of
  // `tail_round`: behind the round on the wildcard, less than kLastRound, and with no NUL in front.
  // The next byte is not the tail's second one.
  void MatchUpToTail(const MatchAttempt& behind_key, int tail_round) {
    *this = behind_key;
    round_ = tail_round + 1;
    extra_ = 0;
    caught_first_ = behind_key.round_;
    caught_count_ = tail_round - behind_key.round_;
  }

  // A span is open that only its tail, a NUL or the last round can end.
  bool InOpenSpan(const PatternRow& row) const {
    return span_open_ && !tail_seen_ && !failed_ && position_ <= row.width;
  }

  // After the last round: whether the row matched, and with how many bytes.
  bool Matched(const PatternRow& row) const {
    return !overflowed_ && round_ > static_cast<std::int64_t>(row.left.size()) + extra_;
  }
  int length() const { return round_ - 1; }

  // Counts from 1.
  int round() const { return round_; }
  int position() const { return position_; }
  bool span_open() const { return span_open_; }
  bool tail_seen() const { return tail_seen_; }
  bool failed() const { return failed_; }  // the next round is the last

  // What was caught: `caught_count` bytes from the byte of round `caught_first` on, then those in
  // `more`.
  int caught_first() const { return caught_first_; }
  int caught_count() const { return caught_count_; }

 private:
  void Count(int& counter, std::int64_t by);
  void Catch(std::uint8_t byte, std::vector<std::uint8_t>& more);

  int round_ = 1;
  int position_ = 1;  // in the left text
  int extra_ = 0;     // bytes that a span added beyond the left text
  int caught_first_ = 0;
  int caught_count_ = 0;
  bool span_open_ = false;
  bool tail_seen_ = false;
  bool failed_ = false;  // ends the next round, after the comparison
  bool overflowed_ = false;
};

}  // namespace morvex
