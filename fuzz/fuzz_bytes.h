// Hands out the fuzzer's bytes one by one or several at once, and ends the program when an input
// shows a mistake.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace morvex::test {

class FuzzBytes {
 public:
  FuzzBytes(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

  std::size_t left() const { return size_; }
  std::uint8_t Next() {
    if (size_ == 0) return 0;
    --size_;
    return *data_++;
  }
  std::string Take(std::size_t count) {
    count = std::min(count, size_);
    std::string taken(reinterpret_cast<const char*>(data_), count);
    data_ += count;
    size_ -= count;
    return taken;
  }
  std::string TakeAll() { return Take(size_); }

 private:
  const std::uint8_t* data_;
  std::size_t size_;
};

// Bytes as a person can read them.
inline std::string Shown(const std::string& bytes) {
  constexpr const char* kDigits = "0123456789ABCDEF";
  std::string shown;
  for (const char byte : bytes) {
    const auto code = static_cast<unsigned char>(byte);
    if (code >= 0x20 && code < 0x7F) {
      shown += byte;
    } else {
      shown += std::string("\\x") + kDigits[code / 16] + kDigits[code % 16];
    }
  }
  return shown;
}

// Prints `what` and ends the program unless `holds` is true.
inline void Require(bool holds, const std::string& what) {
  if (holds) return;
  std::fprintf(stderr, "%s\n", what.c_str());
  std::abort();
}

}  // namespace morvex::test
