#include "core/leftovers/spelling.h"

#include <algorithm>
#include <utility>

#include "core/text/letter_case.h"

namespace morvex {
namespace {

constexpr char32_t kNoSign = 0;

}  // namespace

std::size_t Spelling::LongestSize() const {
  std::size_t size = 0;
  for (const LetterWays* ways : letters) {
    std::size_t longest = 0;
    for (const LetterWay& way : *ways) longest = std::max(longest, way.bytes.size());
    size += longest;
  }
  return std::max(size, as_written.size());
}

std::optional<Standing> StandsAt(const Spelling& spelling, std::string_view bytes) {
  const std::string& as_written = spelling.as_written;
  if (!as_written.empty() && bytes.starts_with(as_written)) {
    return Standing{as_written.size(), true};
  }
  std::size_t size = 0;
  for (std::size_t letter = 0; letter < spelling.letters.size();) {
    const LetterWays& ways = *spelling.letters[letter];
    const std::string_view rest = bytes.substr(size);
    const auto way = std::find_if(ways.begin(), ways.end(), [rest](const LetterWay& each) {
      return rest.starts_with(each.bytes);
    });
    if (way == ways.end()) return std::nullopt;
    letter += way->letters;
    size += way->bytes.size();
  }
  return Standing{size, false};
}

std::optional<Spelling> Alphabet::Spell(std::u32string_view text, Encoding encoding) {
  Spelling spelling{encoding, {}, Encode(text, encoding).value_or("")};
  std::u32string letters;
  std::u32string signs;  // for each letter: the sign that the list has instead, or kNoSign
  for (const char32_t character : text) {
    const std::u32string_view one(&character, 1);
    const std::u32string expanded =
        encoding == Encoding::kBytes ? std::u32string(one) : WithoutLigatures(one);
    const bool is_sign = expanded.size() == 1 && expanded != one;
    letters += expanded;
    signs.append(expanded.size(), is_sign ? character : kNoSign);
  }
  spelling.letters.reserve(letters.size());
  for (std::size_t at = 0; at < letters.size(); ++at) {
    const LetterWays& ways = WaysOf(std::u32string_view(letters).substr(at), encoding, signs[at]);
    if (ways.empty()) return std::nullopt;
    spelling.letters.push_back(&ways);
  }
  return spelling;
}

const LetterWays& Alphabet::WaysOf(std::u32string_view text, Encoding encoding, char32_t sign) {
  std::vector<Ligature> ligatures;
  if (encoding != Encoding::kBytes) ligatures = LigaturesAtBeginning(text);
  // The ways depend on the letter and on the letters that a ligature may join to it.
  std::size_t count = 1;
  for (const Ligature& each : ligatures) count = std::max(count, each.letters);
  std::u32string key(text.substr(0, count));
  if (sign != kNoSign) key.front() = sign;
  const auto [known, is_new] =
      known_[static_cast<std::size_t>(encoding)].try_emplace(std::move(key));
  LetterWays& ways = known->second;
  if (!is_new) return ways;
  const auto add = [&](std::u32string_view way, std::size_t letters, bool is_rare) {
    // Where the encoding is unknown, only ASCII bytes count as letters.
    if (encoding == Encoding::kBytes && (text.front() >= 0x80 || way.front() >= 0x80)) return;
    const std::optional<std::string> bytes = Encode(way, encoding);
    const bool is_ascii =
        std::all_of(way.begin(), way.end(), [](char32_t each) { return each < 0x80; });
    if (bytes) ways.push_back({*bytes, letters, is_rare && !is_ascii});
  };
  const std::optional<std::string> as_written = Encode(text.substr(0, 1), encoding);
  if (as_written) ways.push_back({*as_written});
  if (sign != kNoSign) add({&sign, 1}, 1, false);
  for (const OtherCase& other : OtherCases(text.front())) add(other.text, 1, other.is_rare);
  for (const Ligature& each : ligatures) add({&each.character, 1}, each.letters, true);
  // Longer ways come first, because StandsAt takes the first way that fits.
  std::stable_sort(ways.begin(), ways.end(), [](const LetterWay& one, const LetterWay& other) {
    return one.bytes.size() > other.bytes.size();
  });
  return ways;
}

}  // namespace morvex
