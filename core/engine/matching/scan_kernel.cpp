#include "core/engine/matching/scan_kernel.h"

#include <bit>
#include <cstring>

#if defined(__x86_64__) && defined(__GNUC__)
#define MORVEX_X86_KERNELS 1
#include <immintrin.h>
#endif

namespace morvex {
namespace {

// Two bytes as the table of pairs counts them.
inline std::size_t PairAt(const std::uint8_t* bytes) {
  std::uint16_t pair = 0;
  std::memcpy(&pair, bytes, sizeof pair);
  return pair;
}

// Most groups of places hold none at all, which is one branch for the group.
std::size_t ScanPairs(const ScanTables& tables, const std::uint8_t* bytes, std::size_t count,
                      std::uint16_t* places) {
  constexpr std::size_t kGroup = 16;
  const std::uint8_t* const pairs = tables.pairs.data();
  std::size_t found = 0;
  const auto note = [&](std::size_t at) {
    places[found] = static_cast<std::uint16_t>(at);
    found += pairs[PairAt(bytes + at)];
  };
  std::size_t at = 0;
  for (; at + kGroup <= count; at += kGroup) {
    std::uint8_t any = 0;
    for (std::size_t i = 0; i < kGroup; ++i) any |= pairs[PairAt(bytes + at + i)];
    if (any == 0) continue;
    for (std::size_t i = 0; i < kGroup; ++i) note(at + i);
  }
  for (; at < count; ++at) note(at);
  return found;
}

#ifdef MORVEX_X86_KERNELS

// Notes a place for every bit of `hits`. Two are noted whether they are there or not: that costs
// less than a branch that nobody can foretell.
inline std::size_t Note(std::uint32_t hits, std::size_t at, std::uint16_t* places) {
  // The upper bit keeps the value from being zero, for which bits are counted in another way.
  std::uint64_t bits = hits | std::uint64_t{1} << 63;
  const auto take = [at, &bits] {
    const auto bit = static_cast<std::size_t>(std::countr_zero(bits));
    bits &= (bits - 1) | std::uint64_t{1} << 63;
    return static_cast<std::uint16_t>(at + bit);
  };
  const auto count = static_cast<std::size_t>(std::popcount(hits));
  places[0] = take();
  places[1] = take();
  for (std::size_t i = 2; i < count; ++i) places[i] = take();
  return count;
}

// Leaves the bits of the places in front of `count`.
inline std::uint32_t InFrontOf(std::size_t count, std::size_t at, std::size_t width,
                               std::uint32_t hits) {
  return at + width <= count ? hits : hits & ((std::uint32_t{1} << (count - at)) - 1);
}

__attribute__((target("ssse3"))) __m128i Load16(const std::uint8_t* bytes) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
}

__attribute__((target("ssse3,popcnt"))) std::size_t ScanSsse3(const ScanTables& tables,
                                                              const std::uint8_t* bytes,
                                                              std::size_t count,
                                                              std::uint16_t* places) {
  constexpr std::size_t kWidth = 16;
  const __m128i nibble = _mm_set1_epi8(15);
  __m128i low[ScanTables::kDepth];
  __m128i high[ScanTables::kDepth];
  for (std::size_t depth = 0; depth < ScanTables::kDepth; ++depth) {
    low[depth] = Load16(tables.low[depth].data());
    high[depth] = Load16(tables.high[depth].data());
  }
  std::size_t found = 0;
  for (std::size_t at = 0; at < count; at += kWidth) {
    __m128i buckets = _mm_set1_epi8(-1);
    for (std::size_t depth = 0; depth < ScanTables::kDepth; ++depth) {
      const __m128i value = Load16(bytes + at + depth);
      const __m128i upper = _mm_and_si128(_mm_srli_epi16(value, 4), nibble);
      buckets = _mm_and_si128(
          buckets, _mm_and_si128(_mm_shuffle_epi8(low[depth], _mm_and_si128(value, nibble)),
                                 _mm_shuffle_epi8(high[depth], upper)));
    }
    const int none = _mm_movemask_epi8(_mm_cmpeq_epi8(buckets, _mm_setzero_si128()));
    const std::uint32_t hits = ~static_cast<std::uint32_t>(none) & 0xFFFF;
    found += Note(InFrontOf(count, at, kWidth, hits), at, places + found);
  }
  return found;
}

__attribute__((target("avx2"))) __m256i Load32(const std::uint8_t* bytes) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(bytes));
}

