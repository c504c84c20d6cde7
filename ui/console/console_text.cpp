#include "ui/console/console_text.h"

#include <array>

namespace morvex {
namespace {

bool IsControl(char character) {
  const auto code = static_cast<unsigned char>(character);
  return code < 0x20 || code == 0x7F;
}

std::string Counted(std::int64_t count, const char* one, const char* many) {
  return std::to_string(count) + " " + (count == 1 ? one : many);
}

}  // namespace

std::string Printable(std::string_view text) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string shown;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text.substr(i, 2) == "\r\n") {
      shown += '\n';
      ++i;
    } else if (IsControl(text[i])) {
      const auto code = static_cast<unsigned char>(text[i]);
      shown += "\\x";
      shown += kDigits[code / 16];
      shown += kDigits[code % 16];
    } else {
      shown += text[i];
    }
  }
  return shown;
}

std::string ProgressLine(const Program& program) {
  const RunState& run = program.run;
  const ProgressBar& bar = program.frmMorvex.ProgressBar1;
  const std::int64_t percent = bar.maximum() == 0 ? 0 : bar.value() * 100 / bar.maximum();
  return Counted(run.FilesDone + run.FilesSkipped, "file", "files") + "  " +
         Counted(run.HitsTotal, "hit", "hits") + "  " +
         ReadableBytes(run.BytesBefore + run.FileOffset) + "  " + std::to_string(percent) + " %";
}

std::string ResultLines(const Program& program) {
  const MainWindow& window = program.frmMorvex;
  std::string lines;
  for (const Label* label : {&window.lblTotalFiles, &window.lblTijd, &window.lblPercentage}) {
    const std::string& caption = label->caption;
    if (!caption.empty()) lines.append(Printable(caption)).append("\n");
  }
  return lines;
}

std::string FailureLines(const Program& program) {
  const RunState& run = program.run;
  std::string lines;
  if (run.passed_over_files > 0) {
    lines += Counted(run.passed_over_files, "file was", "files were") +
             " passed over and not copied: the program's own, changed after the start, in a "
             "recycle bin, or a name that ends in \"cle\".\n";
  }
  if (run.failed_files > 0) {
    lines += Counted(run.failed_files, "file or folder", "files or folders") +
             " could not be copied. The first: " + Printable(run.first_failure.path) + ": Error " +
             std::to_string(static_cast<int>(run.first_failure.error)) + ": " +
             std::string(ErrorText(run.first_failure.error)) + "\n";
  }
  return lines;
}

std::string ReadableBytes(std::int64_t bytes) {
  constexpr std::array<const char*, 5> kUnits = {"kB", "MB", "GB", "TB", "PB"};
  constexpr std::int64_t kStep = 1000;
  if (bytes < kStep) return Counted(bytes, "byte", "bytes");
  std::size_t unit = 0;
  std::int64_t tenths = bytes / (kStep / 10);
  while (tenths >= kStep * 10 && unit + 1 < kUnits.size()) {
    tenths /= kStep;
    ++unit;
  }
  return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " " + kUnits[unit];
}

}  // namespace morvex
