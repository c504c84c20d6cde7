#include "core/engine/passes/progress.h"

#include <string>

namespace morvex {
namespace {

constexpr int kShownDigits = 4;

std::uint64_t PowerOfTen(int exponent) {
  std::uint64_t power = 1;
  for (int i = 0; i < exponent; ++i) power *= 10;
  return power;
}

}  // namespace

int ScaleFor(std::uint64_t bytes) {
  return static_cast<int>(std::to_string(bytes).size()) - kShownDigits;
}

std::int64_t Scaled(std::uint64_t bytes, int scale) {
  return static_cast<std::int64_t>(scale >= 0 ? bytes / PowerOfTen(scale)
                                              : bytes * PowerOfTen(-scale));
}

void ShowProgress(Program& program, std::int64_t bytes) {
  program.frmMorvex.ProgressBar1.SetValue(
      Scaled(static_cast<std::uint64_t>(bytes), program.run.ProgressScale));
}

void ShowHits(Program& program, std::int64_t hits) {
  program.frmMorvex.lblPercentage.caption =
      "Hits: " + std::to_string(hits) + "\r\n" + program.run.ResultTail;
}

void ShowFileCounts(Program& program, const char* skipped_word) {
  program.frmMorvex.lblTotalFiles.caption = "Scanned: " + std::to_string(program.run.FilesDone) +
                                            "\r\n" + skipped_word +
                                            std::to_string(program.run.FilesSkipped);
}

}  // namespace morvex
