// The replacement list of a command: read once, reviewed, and made into tables.
#pragma once

#include <optional>

#include "core/list/list_review.h"
#include "core/program/program.h"
#include "core/tables/substitution_tables.h"
#include "ui/commands/command_messages.h"
#include "ui/commands/command_options.h"

namespace morvex {

struct LoadedList {
  ListReview review;
  SubstitutionTables tables;
};

// Takes separator, wildcard and list from the options into the settings; an option that is not
// given changes nothing. Returns false, after a message, if a value cannot be used.
bool TakeListOptions(Program& program, const ListOptions& options, CommandMessages& messages);

// Whether byte-order marks at the beginning of left texts stay there, as they do for a run.
enum class ByteOrderMarks { kKept, kDropped };

// Reads the list that the settings name and reports its diagnostics as warnings. Returns nothing,
// after a message, when the list cannot be used. The caller must ask `messages` whether a warning
// counted as an error.
std::optional<LoadedList> LoadList(FileService& files, const Settings& settings,
                                   CommandMessages& messages,
                                   ByteOrderMarks marks = ByteOrderMarks::kKept);

// Reports only the diagnostics of the list, after a run that a settings file described. Reports
// nothing for a list that cannot be opened, because the notes on the run report that.
void WarnOfList(const Program& program, CommandMessages& messages);

}  // namespace morvex
