// The scan without special instructions, by the first two bytes.
#include "core/engine/matching/scan_forms.h"

namespace morvex {
namespace {

// Tests offsets in groups. In most groups no offset passes, and one branch skips the whole group.
std::size_t ScanPairs(const ScanTables& tables, const std::uint8_t* bytes, std::size_t count,
                      std::uint16_t* offsets) {
  constexpr std::size_t kGroup = 16;
  const std::uint8_t* const pairs = tables.pairs.data();
  std::size_t found = 0;
  const auto note = [&](std::size_t at) {
    offsets[found] = static_cast<std::uint16_t>(at);
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

}  // namespace

Scan PortableScan() { return ScanPairs; }

}  // namespace morvex
