// Open files that are nothing but bytes in memory, for tests and benchmarks that need no file
// system.
#pragma once

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>

#include "core/host/file_service.h"

namespace morvex::test {

class BytesInput : public InputFile {
 public:
  // The bytes must outlive the file.
  explicit BytesInput(std::string_view bytes) : bytes_(bytes) {}

  Result<std::size_t> ReadAt(std::uint64_t offset, char* into, std::size_t size) override {
    if (offset >= bytes_.size()) return std::size_t{0};
    const std::string_view rest = bytes_.substr(static_cast<std::size_t>(offset), size);
    std::memcpy(into, rest.data(), rest.size());
    return rest.size();
  }

 private:
  std::string_view bytes_;
};

class BytesOutput : public OutputFile {
 public:
  // Writes into `bytes`, which must outlive the file.
  explicit BytesOutput(std::string& bytes) : bytes_(bytes) {}

  ErrorNumber WriteAt(std::uint64_t offset, std::string_view bytes) override {
    const auto at = static_cast<std::size_t>(offset);
    bytes_.resize(std::max(bytes_.size(), at + bytes.size()));
    std::memcpy(bytes_.data() + at, bytes.data(), bytes.size());
    return ErrorNumber::kNone;
  }
  ErrorNumber Close() override { return ErrorNumber::kNone; }

 private:
  std::string& bytes_;
};

}  // namespace morvex::test
