// Errors and warnings of the commands on standard error. Each says where the problem is, what
// it is, and what to do about it.
#pragma once

#include <ostream>
#include <string>
#include <string_view>

namespace morvex {

enum class MessageColours { kNone, kShown };

class SystemService;

// Returns kShown for a terminal, but kNone if TERM is "dumb" or NO_COLOR is set to a text that is
// not empty.
MessageColours ColoursFor(SystemService& system, bool is_terminal);

// Returns the text with the escape sequences of its colour around it; with kNone, returns the text
// unchanged.
enum class Paint { kError, kWarning, kPlace, kFinding };
std::string Painted(std::string_view text, Paint paint, MessageColours colours);

class CommandMessages {
 public:
  // `strict`: warnings are shown and counted as errors.
  CommandMessages(std::ostream& stream, MessageColours colours, bool strict)
      : stream_(stream), colours_(colours), strict_(strict) {}

  // `place` is a file, maybe with a line ("list.txt:12"), or the program's name. The caller must
  // escape control characters in both texts.
  void Error(const std::string& place, const std::string& text);
  void Warn(const std::string& place, const std::string& text);

  // Writes information, which is no error even with `strict`.
  void Note(const std::string& place, const std::string& text);

  bool any_error() const { return any_error_; }

 private:
  void Say(const std::string& place, const char* word, Paint paint, const std::string& text);

  std::ostream& stream_;
  const MessageColours colours_;
  const bool strict_;
  bool any_error_ = false;
};

inline constexpr const char* kProgramPlace = "morvex-cli";

}  // namespace morvex
