// Says of a place that no key begins there, by hashes of the first bytes: one look into a table
// that stays in a core's first cache for all but very long lists, and for long keys a second one.
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

// Leaves the first `count` (1 to 8) bytes of a Load64.
constexpr std::uint64_t FirstBytesMask(std::size_t count) {
  return ~std::uint64_t{0} >> (64 - 8 * count);
}

// Mixes all bits of the value into all bits of the result.
inline std::uint64_t Mix(std::uint64_t value) {
  __extension__ using Product = unsigned __int128;
  const Product product = static_cast<Product>(value) * 0x9E3779B97F4A7C15;
  return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}

// Beginnings of keys that have the same number of bytes.
struct KeyBegins {
  std::size_t bytes = 0;                // 1 to 8
  std::vector<std::uint64_t> distinct;  // as Load64 gives them
};

class BeginFilter {
 public:
  // A key stands only where one of the beginnings does.
  explicit BeginFilter(const std::vector<KeyBegins>& begins);

  // For keys that all have more than 8 bytes: looks at the bytes behind them too. `shortest` is the
  // size of the shortest.
  void LookFurther(const std::vector<std::string_view>& keys, std::size_t shortest);
  bool looks_further() const { return !further_.empty(); }

  // How the table is looked at, for loops that settle it in front of them.
  enum class Form {
    kBytes,    // beginnings of one length, an entry is a byte
    kBits,     // the same, an entry is a bit
    kLengths,  // beginnings of several lengths, or none
  };
  Form form() const { return form_; }

  // 1 where a key may begin, else 0. Never 0 where one does. Reads 8 bytes.
  template <Form kForm>
  std::uint8_t MayHold(const std::uint8_t* bytes) const {
    const std::uint64_t begin = Load64(bytes);
    if constexpr (kForm == Form::kBytes) return entries_[Hash(begin & masks_[0]) >> kBytesShift];
    if constexpr (kForm == Form::kBits) return Bit(begin & masks_[0]);
    std::uint8_t may = 0;
    for (std::size_t length = 0; length < lengths_; ++length) may |= Bit(begin & masks_[length]);
    return may;
  }

  // The same by up to 16 bytes, only when it looks further and where MayHold gave 1.
  std::uint8_t MayGoOn(const std::uint8_t* bytes) const {
    const std::uint64_t bit =
        Hash(Hash(Load64(bytes)) ^ (Load64(bytes + 8) & further_mask_)) >> kFurtherShift;
    return further_[bit >> 3] >> (bit & 7) & 1;
  }

 private:
  static constexpr int kFurtherShift = 64 - 18;
  static constexpr int kBytesShift = 64 - 15;  // 32 KiB, as are the bits of most lists

  static std::uint64_t Hash(std::uint64_t begin) { return begin * 0x9E3779B97F4A7C15; }
  std::uint8_t Bit(std::uint64_t begin) const {
    const std::uint64_t bit = Hash(begin) >> bits_shift_;
    return entries_[bit >> 3] >> (bit & 7) & 1;
  }

  Form form_ = Form::kLengths;
  std::size_t lengths_ = 0;
  std::array<std::uint64_t, 8> masks_{};
  int bits_shift_ = 64 - 18;
  std::vector<std::uint8_t> entries_;
  std::uint64_t further_mask_ = 0;
  std::vector<std::uint8_t> further_;
};

}  // namespace morvex
