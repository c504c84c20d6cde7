#include "core/engine/matching/result_writer.h"

#include <algorithm>

namespace morvex {
namespace {

constexpr std::uint64_t kWrittenBytesPerStep = 16;

}  // namespace

void ResultWriter::Open(const InputWindow& input, PositionedOutput& output) {
  input_ = &input;
  output_ = &output;
  copied_ = 0;
  position_ = 1;
}

void ResultWriter::WriteWithCaptured(const CompiledRow& row, const std::uint8_t* text,
                                     std::size_t size, CaptureMemory& captures, Pace& pace) {
  std::size_t from = 0;
  for (const std::size_t wildcard : row.wildcards) {
    WritePadded(text + from, wildcard - from);
    from = wildcard;
    // Writes the buffer's bytes 0 to n. Behind them the buffer has the bytes of the tail except its
    // last: they were captured before the tail was recognised, and are not written.
    const std::string_view captured = captures.Bytes();
    const auto bound = static_cast<std::int64_t>(captured.size()) - 1;
    const std::int64_t n = bound - static_cast<std::int64_t>(row.tail_size) + 1;
    const std::int64_t written = std::min(n, bound) + 1;
    pace.AddSteps(captured.size() / kWrittenBytesPerStep);
    if (written > 0 && written == n + 1 && captures.AreInWindow()) {
      WritePadded(reinterpret_cast<const std::uint8_t*>(captured.data()),
                  static_cast<std::size_t>(written));
      continue;
    }
    if (written > 0) {
      output_->Put(position_, captured.substr(0, static_cast<std::size_t>(written)));
    }
    position_ += n;
    if (n > bound) return;  // without a tail there is no byte n, and the right text ends here
    ++position_;
  }
  WritePadded(text + from, size - from);
}

}  // namespace morvex
