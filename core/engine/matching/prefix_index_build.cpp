#include <algorithm>
#include <bit>
#include <iterator>

#include "core/engine/matching/prefix_index.h"

namespace morvex {
namespace {

constexpr std::size_t kStepBytes = PrefixIndex::kStepBytes;

constexpr std::size_t kGroupSize = 8;  // the most rows of a group that a step leads to
// Replaces kGroupSize where lengths have been joined (see Join): comparing a larger group costs
// less than the probe that the joining spares.
constexpr std::size_t kLargeGroupSize = 24;

constexpr std::size_t kCache = std::size_t{256} << 10;

// Slots behind the last hash value, for steps whose own slot is taken.
constexpr std::size_t kSpareSlots = 64;

const std::uint8_t* Bytes(std::string_view text) {
  return reinterpret_cast<const std::uint8_t*>(text.data());
}

// Returns up to `count` bytes of the prefix from `depth` on, as Load64 returns them.
std::uint64_t BytesOf(std::string_view prefix, std::size_t depth, std::size_t count = kStepBytes) {
  std::uint64_t value = 0;
  for (std::size_t i = depth < prefix.size() ? std::min(count, prefix.size() - depth) : 0; i > 0;
       --i) {
    value = value << 8 | static_cast<std::uint8_t>(prefix[depth + i - 1]);
  }
  return value;
}

// Returns the kind of step (see kLengths), 0 to 4, that a prefix with `rest` (1 or more) bytes left
// takes.
std::size_t LengthOf(std::size_t rest) {
  if (rest >= kStepBytes) return 4;
  return rest >= 4 ? 3 : rest - 1;
}

}  // namespace

PrefixIndex::PrefixIndex(const std::vector<CompiledRow>& rows) : rows_(rows) {
  OrderRows();
  nodes_.emplace_back();
  std::vector<Waiting> waiting;
  if (!rows_by_prefix_.empty()) waiting.push_back({rows_by_prefix_, 0, 0});
  for (std::size_t next = 0; next < waiting.size(); ++next) {
    const Waiting here = std::move(waiting[next]);
    FillNode(here, waiting);
  }
  FillTable();
  MakeFilter();
}

// Sorts the rows and drops the shadowed ones. A row is shadowed if an earlier plain row has the
// same prefix, or a prefix with which the row's prefix begins.
void PrefixIndex::OrderRows() {
  Members sorted(rows_.size());
  for (std::size_t i = 0; i < sorted.size(); ++i) sorted[i] = static_cast<std::int32_t>(i);
  std::sort(sorted.begin(), sorted.end(),
            [this](std::int32_t a, std::int32_t b) { return IsInFront(a, b); });
  struct Beginning {
    std::string_view prefix;
    std::int32_t first_plain = kNone;  // first plain row with this prefix or a beginning of it
  };
  std::vector<Beginning> beginnings;
  for (const std::int32_t row : sorted) {
    while (!beginnings.empty() && !Prefix(row).starts_with(beginnings.back().prefix)) {
      beginnings.pop_back();
    }
    std::int32_t first_plain = beginnings.empty() ? kNone : beginnings.back().first_plain;
    if (first_plain != kNone && first_plain < row) continue;
    if (IsPlain(row)) first_plain = row;
    beginnings.push_back({Prefix(row), first_plain});
    rows_by_prefix_.push_back(row);
  }
}

void PrefixIndex::FillNode(const Waiting& here, std::vector<Waiting>& waiting) {
  const std::string_view first = Prefix(here.members.front());
  const std::string_view last = Prefix(here.members.back());
  std::size_t depth = here.depth;
  if (here.members.size() > kGroupSize) {
    while (depth < first.size() && depth < last.size() && first[depth] == last[depth]) ++depth;
  }
  Node node;
  node.label = Bytes(first) + here.depth;
  node.label_size = static_cast<std::uint32_t>(depth - here.depth);
  node.label_begin = BytesOf(first, here.depth, node.label_size);
  Members own;
  std::array<Members, kLengths> longer;
  for (const std::int32_t row : here.members) {
    const std::size_t rest = Prefix(row).size() - depth;
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

std::size_t PrefixIndex::Shortest(const Members& members) const {
  std::size_t shortest = ~std::size_t{0};
  for (const std::int32_t row : members) shortest = std::min(shortest, Prefix(row).size());
  return shortest;
}

// Each length (kind of step, see kLengths) costs a probe. So the rows of a length join the next
// shorter length that has rows, and take its shorter steps, if all these steps then lead to groups.
// If some of them led to nodes, long prefixes would continue behind short steps, and one offset
// could need more probes than kMostReached has room for. Returns for each length whether another
// length has joined it.
std::array<bool, PrefixIndex::kLengths> PrefixIndex::Join(std::array<Members, kLengths>& by_length,
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

// Returns the index behind the last member that continues with the same `take` bytes as the member
// at `at`.
std::size_t PrefixIndex::EndOfStep(const Members& members, std::size_t at, std::size_t depth,
                                   std::size_t take) const {
  const std::uint64_t taken = BytesOf(Prefix(members[at]), depth, take);
  std::size_t end = at + 1;
  while (end < members.size() && BytesOf(Prefix(members[end]), depth, take) == taken) ++end;
  return end;
}

void PrefixIndex::AddSteps(const Members& members, std::size_t depth, std::size_t length,
                           std::size_t group_size, std::uint32_t node,
                           std::vector<Waiting>& waiting) {
  const std::size_t take = std::min(kStepBytes, Shortest(members) - depth);
  nodes_[node].takes[length] = static_cast<std::uint8_t>(take);
  for (std::size_t at = 0, end = 0; at < members.size(); at = end) {
    const std::uint64_t taken = BytesOf(Prefix(members[at]), depth, take);
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

void PrefixIndex::MakeFilter() {
  std::array<Members, kLengths> by_length;
  for (const std::int32_t row : rows_by_prefix_)
    by_length[LengthOf(Prefix(row).size())].push_back(row);
  std::vector<PrefixStarts> starts;
  for (const Members& members : by_length) {
    if (members.empty()) continue;
    const std::size_t take = std::min(kStepBytes, Shortest(members));
    starts.push_back({take, {}});
    for (std::size_t at = 0; at < members.size(); at = EndOfStep(members, at, 0, take)) {
      starts.back().distinct.push_back(BytesOf(Prefix(members[at]), 0, take));
    }
  }
  filter_ = HashFilter(starts);
  const std::size_t shortest = Shortest(rows_by_prefix_);
  if (rows_by_prefix_.empty() || shortest <= kStepBytes) return;
  std::vector<std::string_view> prefixes;
  prefixes.reserve(rows_by_prefix_.size());
  for (const std::int32_t row : rows_by_prefix_) prefixes.push_back(Prefix(row));
  filter_.AddSecondProbe(prefixes, shortest);
}

std::uint32_t PrefixIndex::AddGroup(const Members& members, std::size_t depth) {
  const auto first = static_cast<std::uint32_t>(members_.size());
  for (const std::int32_t row : members) {
    const std::string_view prefix = Prefix(row);
    Member member;
    member.size = static_cast<std::uint32_t>(prefix.size() - depth);
    member.first = BytesOf(prefix, depth);
    member.second = BytesOf(prefix, depth + kStepBytes);
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

void PrefixIndex::FillTable() {
  const auto bits = static_cast<int>(std::bit_width(steps_.size() * 2 + 1));
  const std::size_t size = std::size_t{1} << bits;
  table_shift_ = 64 - bits;
  table_.resize(size + kSpareSlots);
  for (const Step& step : steps_) {
    std::size_t slot = Slot(step.bytes, step.from);
    while (table_[slot].from != kFree) {
      // The last slot stays free, so that it ends every search.
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
  prefixes_are_short_ =
      std::all_of(rows_by_prefix_.begin(), rows_by_prefix_.end(),
                  [this](std::int32_t row) { return Prefix(row).size() <= 2 * kStepBytes; });
  is_large_ = size * sizeof(Step) + members_.size() * sizeof(Member) > kCache;
}

}  // namespace morvex