__attribute__((target("avx2,bmi,bmi2,popcnt"))) std::size_t ScanAvx2(const ScanTables& tables,
                                                                     const std::uint8_t* bytes,
                                                                     std::size_t count,
                                                                     std::uint16_t* places) {
  constexpr std::size_t kWidth = 32;
  const __m256i nibble = _mm256_set1_epi8(15);
  __m256i low[ScanTables::kDepth];
  __m256i high[ScanTables::kDepth];
  for (std::size_t depth = 0; depth < ScanTables::kDepth; ++depth) {
    low[depth] = _mm256_broadcastsi128_si256(Load16(tables.low[depth].data()));
    high[depth] = _mm256_broadcastsi128_si256(Load16(tables.high[depth].data()));
  }
  std::size_t found = 0;
  for (std::size_t at = 0; at < count; at += kWidth) {
    __m256i buckets = _mm256_set1_epi8(-1);
    for (std::size_t depth = 0; depth < ScanTables::kDepth; ++depth) {
      const __m256i value = Load32(bytes + at + depth);
      const __m256i upper = _mm256_and_si256(_mm256_srli_epi16(value, 4), nibble);
      buckets = _mm256_and_si256(
          buckets,
          _mm256_and_si256(_mm256_shuffle_epi8(low[depth], _mm256_and_si256(value, nibble)),
                           _mm256_shuffle_epi8(high[depth], upper)));
    }
    const int none = _mm256_movemask_epi8(_mm256_cmpeq_epi8(buckets, _mm256_setzero_si256()));
    const std::uint32_t hits = ~static_cast<std::uint32_t>(none);
    found += Note(InFrontOf(count, at, kWidth, hits), at, places + found);
  }
  return found;
}

#endif

}  // namespace

bool IsSupported(Kernel kernel) {
#ifdef MORVEX_X86_KERNELS
  if (kernel == Kernel::kAvx2) {
    return __builtin_cpu_supports("avx2") != 0 && __builtin_cpu_supports("bmi") != 0 &&
           __builtin_cpu_supports("bmi2") != 0 && __builtin_cpu_supports("popcnt") != 0;
  }
  if (kernel == Kernel::kSsse3) {
    return __builtin_cpu_supports("ssse3") != 0 && __builtin_cpu_supports("popcnt") != 0;
  }
#endif
  return kernel == Kernel::kPortable;
}

Kernel BestKernel() {
  for (const Kernel kernel : {Kernel::kAvx2, Kernel::kSsse3}) {
    if (IsSupported(kernel)) return kernel;
  }
  return Kernel::kPortable;
}

Scan ScanFor(Kernel kernel) {
#ifdef MORVEX_X86_KERNELS
  if (kernel == Kernel::kAvx2) return ScanAvx2;
  if (kernel == Kernel::kSsse3) return ScanSsse3;
#endif
  return ScanPairs;
}

namespace {

// Deals keys out so that those in one bucket begin alike: the fewer bytes meet in a bucket, the
// fewer places pass it. Keys that are too short for the whole depth let every byte pass behind
// their end, so they keep to buckets of their own.
class Dealer {
 public:
  explicit Dealer(const std::vector<std::string_view>& keys) {
    std::string_view last;
    for (const std::string_view key : keys) {
      const std::string_view begin = key.substr(0, ScanTables::kDepth);
      if (begin.size() < ScanTables::kDepth) {
        has_short_[begin.size()] = true;
      } else if (begin != last) {
        ++beginnings_;
        last = begin;
      }
    }
    first_long_ = (has_short_[1] ? 1U : 0U) + (has_short_[2] ? 1U : 0U);
  }

  // For the keys in the same order.
  std::size_t BucketOf(std::string_view key) {
    const std::string_view begin = key.substr(0, ScanTables::kDepth);
    if (begin.size() < ScanTables::kDepth) return begin.size() == 2 && has_short_[1] ? 1 : 0;
    if (begin != last_) {
      last_ = begin;
      ++dealt_;
    }
    return first_long_ + (dealt_ - 1) * (ScanTables::kBuckets - first_long_) / beginnings_;
  }

 private:
  std::array<bool, ScanTables::kDepth> has_short_{};
  std::size_t first_long_ = 0;
  std::size_t beginnings_ = 0;
  std::size_t dealt_ = 0;
  std::string_view last_;
};

}  // namespace

ScanTables::ScanTables(const std::vector<std::string_view>& keys, Kernel kernel) {
  if (kernel == Kernel::kPortable) {
    pairs.resize(std::size_t{1} << 16);
    for (const std::string_view key : keys) {
      std::array<std::uint8_t, 2> pair = {static_cast<std::uint8_t>(key[0]), 0};
      for (int second = 0; second < 256; ++second) {
        pair[1] = static_cast<std::uint8_t>(key.size() > 1 ? key[1] : second);
        pairs[PairAt(pair.data())] = 1;
      }
    }
    return;
  }
  Dealer dealer(keys);
  for (const std::string_view key : keys) {
    const auto bit = static_cast<std::uint8_t>(1U << dealer.BucketOf(key));
    for (std::size_t depth = 0; depth < kDepth; ++depth) {
      if (depth < key.size()) {
        const auto byte = static_cast<std::uint8_t>(key[depth]);
        low[depth][byte & 15] |= bit;
        high[depth][byte >> 4] |= bit;
      } else {
        for (std::uint8_t& buckets : low[depth]) buckets |= bit;
        for (std::uint8_t& buckets : high[depth]) buckets |= bit;
      }
    }
  }
}

}  // namespace morvex
