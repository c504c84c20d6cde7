// Writes the result of a substitution: the input's bytes between matches, and the right texts.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "core/engine/matching/capture_memory.h"
#include "core/engine/matching/compiled_list.h"
#include "core/engine/matching/input_window.h"
#include "core/engine/matching/pace.h"
#include "core/engine/matching/positioned_output.h"

namespace morvex {

class ResultWriter {
 public:
  // `list` must outlive the object.
  explicit ResultWriter(const CompiledList& list) : list_(list) {}

  // Call when another source begins. `input` and `output` must outlive their use here.
  void Open(const InputWindow& input, PositionedOutput& output);

  // Writes the input's bytes in front of `offset` that are neither written nor replaced yet.
  void CopyUpTo(std::uint64_t offset) {
    if (offset == copied_) return;
    WritePadded(input_->At(copied_), static_cast<std::size_t>(offset - copied_));
    copied_ = offset;
  }
  // Writes the row's right text, with the captured bytes in place of each wildcard.
  void WriteRightText(std::int32_t row, CaptureMemory& captures, Pace& pace) {
    const auto index = static_cast<std::size_t>(row);
    const RowEffect& effect = list_.effects[index];
    const auto* const text =
        reinterpret_cast<const std::uint8_t*>(list_.right_bytes.data()) + effect.right_begin;
    if (effect.has_wildcards) {
      WriteWithCaptured(list_.rows[index], text, effect.right_size, captures, pace);
    } else {
      WritePadded(text, effect.right_size);
    }
  }
  // Marks the input's bytes in front of `offset` as replaced.
  void SkipTo(std::uint64_t offset) { copied_ = offset; }
  // The input's bytes in front of this offset are written or replaced.
  std::uint64_t copied() const { return copied_; }

  void Flush() { output_->Flush(); }
  bool has_failed() const { return output_->error() != ErrorNumber::kNone; }

  // Writes many short right texts straight into the output's memory. Between Begin and End no other
  // function of the writer may be called.
  class Burst {
   public:
    explicit Burst(ResultWriter& writer) : writer_(writer) { Begin(); }
    void Begin() {
      room_ = writer_.output_->RoomAt(writer_.position_);
      begin_ = room_.at;
      copied_ = writer_.copied_;
      first_ = copied_;
      bytes_ = writer_.input_->At(first_);
      hits_ = 0;
    }
    // Replaces what a plain row with this effect matches at `offset`. Returns false, without doing
    // anything, if the right text is not short or there is no room.
    bool Replace(std::uint64_t offset, const RowEffect& effect) {
      const auto before = static_cast<std::size_t>(offset - copied_);
      if (!effect.is_short || room_.at == nullptr ||
          before + kCopyStep + RowEffect::kShort > static_cast<std::size_t>(room_.end - room_.at)) {
        return false;
      }
      CopyShort(room_.at, bytes_ + (copied_ - first_), before);
      room_.at += before;
      std::memcpy(room_.at, effect.short_text.data(), RowEffect::kShort);
      room_.at += effect.right_size;
      copied_ = offset + effect.prefix_size;
      ++hits_;
      return true;
    }
    // Returns the number of replacements since Begin.
    std::int64_t End() {
      if (hits_ == 0) return 0;
      writer_.output_->Fill(room_.at);
      writer_.position_ += room_.at - begin_;
      writer_.copied_ = copied_;
      return hits_;
    }

   private:
    ResultWriter& writer_;
    PositionedOutput::Room room_;
    const char* begin_ = nullptr;
    std::uint64_t first_ = 0;
    const std::uint8_t* bytes_ = nullptr;  // the input's bytes from first_ on
    std::uint64_t copied_ = 0;
    std::int64_t hits_ = 0;
  };

 private:
  // Bytes are copied in steps of this size; the last step may read and write beyond the piece.
  static constexpr std::size_t kCopyStep = 32;
  // Longer pieces are left to memcpy.
  static constexpr std::size_t kLongPiece = 1024;

  // The last step of a copy may read up to kCopyStep bytes beyond the piece, in the input or in a
  // right text.
  static_assert(kCopyStep <= InputWindow::kPadding && kCopyStep <= CompiledList::kRightPadding);
  static void CopyShort(char* to, const std::uint8_t* from, std::size_t size) {
    if (size > kLongPiece) {
      std::memcpy(to, from, size);
      return;
    }
    for (std::size_t at = 0; at < size; at += kCopyStep) std::memcpy(to + at, from + at, kCopyStep);
  }

  void WriteWithCaptured(const CompiledRow& row, const std::uint8_t* text, std::size_t size,
                         CaptureMemory& captures, Pace& pace);
  // Writes `size` bytes. At least kCopyStep bytes behind them must be readable.
  void WritePadded(const std::uint8_t* bytes, std::size_t size) {
    const PositionedOutput::Room room = output_->RoomAt(position_);
    if (room.at != nullptr && size + kCopyStep <= static_cast<std::size_t>(room.end - room.at)) {
      CopyShort(room.at, bytes, size);
      output_->Fill(room.at + size);
    } else if (size > 0) {
      output_->Put(position_, {reinterpret_cast<const char*>(bytes), size});
    }
    position_ += static_cast<std::int64_t>(size);
  }

  const CompiledList& list_;
  const InputWindow* input_ = nullptr;
  PositionedOutput* output_ = nullptr;
  std::uint64_t copied_ = 0;
  std::int64_t position_ = 1;  // where the next byte is written, from 1
};

}  // namespace morvex
