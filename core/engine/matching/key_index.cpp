#include "core/engine/matching/key_index.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <iterator>

namespace morvex {
namespace {

constexpr std::size_t kStepBytes = sizeof(std::uint64_t);  // the most of one step
constexpr std::size_t kGroupSize = 8;                      // so few rows are compared one by one

// For the sake of fewer look-ups a group may be so large.
constexpr std::size_t kLargeGroupSize = 24;

constexpr std::size_t kCache = std::size_t{256} << 10;

// Behind the table's last slot there is room for those that did not find theirs free.
constexpr std::size_t kSpareSlots = 64;

// So many bytes of a long key are compared in the time of one look-up.
constexpr std::size_t kBytesOfALook = 16;

// Of a member's bytes 1 to 8 and 9 to 16, by the number of bytes.
constexpr auto kMemberMasks = [] {
  std::array<std::array<std::uint64_t, 2>, 2 * kStepBytes + 1> masks{};
  for (std::size_t size = 1; size < masks.size(); ++size) {
    masks[size][0] = FirstBytesMask(std::min(size, kStepBytes));
    if (size > kStepBytes) masks[size][1] = FirstBytesMask(size - kStepBytes);
  }
  return masks;
}();

const std::uint8_t* Bytes(std::string_view text) {
  return reinterpret_cast<const std::uint8_t*>(text.data());
}

// At most 8 bytes of the key from `depth` on, as Load64 gives them.
std::uint64_t KeyBytes(std::string_view key, std::size_t depth, std::size_t count = kStepBytes) {
  std::uint64_t value = 0;
  for (std::size_t i = depth < key.size() ? std::min(count, key.size() - depth) : 0; i > 0; --i) {
    value = value << 8 | static_cast<std::uint8_t>(key[depth + i - 1]);
  }
  return value;
}

// The number of the steps for keys that go on for `rest` (1 or more) bytes.
std::size_t LengthOf(std::size_t rest) {
  if (rest >= kStepBytes) return 4;
  return rest >= 4 ? 3 : rest - 1;
}

}  // namespace

KeyIndex::KeyIndex(const std::vector<CompiledRow>& rows) : rows_(rows) {
  OrderRows();
  nodes_.emplace_back();
  std::vector<Waiting> waiting;
  if (!rows_by_key_.empty()) waiting.push_back({rows_by_key_, 0, 0});
  for (std::size_t next = 0; next < waiting.size(); ++next) {
    const Waiting here = std::move(waiting[next]);
    FillNode(here, waiting);
  }
  FillTable();
  MakeFilter();
}

// Sorts the rows and drops those that an earlier plain row forestalls: its key is the same or a
// beginning of theirs.
void KeyIndex::OrderRows() {
  Members sorted(rows_.size());
  for (std::size_t i = 0; i < sorted.size(); ++i) sorted[i] = static_cast<std::int32_t>(i);
  std::sort(sorted.begin(), sorted.end(),
            [this](std::int32_t a, std::int32_t b) { return IsInFront(a, b); });
  struct Prefix {
    std::string_view key;
    std::int32_t first_plain = kNone;  // of this key and all beginnings of it
  };
  std::vector<Prefix> prefixes;
  for (const std::int32_t row : sorted) {
    while (!prefixes.empty() && !Key(row).starts_with(prefixes.back().key)) prefixes.pop_back();
    std::int32_t first_plain = prefixes.empty() ? kNone : prefixes.back().first_plain;
    if (first_plain != kNone && first_plain < row) continue;
    if (IsPlain(row)) first_plain = row;
    prefixes.push_back({Key(row), first_plain});
    rows_by_key_.push_back(row);
  }
}

void KeyIndex::FillNode(const Waiting& here, std::vector<Waiting>& waiting) {
  const std::string_view first = Key(here.members.front());
  const std::string_view last = Key(here.members.back());
  std::size_t depth = here.depth;
  if (here.members.size() > kGroupSize) {
    while (depth < first.size() && depth < last.size() && first[depth] == last[depth]) ++depth;
  }
  Node node;
  node.label = Bytes(first) + here.depth;
  node.label_size = static_cast<std::uint32_t>(depth - here.depth);
  node.label_begin = KeyBytes(first, here.depth, node.label_size);
  Members own;
  std::array<Members, kLengths> longer;
  for (const std::int32_t row : here.members) {
    const std::size_t rest = Key(row).size() - depth;
    (rest == 0 ? own : longer[LengthOf(rest)]).push_back(row);
  }
  if (!own.empty()) {
    node.has_own = true;
    node.own = AddGroup(own, depth);
  }
  nodes_[here.node] = node;
  const std::array<bool, kLengths> joined = Join(longer, depth);
  for (std::size_t length = 0; length < kLengths; ++length) {
    if (longer[length].empty()) continue;
    AddSteps(longer[length], depth, length, joined[length] ? kLargeGroupSize : kGroupSize,
             here.node, waiting);
  }
}

std::size_t KeyIndex::Shortest(const Members& members) const {
  std::size_t shortest = ~std::size_t{0};
  for (const std::int32_t row : members) shortest = std::min(shortest, Key(row).size());
  return shortest;
}

// Steps of several lengths cost a look-up each. So those that would take more bytes are joined with
// those that take fewer where all of them then lead to groups. Were it allowed that some lead to
// nodes, long keys would be under way behind short steps too, and a place could have more steps to
// look for than there is room. Gives which lengths others have joined.
std::array<bool, KeyIndex::kLengths> KeyIndex::Join(std::array<Members, kLengths>& by_length,
                                                    std::size_t depth) const {
  std::array<bool, kLengths> joined{};
  for (std::size_t length = kLengths - 1; length > 0; --length) {
    std::size_t shorter = length;
    while (shorter > 0 && by_length[shorter - 1].empty()) --shorter;
    if (shorter == 0 || by_length[length].empty()) continue;
    Members& less = by_length[shorter - 1];
    Members all;
    std::merge(less.begin(), less.end(), by_length[length].begin(), by_length[length].end(),
               std::back_inserter(all),
               [this](std::int32_t a, std::int32_t b) { return IsInFront(a, b); });
    const std::size_t take = Shortest(less) - depth;
    std::size_t largest = 0;
    for (std::size_t at = 0, end = 0; at < all.size(); at = end) {
      end = EndOfStep(all, at, depth, take);
      largest = std::max(largest, end - at);
    }
    if (largest > kLargeGroupSize) continue;
    less = std::move(all);
    by_length[length].clear();
    joined[shorter - 1] = true;
  }
  return joined;
}

// Of the members, which are ordered by key, behind the last that goes on with the same bytes.
std::size_t KeyIndex::EndOfStep(const Members& members, std::size_t at, std::size_t depth,
                                std::size_t take) const {
  const std::uint64_t taken = KeyBytes(Key(members[at]), depth, take);
  std::size_t end = at + 1;
  while (end < members.size() && KeyBytes(Key(members[end]), depth, take) == taken) ++end;
  return end;
}

void KeyIndex::AddSteps(const Members& members, std::size_t depth, std::size_t length,
                        std::size_t group_size, std::uint32_t node, std::vector<Waiting>& waiting) {
  const std::size_t take = std::min(kStepBytes, Shortest(members) - depth);
  nodes_[node].takes[length] = static_cast<std::uint8_t>(take);
  for (std::size_t at = 0, end = 0; at < members.size(); at = end) {
    const std::uint64_t taken = KeyBytes(Key(members[at]), depth, take);
    nodes_[node].begins[length] |= BeginBit(taken);
    end = EndOfStep(members, at, depth, take);
    Members next(members.begin() + static_cast<std::ptrdiff_t>(at),
                 members.begin() + static_cast<std::ptrdiff_t>(end));
    std::uint32_t to = 0;
    if (next.size() <= group_size) {
      to = kGroup | AddGroup(next, depth + take);
    } else {
      to = static_cast<std::uint32_t>(nodes_.size());
      nodes_.emplace_back();
      waiting.push_back({std::move(next), depth + take, to});
    }
    steps_.push_back({taken, From(node, length), to});
  }
}

void KeyIndex::MakeFilter() {
  std::array<Members, kLengths> by_length;
  for (const std::int32_t row : rows_by_key_) by_length[LengthOf(Key(row).size())].push_back(row);
  std::vector<KeyBegins> begins;
  for (const Members& members : by_length) {
    if (members.empty()) continue;
    const std::size_t take = std::min(kStepBytes, Shortest(members));
    begins.push_back({take, {}});
    for (std::size_t at = 0; at < members.size(); at = EndOfStep(members, at, 0, take)) {
      begins.back().distinct.push_back(KeyBytes(Key(members[at]), 0, take));
    }
  }
  filter_ = BeginFilter(begins);
  const std::size_t shortest = Shortest(rows_by_key_);
  if (rows_by_key_.empty() || shortest <= kStepBytes) return;
  std::vector<std::string_view> keys;
  keys.reserve(rows_by_key_.size());
  for (const std::int32_t row : rows_by_key_) keys.push_back(Key(row));
  filter_.LookFurther(keys, shortest);
}

std::uint32_t KeyIndex::AddGroup(const Members& members, std::size_t depth) {
  const auto first = static_cast<std::uint32_t>(members_.size());
  for (const std::int32_t row : members) {
    const std::string_view key = Key(row);
    Member member;
    member.size = static_cast<std::uint32_t>(key.size() - depth);
    member.first = KeyBytes(key, depth);
    member.second = KeyBytes(key, depth + kStepBytes);
    member.short_size =
        static_cast<std::uint8_t>(std::min<std::size_t>(member.size, 2 * kStepBytes));
    member.is_long = member.size > 2 * kStepBytes;
    has_attempts_ = has_attempts_ || !IsPlain(row);
    (IsPlain(row) ? member.plain : member.attempt) = static_cast<std::uint32_t>(row);
    members_.push_back(member);
  }
  members_.back().is_last = true;
  return first;
}

void KeyIndex::FillTable() {
  const auto bits = static_cast<int>(std::bit_width(steps_.size() * 2 + 1));
  const std::size_t size = std::size_t{1} << bits;
  table_shift_ = 64 - bits;
  table_.resize(size + kSpareSlots);
  for (const Step& step : steps_) {
    std::size_t slot = Slot(step.bytes, step.from);
    while (table_[slot].from != kFree) {
      // The last slot stays free: it ends every search.
      if (++slot + 1 == table_.size()) table_.emplace_back();
    }
    table_[slot] = step;
  }
  std::vector<Step>().swap(steps_);
  const Node& root = nodes_.front();
  if (nodes_.size() == 1 && root.label_size == 0 && !root.has_own) {
    for (std::size_t length = 0; length < kLengths; ++length) {
      if (root.takes[length] == 0) continue;
      only_step_ = only_from_ == kFree ? root.takes[length] : 0;
      only_from_ = From(0, length);
    }
  }
  keys_are_short_ = std::all_of(rows_by_key_.begin(), rows_by_key_.end(), [this](std::int32_t row) {
    return Key(row).size() <= 2 * kStepBytes;
  });
  is_large_ = size * sizeof(Step) + members_.size() * sizeof(Member) > kCache;
}

// Whether the node's label stands at `bytes`. No label holds a NUL, so a short one needs no look at
// the size.
inline bool KeyIndex::Continues(const Node& node, const std::uint8_t* bytes, std::size_t size) {
  if (node.label_size == 0) return true;
  const std::size_t begin = std::min<std::size_t>(node.label_size, kStepBytes);
  if ((Load64(bytes) & FirstBytesMask(begin)) != node.label_begin) return false;
  return node.label_size == begin ||
         (node.label_size <= size && std::memcmp(bytes, node.label, node.label_size) == 0);
}

inline bool KeyIndex::GoesOn(const Member& member, const std::uint8_t* bytes,
                             std::size_t size) const {
  const std::uint32_t row = std::min(member.plain, member.attempt);
  const std::string_view key = Key(static_cast<std::int32_t>(row));
  return member.size <= size &&
         std::memcmp(bytes, key.data() + (key.size() - member.size), member.size) == 0;
}

template <class Found>
inline std::size_t KeyIndex::LookAtGroup(std::uint32_t first, const std::uint8_t* bytes,
                                         std::size_t size, Found found) const {
  const std::uint64_t begin = Load64(bytes);
  const std::uint64_t next = Load64(bytes + kStepBytes);
  std::size_t looks = 0;
  for (const Member* member = &members_[first];; ++member) {
    const auto& masks = kMemberMasks[member->short_size];
    std::uint64_t differ =
        ((begin & masks[0]) ^ member->first) | ((next & masks[1]) ^ member->second);
    if (member->is_long && differ == 0) {
      looks += member->size / kBytesOfALook;
      differ = GoesOn(*member, bytes, size) ? 0 : 1;
    }
    found(*member, differ == 0);
    if (member->is_last) return looks;
  }
}

template <class Found>
inline std::size_t KeyIndex::Walk(const std::uint8_t* bytes, std::size_t size, Reached* reached,
                                  std::size_t count, Found found) const {
  std::array<Wanted, kMostReached> wanted;
  std::size_t looks = 0;
  for (;;) {
    std::size_t wants = 0;
    for (std::size_t i = 0; i < count; ++i) {
      const auto [to, at, place] = reached[i];
      const auto note = [place = place, &found](const Member& member, bool stands) {
        found(place, member, stands);
      };
      if ((to & kGroup) != 0) {
        looks += LookAtGroup(to & ~kGroup, bytes + at, size - at, note);
        continue;
      }
      const Node& node = nodes_[to];
      looks += 1 + node.label_size / kBytesOfALook;
      if (!Continues(node, bytes + at, size - at)) continue;
      const std::uint32_t behind = at + node.label_size;
      if (node.has_own) LookAtGroup(node.own, bytes + behind, size - behind, note);
      const std::uint64_t ahead = Load64(bytes + behind);
      for (std::size_t length = 0; length < kLengths; ++length) {
        if ((node.begins[length] & BeginBit(ahead)) == 0) continue;
        const std::uint32_t take = node.takes[length];
        const std::uint64_t begin = ahead & FirstBytesMask(take);
        const std::uint32_t from = From(to, length);
        if (is_large_) __builtin_prefetch(&table_[Slot(begin, from)]);
        wanted[wants++] = {begin, from, behind + take, place};
      }
    }
    if (wants == 0) return looks;
    count = 0;
    for (std::size_t i = 0; i < wants; ++i) {
      const Step* const step = FindStep(wanted[i].bytes, wanted[i].from);
      if (step == nullptr) continue;
      reached[count++] = {step->to, wanted[i].at, wanted[i].place};
      Prefetch(step->to);
    }
  }
}

inline void KeyIndex::Prefetch(std::uint32_t to) const {
  if (!is_large_) return;
  if ((to & kGroup) != 0) {
    __builtin_prefetch(&members_[to & ~kGroup]);
  } else {
    __builtin_prefetch(&nodes_[to]);
  }
}

inline std::size_t KeyIndex::Begin(const std::uint8_t* bytes, const std::uint16_t* places,
                                   std::size_t count, Reached* reached) const {
  const Node& root = nodes_.front();
  std::size_t found = 0;
  if (root.label_size > 0) {  // all keys begin alike
    for (std::uint32_t i = 0; i < count; ++i) reached[i] = {0, places[i], i};
    return count;
  }
  for (std::size_t length = 0; length < kLengths; ++length) {
    if (root.takes[length] == 0) continue;
    const std::uint32_t take = root.takes[length];
    const std::uint64_t mask = FirstBytesMask(take);
    const std::uint32_t from = From(0, length);
    if (is_large_) {
      for (std::size_t i = 0; i < count; ++i) {
        __builtin_prefetch(&table_[Slot(Load64(bytes + places[i]) & mask, from)]);
      }
    }
    for (std::size_t i = 0; i < count; ++i) {
      const Step* const step = FindStep(Load64(bytes + places[i]) & mask, from);
      if (step == nullptr) continue;
      reached[found++] = {step->to, places[i] + take, static_cast<std::uint32_t>(i)};
      Prefetch(step->to);
    }
  }
  return found;
}

template <bool kAttempts>
inline std::int32_t KeyIndex::Best::Row() const {
  if constexpr (!kAttempts) return static_cast<std::int32_t>(plain);
  if (plain < attempt) return static_cast<std::int32_t>(plain);
  if (attempt == kNoRow) return kNone;
  if (plain == kNoRow && attempt + 1 == behind_attempts) return OnlyAttempt(attempt);
  return kUndecided;
}

// Without a branch: which member it is cannot be foretold.
template <bool kAttempts>
inline void KeyIndex::Best::Note(const Member& member, bool stands) {
  const std::uint32_t missing = stands ? 0 : kNoRow;
  plain = std::min(plain, member.plain | missing);
  if constexpr (!kAttempts) return;
  attempt = std::min(attempt, member.attempt | missing);
  behind_attempts = std::max(behind_attempts, (member.attempt + 1) & ~missing);
}

std::size_t KeyIndex::LookAt(const std::uint8_t* bytes, std::size_t size,
                             const std::uint16_t* places, std::size_t count,
                             std::int32_t* found) const {
  if (only_step_ > 0) {
    return has_attempts_ ? LookAtOneStep<true>(bytes, size, places, count, found)
                         : LookAtOneStep<false>(bytes, size, places, count, found);
  }
  std::array<Reached, kMostReached> reached;
  std::array<Best, kBatch> best;
  for (std::size_t i = 0; i < count; ++i) best[i] = {};
  const std::size_t begun = Begin(bytes, places, count, reached.data());
  const std::size_t looks = Walk(bytes, size, reached.data(), begun,
                                 [&best](std::uint32_t place, const Member& member, bool stands) {
                                   best[place].Note<true>(member, stands);
                                 });
  for (std::size_t i = 0; i < count; ++i) {
    found[i] = best[i].Row<true>();
  }
  return looks > count ? looks - count : 0;
}

// Where every key ends in the group that its first step leads to.
template <bool kAttempts>
inline std::size_t KeyIndex::LookAtOneStep(const std::uint8_t* bytes, std::size_t size,
                                           const std::uint16_t* places, std::size_t count,
                                           std::int32_t* found) const {
  const std::uint64_t mask = FirstBytesMask(only_step_);
  std::size_t looks = 0;
  std::array<std::uint64_t, 2> last{};
  for (std::size_t i = 0; i < count; ++i) {
    const std::uint8_t* const place = bytes + places[i];
    const std::array<std::uint64_t, 2> here = {Load64(place), Load64(place + kStepBytes)};
    if (i > 0 && here == last && keys_are_short_) {  // in a run of one byte
      found[i] = found[i - 1];
      continue;
    }
    last = here;
    const Step* const step = FindStep(here[0] & mask, only_from_);
    Best best;
    if (step != nullptr) {
      looks += LookAtGroup(
          step->to & ~kGroup, place + only_step_, size - places[i] - only_step_,
          [&best](const Member& member, bool stands) { best.Note<kAttempts>(member, stands); });
    }
    found[i] = best.Row<kAttempts>();
  }
  return looks;
}

std::int32_t KeyIndex::Find(const std::uint8_t* bytes, std::size_t size,
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
