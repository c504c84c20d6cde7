#include <algorithm>
#include <cstring>

#include "core/engine/matching/prefix_index.h"

namespace morvex {
namespace {

constexpr std::size_t kStepBytes = PrefixIndex::kStepBytes;

// How many bytes of a long prefix are compared in the time of one probe.
constexpr std::size_t kBytesPerProbe = 16;

// The masks of a member's bytes 1 to 8 and 9 to 16, by the number of its bytes (16 at most).
constexpr auto kMemberMasks = [] {
  std::array<std::array<std::uint64_t, 2>, 2 * kStepBytes + 1> masks{};
  for (std::size_t size = 1; size < masks.size(); ++size) {
    masks[size][0] = FirstBytesMask(std::min(size, kStepBytes));
    if (size > kStepBytes) masks[size][1] = FirstBytesMask(size - kStepBytes);
  }
  return masks;
}();

}  // namespace

// Whether the node's label stands at `bytes`. A label holds no NUL, and NULs follow the first
// `size` bytes, so a label of up to 8 bytes needs no check against `size`.
inline bool PrefixIndex::Continues(const Node& node, const std::uint8_t* bytes, std::size_t size) {
  if (node.label_size == 0) return true;
  const std::size_t begin = std::min<std::size_t>(node.label_size, kStepBytes);
  if ((Load64(bytes) & FirstBytesMask(begin)) != node.label_begin) return false;
  return node.label_size == begin ||
         (node.label_size <= size && std::memcmp(bytes, node.label, node.label_size) == 0);
}

inline bool PrefixIndex::StandsWhole(const Member& member, const std::uint8_t* bytes,
                                     std::size_t size) const {
  const std::uint32_t row = std::min(member.plain, member.attempt);
  const std::string_view prefix = Prefix(static_cast<std::int32_t>(row));
  return member.size <= size &&
         std::memcmp(bytes, prefix.data() + (prefix.size() - member.size), member.size) == 0;
}

template <class Found>
inline std::size_t PrefixIndex::CompareGroup(std::uint32_t first, const std::uint8_t* bytes,
                                             std::size_t size, Found found) const {
  const std::uint64_t begin = Load64(bytes);
  const std::uint64_t next = Load64(bytes + kStepBytes);
  std::size_t probes = 0;
  for (const Member* member = &members_[first];; ++member) {
    const auto& masks = kMemberMasks[member->short_size];
    std::uint64_t differ =
        ((begin & masks[0]) ^ member->first) | ((next & masks[1]) ^ member->second);
    if (member->is_long && differ == 0) {
      probes += member->size / kBytesPerProbe;
      differ = StandsWhole(*member, bytes, size) ? 0 : 1;
    }
    found(*member, differ == 0);
    if (member->is_last) return probes;
  }
}

template <class Found>
inline std::size_t PrefixIndex::Walk(const std::uint8_t* bytes, std::size_t size, Reached* reached,
                                     std::size_t count, Found found) const {
  std::array<Wanted, kMostReached> wanted;
  std::size_t probes = 0;
  for (;;) {
    std::size_t wants = 0;
    for (std::size_t i = 0; i < count; ++i) {
      const auto [to, at, item] = reached[i];
      const auto note = [item = item, &found](const Member& member, bool stands) {
        found(item, member, stands);
      };
      if ((to & kGroup) != 0) {
        probes += CompareGroup(to & ~kGroup, bytes + at, size - at, note);
        continue;
      }
      const Node& node = nodes_[to];
      probes += 1 + node.label_size / kBytesPerProbe;
      if (!Continues(node, bytes + at, size - at)) continue;
      const std::uint32_t behind = at + node.label_size;
      if (node.has_own) CompareGroup(node.own, bytes + behind, size - behind, note);
      const std::uint64_t ahead = Load64(bytes + behind);
      for (std::size_t length = 0; length < kLengths; ++length) {
        if ((node.begins[length] & BeginBit(ahead)) == 0) continue;
        const std::uint32_t take = node.takes[length];
        const std::uint64_t begin = ahead & FirstBytesMask(take);
        const std::uint32_t from = From(to, length);
        if (is_large_) __builtin_prefetch(&table_[Slot(begin, from)]);
        wanted[wants++] = {begin, from, behind + take, item};
      }
    }
    if (wants == 0) return probes;
    count = 0;
    for (std::size_t i = 0; i < wants; ++i) {
      const Step* const step = FindStep(wanted[i].bytes, wanted[i].from);
      if (step == nullptr) continue;
      reached[count++] = {step->to, wanted[i].at, wanted[i].item};
      Prefetch(step->to);
    }
  }
}

inline void PrefixIndex::Prefetch(std::uint32_t to) const {
  if (!is_large_) return;
  if ((to & kGroup) != 0) {
    __builtin_prefetch(&members_[to & ~kGroup]);
  } else {
    __builtin_prefetch(&nodes_[to]);
  }
}

inline std::size_t PrefixIndex::Begin(const std::uint8_t* bytes, const std::uint16_t* offsets,
                                      std::size_t count, Reached* reached) const {
  const Node& root = nodes_.front();
  std::size_t found = 0;
  if (root.label_size > 0) {  // all prefixes begin alike
    for (std::uint32_t i = 0; i < count; ++i) reached[i] = {0, offsets[i], i};
    return count;
  }
  for (std::size_t length = 0; length < kLengths; ++length) {
    if (root.takes[length] == 0) continue;
    const std::uint32_t take = root.takes[length];
    const std::uint64_t mask = FirstBytesMask(take);
    const std::uint32_t from = From(0, length);
    if (is_large_) {
      for (std::size_t i = 0; i < count; ++i) {
        __builtin_prefetch(&table_[Slot(Load64(bytes + offsets[i]) & mask, from)]);
      }
    }
    for (std::size_t i = 0; i < count; ++i) {
      const Step* const step = FindStep(Load64(bytes + offsets[i]) & mask, from);
      if (step == nullptr) continue;
      reached[found++] = {step->to, offsets[i] + take, static_cast<std::uint32_t>(i)};
      Prefetch(step->to);
    }
  }
  return found;
}

template <bool kAttempts>
inline std::int32_t PrefixIndex::Best::Row() const {
  if constexpr (!kAttempts) return static_cast<std::int32_t>(plain);
  if (plain < attempt) return static_cast<std::int32_t>(plain);
  if (attempt == kNoRow) return kNone;
  if (plain == kNoRow && attempt + 1 == behind_attempts) return OnlyAttempt(attempt);
  return kUndecided;
}

// Works without a branch, which could not be predicted.
template <bool kAttempts>
inline void PrefixIndex::Best::Note(const Member& member, bool stands) {
  const std::uint32_t missing = stands ? 0 : kNoRow;
  plain = std::min(plain, member.plain | missing);
  if constexpr (!kAttempts) return;
  attempt = std::min(attempt, member.attempt | missing);
  behind_attempts = std::max(behind_attempts, (member.attempt + 1) & ~missing);
}

std::size_t PrefixIndex::LookUp(const std::uint8_t* bytes, std::size_t size,
                                const std::uint16_t* offsets, std::size_t count,
                                std::int32_t* found) const {
  if (only_step_ > 0) {
    return has_attempts_ ? LookUpOneStep<true>(bytes, size, offsets, count, found)
                         : LookUpOneStep<false>(bytes, size, offsets, count, found);
  }
  std::array<Reached, kMostReached> reached;
  std::array<Best, kBatch> best;
  for (std::size_t i = 0; i < count; ++i) best[i] = {};
  const std::size_t begun = Begin(bytes, offsets, count, reached.data());
  const std::size_t probes = Walk(bytes, size, reached.data(), begun,
                                  [&best](std::uint32_t item, const Member& member, bool stands) {
                                    best[item].Note<true>(member, stands);
                                  });
  for (std::size_t i = 0; i < count; ++i) {
    found[i] = best[i].Row<true>();
  }
  return probes > count ? probes - count : 0;
}

// LookUp for an index with an only_step_, where every step from the root leads to a group.
template <bool kAttempts>
inline std::size_t PrefixIndex::LookUpOneStep(const std::uint8_t* bytes, std::size_t size,
                                              const std::uint16_t* offsets, std::size_t count,
                                              std::int32_t* found) const {
  const std::uint64_t mask = FirstBytesMask(only_step_);
  std::size_t probes = 0;
  std::array<std::uint64_t, 2> last{};
  for (std::size_t i = 0; i < count; ++i) {
    const std::uint8_t* const start = bytes + offsets[i];
    const std::array<std::uint64_t, 2> here = {Load64(start), Load64(start + kStepBytes)};
    if (i > 0 && here == last && prefixes_are_short_) {  // for example, in a run of one byte
      found[i] = found[i - 1];
      continue;
    }
    last = here;
    const Step* const step = FindStep(here[0] & mask, only_from_);
    Best best;
    if (step != nullptr) {
      probes += CompareGroup(
          step->to & ~kGroup, start + only_step_, size - offsets[i] - only_step_,
          [&best](const Member& member, bool stands) { best.Note<kAttempts>(member, stands); });
    }
    found[i] = best.Row<kAttempts>();
  }
  return probes;
}

std::int32_t PrefixIndex::Find(const std::uint8_t* bytes, std::size_t size,
                               std::vector<std::int32_t>& attempts) const {
  std::array<Reached, kMostReached> reached;
  const std::uint16_t here = 0;
  std::uint32_t plain = kNoRow;
  Walk(bytes, size, reached.data(), Begin(bytes, &here, 1, reached.data()),
       [&plain, &attempts](std::uint32_t, const Member& member, bool stands) {
         if (!stands) return;
         plain = std::min(plain, member.plain);
         if (member.attempt != kNoRow)
           attempts.push_back(static_cast<std::int32_t>(member.attempt));
       });
  const auto first_plain = static_cast<std::int32_t>(plain);
  if (first_plain != kNone) {
    attempts.erase(std::remove_if(attempts.begin(), attempts.end(),
                                  [first_plain](std::int32_t row) { return row > first_plain; }),
                   attempts.end());
  }
  if (attempts.size() > 1) std::sort(attempts.begin(), attempts.end());
  return first_plain;
}

}  // namespace morvex
