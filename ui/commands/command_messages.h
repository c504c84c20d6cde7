// Errors and warnings of the commands, on standard error: where, what, and what to do about it.
#pragma once

#include <ostream>
#include <string>
#include <string_view>

namespace morvex {

enum class MessageColours { kNone, kShown };

// Colours are shown on a terminal, unless NO_COLOR holds anything or TERM is "dumb".
class SystemService;
MessageColours ColoursFor(SystemService& system, bool is_terminal);

// The text between the marks of a colour, or as it is.
enum class Paint { kError, kWarning, kPlace, kFinding };
std::string Painted(std::string_view text, Paint paint, MessageColours colours);

class CommandMessages {
 public:
  // `strict`: a warning is an error.
  CommandMessages(std::ostream& stream, MessageColours colours, bool strict)
      : stream_(stream), colours_(colours), strict_(strict) {}

  // `place` is a file and maybe a line, as in "list.txt:12", or the program's name. Neither text
  // may hold control characters.
  void Error(const std::string& place, const std::string& text);
  void Warn(const std::string& place, const std::string& text);

  // What is to be known and nothing is wrong with, strictly speaking either.
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
