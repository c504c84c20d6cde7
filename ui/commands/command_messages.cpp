#include "ui/commands/command_messages.h"

#include "core/host/system_service.h"

namespace morvex {
namespace {

const char* CodeOf(Paint paint) {
  switch (paint) {
    case Paint::kError:
    case Paint::kFinding:
      return "\x1b[1;31m";
    case Paint::kWarning:
      return "\x1b[1;35m";
    case Paint::kPlace:
      break;
  }
  return "\x1b[1m";
}

}  // namespace

MessageColours ColoursFor(SystemService& system, bool is_terminal) {
  if (!is_terminal) return MessageColours::kNone;
  constexpr std::string_view kNoColour = "NO_COLOR=";
  for (int index = 1;; ++index) {
    const std::string entry = system.EnvironmentEntry(index);
    if (entry.empty()) return MessageColours::kShown;
    const bool refused = entry.starts_with(kNoColour) && entry.size() > kNoColour.size();
    if (refused || entry == "TERM=dumb") return MessageColours::kNone;
  }
}

std::string Painted(std::string_view text, Paint paint, MessageColours colours) {
  if (colours == MessageColours::kNone) return std::string(text);
  return std::string(CodeOf(paint)).append(text).append("\x1b[0m");
}

void CommandMessages::Error(const std::string& place, const std::string& text) {
  any_error_ = true;
  Say(place, "error", Paint::kError, text);
}

void CommandMessages::Warn(const std::string& place, const std::string& text) {
  if (strict_) return Error(place, text);
  Say(place, "warning", Paint::kWarning, text);
}

void CommandMessages::Note(const std::string& place, const std::string& text) {
  Say(place, "note", Paint::kPlace, text);
}

void CommandMessages::Say(const std::string& place, const char* word, Paint paint,
                          const std::string& text) {
  stream_ << Painted(place, Paint::kPlace, colours_) << ": " << Painted(word, paint, colours_)
          << ": " << text << "\n"
          << std::flush;
}

}  // namespace morvex
