// What a run shows while it works: the progress bar and the result labels.
#pragma once

#include <cstdint>

#include "core/program/program.h"

namespace morvex {

// Returns the exponent of the power of ten by which `bytes` must be divided to leave four digits;
// negative for numbers below 1000.
int ScaleFor(std::uint64_t bytes);

// Returns the integer part of bytes / 10^scale.
std::int64_t Scaled(std::uint64_t bytes, int scale);

// Sets the progress bar to `bytes`, counted over the whole run.
void ShowProgress(Program& program, std::int64_t bytes);

// Sets the result label: "Hits: " and `hits`, with ResultTail of the run on the second line.
void ShowHits(Program& program, std::int64_t hits);

// Sets the label of the file counts: "Scanned: " and the files done; on a second line
// `skipped_word` and the files skipped.
void ShowFileCounts(Program& program, const char* skipped_word);

}  // namespace morvex
