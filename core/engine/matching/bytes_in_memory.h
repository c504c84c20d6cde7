// Bytes in memory as the source or the sink of a substitution.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/engine/matching/byte_io.h"

namespace morvex {

// The bytes must outlive the source.
class MemorySource : public ByteSource {
 public:
  explicit MemorySource(std::string_view bytes) : bytes_(bytes) {}
  Result<std::size_t> ReadAt(std::uint64_t offset, char* into, std::size_t size) override {
    if (offset >= bytes_.size()) return std::size_t{0};
    return bytes_.copy(into, size, static_cast<std::size_t>(offset));
  }

 private:
  std::string_view bytes_;
};

// A sink that keeps what is written to it.
class MemorySink : public ByteSink {
 public:
  ErrorNumber WriteAt(std::uint64_t offset, std::string_view bytes) override {
    const auto at = static_cast<std::size_t>(offset);
    bytes_.resize(std::max(bytes_.size(), at + bytes.size()));
    bytes.copy(bytes_.data() + at, bytes.size());
    return ErrorNumber::kNone;
  }
  ErrorNumber Close() override { return ErrorNumber::kNone; }
  const std::string& bytes() const { return bytes_; }

 private:
  std::string bytes_;
};

}  // namespace morvex
