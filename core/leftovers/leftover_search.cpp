#include "core/leftovers/leftover_search.h"

#include <algorithm>
#include <cstring>

namespace morvex {
namespace {

constexpr std::size_t kPadding = 64;
static_assert(kPadding >= PrefixIndex::kReadAhead && kPadding >= ScanTables::kReadAhead);

// Replaces CandidateFilter::kDense. A look-up after the scan costs more in this search than in a
// substitution, because there are keys for all spellings. So the scan pays even if it rules out
// only every second offset.
constexpr std::size_t kDense = 2;

// Counts the line breaks in runs of at most 255 bytes. The count of such a run fits into one byte,
// so where the compiler uses vector instructions, a vector register has room for as many counts as
// for bytes of the text.
std::int64_t LineBreaks(const std::uint8_t* bytes, std::size_t size) {
  constexpr std::size_t kRun = 255;
  std::int64_t breaks = 0;
  while (size > 0) {
    const std::size_t run = std::min(size, kRun);
    std::uint8_t in_run = 0;
    for (std::size_t i = 0; i < run; ++i) {
      in_run = static_cast<std::uint8_t>(in_run + (bytes[i] == '\n' ? 1 : 0));
    }
    breaks += in_run;
    bytes += run;
    size -= run;
  }
  return breaks;
}

}  // namespace

LeftoverSearch::LeftoverSearch(const Sought& sought, Kernel kernel, std::size_t block)
    : sought_(sought),
      search_(sought.keys().index(), sought.keys().rows(), kernel, SearchMethod::kWhatPays, kDense),
      rare_filter_(sought.rare_keys().index(), sought.rare_keys().rows(), kernel),
      rare_form_filter_(sought.rare_forms().index(), sought.rare_forms().rows(), kernel),
      behind_(static_cast<std::size_t>(sought.look_behind()) + kAround + 1),
      ahead_(std::max(sought.look_ahead(), kShown) + kAround),
      capacity_(behind_ + ahead_ + block),
      bytes_(std::make_unique<std::uint8_t[]>(capacity_ + kPadding)),
      folded_(std::make_unique<std::uint8_t[]>(capacity_ + kPadding)),
      progress_(sought.rows().size()) {}

void LeftoverSearch::Open() {
  for (const std::size_t row : touched_) progress_[row] = Progress();
  touched_.clear();
  base_ = 0;
  filled_ = 0;
  next_ = 0;
  counted_ = 0;
  line_ = 1;
  search_.Reset();
}

ErrorNumber LeftoverSearch::Run(ByteSource& file, const TellLeftover& tell,
                                const std::function<bool()>& keep_going) {
  Open();
  tell_ = &tell;
  for (;;) {
    if (keep_going && !keep_going()) return ErrorNumber::kInvalidCall;
    const std::size_t room = capacity_ - filled_;
    const Result<std::size_t> read =
        file.ReadAt(base_ + filled_, reinterpret_cast<char*>(bytes_.get()) + filled_, room);
    if (!read) return read.error;
    std::transform(bytes_.get() + filled_, bytes_.get() + filled_ + read.value,
                   folded_.get() + filled_, Folded);
    filled_ += read.value;
    // No key holds a NUL, so with NULs behind the last byte no key can match beyond that byte.
    std::memset(folded_.get() + filled_, 0, kPadding);
    const bool ended = read.value < room;
    SearchUpTo(ended ? filled_ : filled_ - ahead_);
    if (ended) return ErrorNumber::kNone;
    Slide();
  }
}

// Drops the bytes that no later offset needs.
void LeftoverSearch::Slide() {
  LineAt(next_);
  const std::size_t dropped = next_ - std::min(next_, behind_);
  std::memmove(bytes_.get(), bytes_.get() + dropped, filled_ - dropped);
  std::memmove(folded_.get(), folded_.get() + dropped, filled_ - dropped);
  base_ += dropped;
  filled_ -= dropped;
  next_ -= dropped;
  counted_ -= dropped;
}

void LeftoverSearch::SearchUpTo(std::size_t limit) {
  if (sought_.parts().empty()) next_ = limit;
  while (next_ < limit) {
    const std::size_t count = std::min(limit - next_, search_.block());
    FindRareKeys(count);
    next_ +=
        search_.Search(folded_.get() + next_, count, filled_ - next_, next_, [this](auto& batch) {
          for (Candidate found; batch.Next(0, found);) {
            if (found.only_attempt != Candidate::kNone) {
              UsualKeyAt(found.offset, found.only_attempt);
              continue;
            }
            for (const std::int32_t key : search_.found()) UsualKeyAt(found.offset, key);
          }
          return true;
        });
    RareKeysInFrontOf(next_);
  }
}

// Every rare key holds a rare form of a letter. Few files have such forms, so only the offsets from
// kLongestRareKey bytes in front of a form up to the form itself are searched.
void LeftoverSearch::FindRareKeys(std::size_t count) {
  rare_keys_.clear();
  next_rare_key_ = 0;
  const std::size_t end = next_ + count;
  // A key that begins in front of `end` may hold a form that begins behind `end`.
  const std::size_t forms_end = std::min(end + Sought::kLongestRareKey, filled_);
  std::size_t done = next_;
  for (std::size_t from = next_; from < forms_end; from += CandidateFilter::kBlock) {
    const std::size_t found = rare_form_filter_.Find(
        folded_.get() + from, std::min(forms_end - from, CandidateFilter::kBlock),
        rare_forms_.data());
    for (std::size_t i = 0; i < found; ++i) {
      const std::size_t form = from + rare_forms_[i];
      const std::size_t begin = std::max(done, form - std::min(form, Sought::kLongestRareKey));
      done = std::max(done, std::min(form + 1, end));
      FindRareKeysFrom(begin, done);
    }
  }
}

void LeftoverSearch::FindRareKeysFrom(std::size_t begin, std::size_t end) {
  if (begin >= end) return;
  const std::uint8_t* const folded = folded_.get() + begin;
  const std::size_t found = rare_filter_.Find(folded, end - begin, offsets_.data());
  for (std::size_t i = 0; i < found; ++i) {
    keys_.clear();
    sought_.rare_keys().index().Find(folded + offsets_[i], filled_ - begin - offsets_[i], keys_);
    for (const std::int32_t key : keys_) rare_keys_.push_back({begin + offsets_[i], key});
  }
}

void LeftoverSearch::RareKeysInFrontOf(std::size_t at) {
  for (; next_rare_key_ < rare_keys_.size() && rare_keys_[next_rare_key_].at < at;
       ++next_rare_key_) {
    const RareKey& found = rare_keys_[next_rare_key_];
    KeyAt(found.at, sought_.rare_keys(), found.key);
  }
}

// Handles the rare keys in front of `at` first, so that all keys are handled in the order of their
// offsets.
void LeftoverSearch::UsualKeyAt(std::size_t at, std::int32_t key) {
  RareKeysInFrontOf(at);
  KeyAt(at, sought_.keys(), key);
}

void LeftoverSearch::KeyAt(std::size_t at, const SoughtKeys& keys, std::int32_t key) {
  for (const std::int32_t index : keys.PartsOf(key)) {
    const SoughtPart& part = sought_.parts()[static_cast<std::size_t>(index)];
    if (IsDone(at, part)) continue;
    const std::optional<Standing> standing = StandsAt(part.spelling, BytesFrom(at));
    if (standing) PartAt(at, part, *standing);
  }
}

// Whether the part need not be compared at `at`: even if it stands there, it leads to no leftover.
bool LeftoverSearch::IsDone(std::size_t at, const SoughtPart& part) const {
  const Progress& progress = progress_[part.sought_row];
  return part.number == 0 ? base_ + at < progress.not_before : !progress.touched;
}

// ASCII text in UTF-16 that stands between two NULs can be read in both byte orders, at offsets one
// byte apart. If all parts can be read at an even and at an odd offset, only the reading at even
// offsets counts. Returns whether the part's offset in the file is odd and the part can also be
// read one byte away, in the other byte order.
bool LeftoverSearch::StandsInOtherOrder(std::size_t at, const SoughtPart& part) const {
  if (part.other_order == SoughtPart::kNone || (base_ + at) % 2 == 0) return false;
  const SoughtPart& other = sought_.parts()[static_cast<std::size_t>(part.other_order)];
  const bool is_little = part.spelling.encoding == Encoding::kUtf16Le;
  if (!is_little && at + 1 > filled_) return false;
  return StandsAt(other.spelling, BytesFrom(is_little ? at - 1 : at + 1)).has_value();
}

void LeftoverSearch::PartAt(std::size_t at, const SoughtPart& part, const Standing& standing) {
  const SoughtRow& row = sought_.rows()[part.sought_row];
  const std::uint64_t place = base_ + at;
  const std::string_view bytes = BytesFrom(at).substr(0, standing.size);
  Occurrence here{
      place,
      place + standing.size,
      0,
      standing.as_written,
      std::all_of(bytes.begin(), bytes.end(), [](char byte) { return (byte & 0x80) == 0; }),
      StandsInOtherOrder(at, part)};
  if (part.number == 0) {
    // The two returns below leave `not_before` as it is, because an overlapping occurrence may be a
    // leftover of its own.
    if (row.parts == 1 && here.in_other_order) return;
    if (!row.put_in.empty() && BytesFrom(at).starts_with(row.put_in)) {
      if (row.least_left == 0) return;
      here.end = place + row.put_in.size() + row.least_left;
    }
    here.line = LineAt(at);
  } else {
    const std::optional<Occurrence> begun =
        TakeReady(progress_[part.sought_row].stages[part.number - 1], place);
    if (!begun || here.end - begun->begin > row.longest_span) return;
    here.begin = begun->begin;
    here.line = begun->line;
    here.as_written = here.as_written && begun->as_written;
    here.is_ascii = here.is_ascii && begun->is_ascii;
    here.in_other_order = here.in_other_order && begun->in_other_order;
  }
  Progress& progress = ProgressOf(part);
  if (part.number + 1 < row.parts) {
    progress.stages[part.number].waiting.push_back(here);
    TakeReady(progress.stages[part.number], place);
    return;
  }
  for (Progress::Stage& stage : progress.stages) stage = {};
  progress.not_before = here.end;
  if (here.in_other_order || (here.is_ascii && row.ascii_is_told_elsewhere)) return;
  Tell(row, here);
}

// Returns the latest occurrence that ends at `place` or in front of it, if there is one.
std::optional<LeftoverSearch::Occurrence> LeftoverSearch::TakeReady(Progress::Stage& stage,
                                                                    std::uint64_t place) const {
  while (!stage.waiting.empty() && stage.waiting.front().end <= place) {
    stage.ready = stage.waiting.front();
    stage.waiting.pop_front();
  }
  return stage.ready;
}

LeftoverSearch::Progress& LeftoverSearch::ProgressOf(const SoughtPart& part) {
  Progress& progress = progress_[part.sought_row];
  if (!progress.touched) {
    progress.touched = true;
    touched_.push_back(part.sought_row);
    progress.stages.resize(sought_.rows()[part.sought_row].parts - 1);
  }
  return progress;
}

// Returns the line of the offset `at` in the buffer, which must not decrease from call to call.
std::int64_t LeftoverSearch::LineAt(std::size_t at) {
  if (at > counted_) {
    line_ += LineBreaks(bytes_.get() + counted_, at - counted_);
    counted_ = at;
  }
  return line_;
}

void LeftoverSearch::Tell(const SoughtRow& row, const Occurrence& found) {
  Leftover leftover;
  leftover.offset = found.begin;
  leftover.line = found.line;
  leftover.row = row.row;
  leftover.encoding = row.encoding;
  leftover.as_written = found.as_written;
  leftover.is_wildcard = row.is_wildcard;
  leftover.size = found.end - found.begin;
  const auto at = static_cast<std::size_t>(found.begin - base_);
  leftover.before = std::min(at, kAround);
  const std::size_t shown =
      static_cast<std::size_t>(std::min<std::uint64_t>(leftover.size, kShown)) + kAround;
  leftover.around = BytesFrom(at - leftover.before).substr(0, leftover.before + shown);
  (*tell_)(leftover);
}

}  // namespace morvex
