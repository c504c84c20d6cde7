// The scan with SSSE3, 16 offsets at once.
#include "core/engine/matching/scan_forms.h"

namespace morvex {

#ifdef MORVEX_X86_VECTORS
namespace {

__attribute__((target("ssse3,popcnt"))) std::size_t ScanSsse3(const ScanTables& tables,
                                                              const std::uint8_t* bytes,
                                                              std::size_t count,
                                                              std::uint16_t* offsets) {
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
    found += WriteOffsets(InFrontOf(count, at, kWidth, hits), at, offsets + found);
  }
  return found;
}

}  // namespace

Scan Ssse3Scan() {
  const bool is_supported =
      __builtin_cpu_supports("ssse3") != 0 && __builtin_cpu_supports("popcnt") != 0;
  return is_supported ? ScanSsse3 : nullptr;
}
#else
Scan Ssse3Scan() { return nullptr; }
#endif

}  // namespace morvex
