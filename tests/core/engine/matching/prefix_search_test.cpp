// The candidates that each way of searching finds in a block, and the change from one way to the
// other.
#include "core/engine/matching/prefix_search.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace morvex::test {
namespace {

struct Prefix {
  std::string text;
  bool plain = true;
};

struct Found {
  std::uint64_t offset = 0;
  std::int32_t plain = Candidate::kNone;
  std::vector<std::int32_t> attempts;
  bool operator==(const Found&) const = default;
};

class Searched {
 public:
  explicit Searched(const std::vector<Prefix>& prefixes, SearchMethod method)
      : prefixes_(prefixes),
        rows_(Rows(prefixes_)),
        index_(rows_),
        search_(index_, rows_, Kernel::kPortable, method) {}

  // Searches the text block by block. Returns all candidates from offset `from` on.
  std::vector<Found> All(const std::string& text, std::uint64_t from = 0) {
    const std::string padded = text + std::string(ScanTables::kReadAhead, '\0');
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(padded.data());
    std::vector<Found> all;
    search_.Reset();
    automaton_blocks = 0;
    for (std::size_t at = 0; at < text.size();) {
      const std::size_t count = std::min(text.size() - at, search_.block());
      if (search_.block() > CandidateFilter::kBlock) ++automaton_blocks;
      const std::size_t searched =
          search_.Search(bytes + at, count, text.size() - at, at, [&](auto& batch) {
            for (Candidate each; batch.Next(from, each);) all.push_back(Said(each));
            return true;
          });
      EXPECT_GT(searched, 0U);
      EXPECT_LE(searched, count);
      at += searched;
    }
    return all;
  }

  // Returns what trying every row at every offset finds.
  std::vector<Found> Wanted(const std::string& text) const {
    std::vector<Found> wanted;
    for (std::size_t at = 0; at < text.size(); ++at) {
      Found found{at, Candidate::kNone, {}};
      for (std::size_t row = 0; row < prefixes_.size() && found.plain == Candidate::kNone; ++row) {
        if (text.compare(at, prefixes_[row].text.size(), prefixes_[row].text) != 0) continue;
        const auto index = static_cast<std::int32_t>(row);
        if (prefixes_[row].plain) {
          found.plain = index;
        } else {
          found.attempts.push_back(index);
        }
      }
      if (found.plain != Candidate::kNone || !found.attempts.empty()) wanted.push_back(found);
    }
    return wanted;
  }

  PrefixSearch& search() { return search_; }
  int automaton_blocks = 0;  // blocks that the automaton searched in the last call of All

 private:
  static std::vector<CompiledRow> Rows(const std::vector<Prefix>& prefixes) {
    std::vector<CompiledRow> rows(prefixes.size());
    int attempts = 0;
    for (std::size_t row = 0; row < prefixes.size(); ++row) {
      rows[row].prefix = prefixes[row].text;
      rows[row].attempt = prefixes[row].plain ? CompiledRow::kPlain : attempts++;
    }
    return rows;
  }
  Found Said(const Candidate& each) const {
    Found found{each.offset, each.plain, {}};
    if (each.only_attempt != Candidate::kNone) {
      found.attempts = {each.only_attempt};
    } else if (each.needs_attempts) {
      found.attempts = search_.found();
    }
    return found;
  }

  std::vector<Prefix> prefixes_;
  std::vector<CompiledRow> rows_;
  PrefixIndex index_;
  PrefixSearch search_;
};

TEST(PrefixSearch, BothMethodsFindWhatTryingEveryRowFinds) {
  for (std::uint32_t seed = 0; seed < 300; ++seed) {
    std::mt19937 random(seed);
    const auto text = [&random](std::size_t size) {
      std::string made(size, ' ');
      for (char& byte : made) byte = "aab."[random() % 4];
      return made;
    };
    std::vector<Prefix> prefixes;
    for (std::size_t i = 1 + random() % 10; i > 0; --i) {
      prefixes.push_back({text(1 + random() % 12), random() % 3 != 0});
    }
    const std::string searched = text(random() % 300);
    for (const SearchMethod method : {SearchMethod::kWhatPays, SearchMethod::kAutomaton}) {
      Searched search(prefixes, method);
      ASSERT_EQ(search.All(searched), search.Wanted(searched)) << "seed " << seed;
    }
  }
}

// Returns prefixes of many "a" with a "b" at the end. At most offsets in a run of "a" they match in
// all bytes but the last. Only where a "b" ends the run does a prefix match.
std::vector<Prefix> NearMisses() {
  std::vector<Prefix> prefixes;
  for (std::size_t size = 40; size < 80; ++size) {
    prefixes.push_back({std::string(size, 'a') + "b"});
  }
  return prefixes;
}

TEST(PrefixSearch, OffsetsBehindABlockOfNearMissesAreLeftToTheAutomatonForAWhile) {
  Searched search(NearMisses(), SearchMethod::kWhatPays);
  const std::string hit = std::string(45, 'a') + "b";
  const std::string text = std::string(10'000, 'a') + "b" + std::string(200'000, '.') + hit;
  const std::vector<Found> found = search.All(text);
  EXPECT_EQ(found, search.Wanted(text));
  EXPECT_FALSE(found.empty());
  EXPECT_EQ(search.automaton_blocks, 1);
  EXPECT_EQ(search.search().block(), CandidateFilter::kBlock) << "the index has its turn again";
}

TEST(PrefixSearch, OrdinaryTextsAreLeftToTheIndex) {
  Searched search({{"Jansen"}, {"Pietersen"}}, SearchMethod::kWhatPays);
  std::string text;
  while (text.size() < 20'000) text += "Jansen and Pieters write to Pietersen. ";
  EXPECT_EQ(search.All(text), search.Wanted(text));
  EXPECT_EQ(search.automaton_blocks, 0);
}

TEST(PrefixSearch, AListWithTooManyBytesHasNoAutomaton) {
  std::vector<Prefix> prefixes = NearMisses();
  for (char first = 'b'; first < 'b' + 12; ++first) {
    prefixes.push_back({first + std::string(100'000, 'z')});
  }
  Searched search(prefixes, SearchMethod::kWhatPays);
  search.All(std::string(10'000, 'a'));
  EXPECT_EQ(search.automaton_blocks, 0);
}

TEST(PrefixSearch, CandidatesInFrontOfAnOffsetAreLeftOut) {
  for (const SearchMethod method : {SearchMethod::kWhatPays, SearchMethod::kAutomaton}) {
    Searched search({{"a"}}, method);
    EXPECT_EQ(search.All("aaaa", 2), (std::vector<Found>{{2, 0, {}}, {3, 0, {}}}));
  }
}

TEST(PrefixSearch, ABatchCanEndTheSearch) {
  Searched search({{"a"}}, SearchMethod::kWhatPays);
  const std::string text = std::string(100, 'a') + std::string(ScanTables::kReadAhead, '\0');
  int batches = 0;
  search.search().Search(reinterpret_cast<const std::uint8_t*>(text.data()), 100, 100, 0,
                         [&](auto&) { return ++batches < 2; });
  EXPECT_EQ(batches, 2);
}

}  // namespace
}  // namespace morvex::test
