// The replacement list of a command: looked over first, then read into the program.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "core/list/list_review.h"
#include "core/program/program.h"
#include "ui/commands/command_messages.h"
#include "ui/commands/command_options.h"

namespace morvex {

// Takes separator and wildcard over into the settings, where they are given. False, after a
// message, for values that cannot be.
bool TakeListOptions(Program& program, const ListOptions& options, CommandMessages& messages);

// Says what is to be said of the list that the settings name. Nothing, after a message, when the
// list cannot be used; whether a warning counts as an error, `messages` knows.
std::optional<ListReview> ReviewList(Program& program, CommandMessages& messages);

// The warnings alone, for a run that a settings file describes: it goes on whatever they are, and
// says itself when there is no list to be had.
void WarnOfList(const Program& program, CommandMessages& messages);

// Whether byte-order marks at the beginning of left texts stay there, as for a run.
enum class ByteOrderMarks { kKept, kDropped };

// Reads the list that the settings name into the tables, in place of what stands there. False,
// after a message, when it cannot be read to its end.
bool LoadList(Program& program, CommandMessages& messages,
              ByteOrderMarks marks = ByteOrderMarks::kKept);

}  // namespace morvex
