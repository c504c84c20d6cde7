// The scan with AVX2, 32 offsets at once.
#include "core/engine/matching/scan_forms.h"

namespace morvex {

#ifdef MORVEX_X86_VECTORS
namespace {

__attribute__((target("avx2"))) __m256i Load32(const std::uint8_t* bytes) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(bytes));
}

__attribute__((target("avx2,bmi,bmi2,popcnt"))) std::size_t ScanAvx2(const ScanTables& tables,
                                                                     const std::uint8_t* bytes,
                                                                     std::size_t count,
                                                                     std::uint16_t* offsets) {
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
    found += WriteOffsets(InFrontOf(count, at, kWidth, hits), at, offsets + found);
  }
  return found;
}

}  // namespace

Scan Avx2Scan() {
  const bool is_supported =
      __builtin_cpu_supports("avx2") != 0 && __builtin_cpu_supports("bmi") != 0 &&
      __builtin_cpu_supports("bmi2") != 0 && __builtin_cpu_supports("popcnt") != 0;
  return is_supported ? ScanAvx2 : nullptr;
}
#else
Scan Avx2Scan() { return nullptr; }
#endif

}  // namespace morvex
