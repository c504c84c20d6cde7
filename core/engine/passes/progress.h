// What a run shows while it works: the scale of the progress bar and the result labels.
#pragma once

#include <cstdint>

#include "core/program/program.h"

namespace morvex {

// The power of ten that leaves a number at most four digits; negative for numbers below 1000.
int ScaleFor(std::uint64_t bytes);

// The integer part of bytes / 10^scale.
std::int64_t Scaled(std::uint64_t bytes, int scale);

// Progress bar: value for `bytes` of the whole run.
void ShowProgress(Program& program, std::int64_t bytes);

// Result label: "Hits: " and `hits`, then the second line.
void ShowHits(Program& program, std::int64_t hits);

// Label of the file counts: "Scanned: " and, on a second line, the skipped files behind
// `skipped_word`.
void ShowFileCounts(Program& program, const char* skipped_word);

}  // namespace morvex
