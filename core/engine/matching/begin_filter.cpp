#include "core/engine/matching/begin_filter.h"

#include <algorithm>

namespace morvex {
namespace {

// So many beginnings leave a table of bytes empty enough; so many more, one of bits.
constexpr std::size_t kMostInBytes = 2048;
constexpr std::size_t kMostInBits = 32768;
constexpr int kManyBitsShift = 64 - 22;

}  // namespace

BeginFilter::BeginFilter(const std::vector<KeyBegins>& begins) : lengths_(begins.size()) {
  std::size_t count = 0;
  for (const KeyBegins& each : begins) count += each.distinct.size();
  if (lengths_ == 1) form_ = count <= kMostInBytes ? Form::kBytes : Form::kBits;
  if (form_ != Form::kBytes && count > kMostInBits) bits_shift_ = kManyBitsShift;
  entries_.resize(form_ == Form::kBytes ? std::size_t{1} << (64 - kBytesShift)
                                        : std::size_t{1} << (64 - bits_shift_ - 3));
  for (std::size_t length = 0; length < lengths_; ++length) {
    masks_[length] = FirstBytesMask(begins[length].bytes);
    for (const std::uint64_t begin : begins[length].distinct) {
      if (form_ == Form::kBytes) {
        entries_[Hash(begin) >> kBytesShift] = 1;
      } else {
        const std::uint64_t bit = Hash(begin) >> bits_shift_;
        entries_[bit >> 3] |= static_cast<std::uint8_t>(1U << (bit & 7));
      }
    }
  }
}

void BeginFilter::LookFurther(const std::vector<std::string_view>& keys, std::size_t shortest) {
  further_mask_ = FirstBytesMask(std::min(shortest, std::size_t{16}) - 8);
  further_.resize(std::size_t{1} << (64 - kFurtherShift - 3));
  for (const std::string_view key : keys) {
    std::array<std::uint8_t, 16> begin{};
    std::copy_n(key.begin(), std::min(key.size(), begin.size()), begin.begin());
    const std::uint64_t bit =
        Hash(Hash(Load64(begin.data())) ^ (Load64(begin.data() + 8) & further_mask_)) >>
        kFurtherShift;
    further_[bit >> 3] |= static_cast<std::uint8_t>(1U << (bit & 7));
  }
}

}  // namespace morvex
