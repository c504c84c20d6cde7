#include "core/engine/matching/hash_filter.h"

#include <algorithm>

namespace morvex {
namespace {

// The most starts of prefixes (see PrefixStarts) for a table of bytes, and for the small table of
// bits. With more starts, such a table would be too full to rule out most offsets.
constexpr std::size_t kMostInBytes = 2048;
constexpr std::size_t kMostInBits = 32768;
constexpr int kManyBitsShift = 64 - 22;

}  // namespace

HashFilter::HashFilter(const std::vector<PrefixStarts>& starts) : lengths_(starts.size()) {
  std::size_t count = 0;
  for (const PrefixStarts& each : starts) count += each.distinct.size();
  if (lengths_ == 1) form_ = count <= kMostInBytes ? Form::kBytes : Form::kBits;
  if (form_ != Form::kBytes && count > kMostInBits) bits_shift_ = kManyBitsShift;
  entries_.resize(form_ == Form::kBytes ? std::size_t{1} << (64 - kBytesShift)
                                        : std::size_t{1} << (64 - bits_shift_ - 3));
  for (std::size_t length = 0; length < lengths_; ++length) {
    masks_[length] = FirstBytesMask(starts[length].bytes);
    for (const std::uint64_t start : starts[length].distinct) {
      if (form_ == Form::kBytes) {
        entries_[Hash(start) >> kBytesShift] = 1;
      } else {
        const std::uint64_t bit = Hash(start) >> bits_shift_;
        entries_[bit >> 3] |= static_cast<std::uint8_t>(1U << (bit & 7));
      }
    }
  }
}

void HashFilter::AddSecondProbe(const std::vector<std::string_view>& prefixes,
                                std::size_t shortest) {
  second_mask_ = FirstBytesMask(std::min(shortest, std::size_t{16}) - 8);
  second_.resize(std::size_t{1} << (64 - kSecondShift - 3));
  for (const std::string_view prefix : prefixes) {
    std::array<std::uint8_t, 16> start{};
    std::copy_n(prefix.begin(), std::min(prefix.size(), start.size()), start.begin());
    const std::uint64_t bit =
        Hash(Hash(Load64(start.data())) ^ (Load64(start.data() + 8) & second_mask_)) >>
        kSecondShift;
    second_[bit >> 3] |= static_cast<std::uint8_t>(1U << (bit & 7));
  }
}

}  // namespace morvex
