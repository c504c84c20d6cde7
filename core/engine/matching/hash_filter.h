// Rules out offsets where no literal prefix stands. A probe hashes the first bytes at an offset;
// the hash selects an entry of a table, which says whether a prefix may begin with such bytes. The
// table has beginnings of up to five lengths, and each length takes a probe of its own. A second
// table, for a hash of up to 16 bytes, can be added. The first table fits into a core's first-level
// cache unless the list is very long. Like a Bloom filter, this filter passes some offsets where no
// prefix stands, but never rules out an offset where one stands.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

namespace morvex {

// Reads 8 bytes, the first into the lowest bits.
inline std::uint64_t Load64(const std::uint8_t* bytes) {
  std::uint64_t value = 0;
  std::memcpy(&value, bytes, sizeof value);
  if constexpr (std::endian::native == std::endian::big) value = __builtin_bswap64(value);
  return value;
}

// A mask that keeps the first `count` (1 to 8) bytes of a value from Load64.
constexpr std::uint64_t FirstBytesMask(std::size_t count) {
  return ~std::uint64_t{0} >> (64 - 8 * count);
}

// Mixes all bits of the value into all bits of the result.
inline std::uint64_t Mix(std::uint64_t value) {
  __extension__ using Product = unsigned __int128;
  const Product product = static_cast<Product>(value) * 0x9E3779B97F4A7C15;
  return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}

// Beginnings of prefixes. All of these beginnings have the same length.
struct PrefixStarts {
  std::size_t bytes = 0;                // length of each, 1 to 8
  std::vector<std::uint64_t> distinct;  // as Load64 returns them
};

class HashFilter {
 public:
  // Makes a filter that passes every offset where one of `starts` stands.
  explicit HashFilter(const std::vector<PrefixStarts>& starts);

  // Adds a second table, whose probe hashes up to 16 bytes. All prefixes must be longer than 8
  // bytes; `shortest` is the length of the shortest. The second probe pays where 8 bytes alone rule
  // out too few offsets, as in texts of only four letters.
  void AddSecondProbe(const std::vector<std::string_view>& prefixes, std::size_t shortest);
  bool has_second_probe() const { return !second_.empty(); }

  // The form of the table. Callers choose between the MayHold<Form> functions once, before their
  // loop over the offsets.
  enum class Form {
    kBytes,    // starts of one length; an entry is a byte
    kBits,     // starts of one length; an entry is a bit
    kLengths,  // starts of several lengths, or none; an entry is a bit
  };
  Form form() const { return form_; }

  // Returns 1 if a prefix may stand at `bytes`, 0 if none does. Reads 8 bytes.
  template <Form kForm>
  std::uint8_t MayHold(const std::uint8_t* bytes) const {
    const std::uint64_t start = Load64(bytes);
    if constexpr (kForm == Form::kBytes) return entries_[Hash(start & masks_[0]) >> kBytesShift];
    if constexpr (kForm == Form::kBits) return Bit(start & masks_[0]);
    std::uint8_t may = 0;
    for (std::size_t length = 0; length < lengths_; ++length) may |= Bit(start & masks_[length]);
    return may;
  }

  // Returns 1 if a prefix may stand at `bytes`, 0 if none does. Reads 16 bytes. Call only if
  // has_second_probe, and only where MayHold returned 1.
  std::uint8_t PassesSecondProbe(const std::uint8_t* bytes) const {
    const std::uint64_t bit =
        Hash(Hash(Load64(bytes)) ^ (Load64(bytes + 8) & second_mask_)) >> kSecondShift;
    return second_[bit >> 3] >> (bit & 7) & 1;
  }

 private:
  static constexpr int kSecondShift = 64 - 18;
  static constexpr int kBytesShift = 64 - 15;  // the table of bytes takes 32 KiB

  static std::uint64_t Hash(std::uint64_t start) { return start * 0x9E3779B97F4A7C15; }
  std::uint8_t Bit(std::uint64_t start) const {
    const std::uint64_t bit = Hash(start) >> bits_shift_;
    return entries_[bit >> 3] >> (bit & 7) & 1;
  }

  Form form_ = Form::kLengths;
  std::size_t lengths_ = 0;
  std::array<std::uint64_t, 8> masks_{};
  int bits_shift_ = 64 - 18;
  std::vector<std::uint8_t> entries_;
  std::uint64_t second_mask_ = 0;
  std::vector<std::uint8_t> second_;
};

}  // namespace morvex
