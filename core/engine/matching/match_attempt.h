// The attempt to match one row at one offset, round by round: each round reads one byte.
//
// The tail is the part of the left text behind its first wildcard. A span is the run of bytes that
// a wildcard takes: it opens at the wildcard and closes at the tail.
//
// The order of the steps in a round defines what a replacement list means. Three things look like
// slips but are part of that meaning: the tail is recognised even in front of the wildcard, the
// tail may hold a second wildcard, and the counters have 16 bits.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace morvex {

// What an attempt needs to know of a row.
struct PatternRow {
  enum class Flag {
    kPlain,     // captures nothing and cuts the capture buffer down to one byte
    kWildcard,  // captures bytes
    kMissing,   // the tables lack the row's flag: an attempt ends in its second round at the latest
  };

  std::string_view left;
  std::string_view tail;      // empty for a row without the wildcard
  std::int64_t width = 0;     // length in bytes of the list's longest left text
  std::uint8_t wildcard = 0;  // 0: none
  Flag flag = Flag::kPlain;

  // Returns the left text's byte at `position`, counted from 1; 0 at position 0 and behind the
  // text; -1 outside positions 0 to `width`.
  int Cell(int position) const {
    if (position < 0 || position > width) return -1;
    if (position == 0 || static_cast<std::size_t>(position) > left.size()) return 0;
    return static_cast<std::uint8_t>(left[static_cast<std::size_t>(position - 1)]);
  }
  bool IsWildcard(int code) const { return wildcard != 0 && code == wildcard; }
  bool IsWildcardAt(int position) const { return position >= 2 && IsWildcard(Cell(position)); }
};

class MatchAttempt {
 public:
  // The last round that an attempt can have, because its counters are 16 bits wide.
  static constexpr int kLastRound = 32767;

  // Runs round number round(), which reads `byte`. `tail_ends_here`: an occurrence of the row's
  // tail ends with `byte`. Returns false if the attempt ends; a match then does not include `byte`.
  // A captured byte that does not directly follow the other captured bytes in the input is appended
  // to `more`.
  bool Round(const PatternRow& row, std::uint8_t byte, bool tail_ends_here,
             std::vector<std::uint8_t>& more);

  // Moves on to `round` (kLastRound at most) as if all rounds in front of it had been run. Call
  // only while InOpenSpan, and only if the skipped bytes hold no NUL and no end of the tail.
  void SkipTo(const PatternRow& row, int round);

  // Sets the state that an attempt has after its last round if it continues from `behind_prefix`
  // and meets neither a NUL nor an end of the tail. In `behind_prefix` the attempt must stand on
  // the wildcard.
  void FailInSpan(const PatternRow& row, const MatchAttempt& behind_prefix);

  // Sets the state that an attempt has after its last round if it continues from `behind_prefix`
  // and matches up to the end of the tail. In `behind_prefix` the attempt must stand on the row's
  // only wildcard, and only the tail may follow in the left text. The round `tail_round` reads the
  // tail's last byte; it must come after the wildcard's round and be less than kLastRound. No NUL
  // may stand in front of the tail's last byte, and the byte behind that last byte must not be the
  // tail's second byte.
  void MatchUpToTail(const MatchAttempt& behind_prefix, int tail_round) {
    *this = behind_prefix;
    round_ = tail_round + 1;
    extra_ = 0;
    captured_first_ = behind_prefix.round_;
    captured_count_ = tail_round - behind_prefix.round_;
  }

  // Whether a span is open that only the tail, a NUL or the last round can close.
  bool InOpenSpan(const PatternRow& row) const {
    return span_open_ && !tail_seen_ && !failed_ && position_ <= row.width;
  }

  // Whether the row matches if the attempt ends now, and with how many bytes.
  bool Matched(const PatternRow& row) const {
    return !overflowed_ && round_ > static_cast<std::int64_t>(row.left.size()) + extra_;
  }
  int length() const { return round_ - 1; }

  // The number of the next round, from 1.
  int round() const { return round_; }
  int position() const { return position_; }
  bool span_open() const { return span_open_; }
  bool tail_seen() const { return tail_seen_; }
  bool failed() const { return failed_; }  // the next round ends the attempt

  // The captured bytes are those that captured_count() rounds read, from round captured_first() on,
  // and then the bytes in `more` (see Round).
  int captured_first() const { return captured_first_; }
  int captured_count() const { return captured_count_; }

 private:
  void Count(int& counter, std::int64_t by);
  void Capture(std::uint8_t byte, std::vector<std::uint8_t>& more);

  int round_ = 1;
  int position_ = 1;  // in the left text, from 1
  int extra_ = 0;     // bytes that a match takes beyond the length of the left text
  int captured_first_ = 0;
  int captured_count_ = 0;
  bool span_open_ = false;
  bool tail_seen_ = false;
  bool failed_ = false;  // the next round ends the attempt, after its comparison
  bool overflowed_ = false;
};

}  // namespace morvex
