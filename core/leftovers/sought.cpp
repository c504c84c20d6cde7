#include "core/leftovers/sought.h"

#include <algorithm>
#include <deque>
#include <map>
#include <utility>

namespace morvex {
namespace {

// A part has at most this many keys in one encoding. A key ends where one more letter would make
// more keys than this; the rest of the part is compared where the key is found.
constexpr std::size_t kMostKeys = 16;
// A key with a rare form of a letter ends as soon as it has this many bytes, because even such a
// short key occurs in few files.
constexpr std::size_t kEnoughOfARareKey = 4;
// A key of this many bytes or more ends in front of a letter with rare forms. A shorter key leaves
// room for one letter in a rare form within kLongestRareKey bytes.
constexpr std::size_t kFarBehind = Sought::kLongestRareKey - 32;
// In bytes. Of a longer part only the beginning is searched. A longer right text is not stored in
// SoughtRow::put_in.
constexpr std::size_t kLongestPart = 32000;
// The most bytes that a match of the engine may span.
constexpr std::uint64_t kLongestMatch = 32766;

bool IsAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char byte) { return (byte & 0x80) == 0; });
}

// One way to write the beginning of a text, folded.
struct Beginning {
  std::string bytes;
  std::size_t letters = 0;
  std::string rare_form;  // the first rare form of a letter in `bytes`, or empty
  bool is_rare() const { return !rare_form.empty(); }
  bool operator==(const Beginning&) const = default;
};

std::string AllFolded(std::string bytes) {
  for (char& byte : bytes) byte = static_cast<char>(Folded(static_cast<std::uint8_t>(byte)));
  return bytes;
}

// Returns the beginning continued by each of `ways`. Where results are equal, returns only one.
std::vector<Beginning> Continued(const Beginning& beginning, const LetterWays& ways) {
  std::vector<Beginning> continued;
  for (const LetterWay& way : ways) {
    Beginning longer = beginning;
    const std::string folded = AllFolded(way.bytes);
    longer.bytes += folded;
    longer.letters += way.letters;
    if (way.is_rare && !longer.is_rare()) longer.rare_form = folded;
    if (std::find(continued.begin(), continued.end(), longer) == continued.end()) {
      continued.push_back(std::move(longer));
    }
  }
  return continued;
}

// Returns the keys of a part: every way to write the part, folded, begins with one of them.
std::vector<Beginning> KeysOf(const Spelling& spelling) {
  std::vector<Beginning> keys;
  std::deque<Beginning> growing(1);
  while (!growing.empty()) {
    const Beginning beginning = std::move(growing.front());
    growing.pop_front();
    bool ends = beginning.letters >= spelling.letters.size() ||
                (beginning.is_rare() && beginning.bytes.size() >= kEnoughOfARareKey);
    if (!ends) {
      std::vector<Beginning> longer = Continued(beginning, *spelling.letters[beginning.letters]);
      const std::size_t count = keys.size() + growing.size() + longer.size();
      const bool is_far = beginning.bytes.size() >= kFarBehind &&
                          std::any_of(longer.begin(), longer.end(),
                                      [](const Beginning& each) { return each.is_rare(); });
      ends = is_far || (!beginning.bytes.empty() && longer.size() > 1 && count > kMostKeys);
      if (!ends) growing.insert(growing.end(), longer.begin(), longer.end());
    }
    if (ends) keys.push_back(beginning);
  }
  return keys;
}

bool HasOnlyAsciiWays(const Spelling& spelling) {
  return std::all_of(spelling.letters.begin(), spelling.letters.end(), [](const LetterWays* ways) {
    return std::all_of(ways->begin(), ways->end(),
                       [](const LetterWay& way) { return IsAscii(way.bytes); });
  });
}

// Returns the non-empty pieces of a text between its wildcards. Wildcards in front of offset `from`
// count as ordinary characters. (The first byte of a left text is never a wildcard.)
std::vector<std::string_view> PiecesOf(std::string_view text, char joker, std::size_t from) {
  std::vector<std::string_view> pieces;
  std::size_t begin = 0;
  while (begin <= text.size()) {
    const std::size_t end = std::min(text.find(joker, std::max(begin, from)), text.size());
    if (end > begin) pieces.push_back(text.substr(begin, end - begin));
    begin = end + 1;
  }
  return pieces;
}

// Whether all pieces occur in the text, in their order, the first one at the text's beginning.
bool HoldsAll(std::string_view text, const std::vector<std::string_view>& pieces) {
  if (!text.starts_with(pieces.front())) return false;
  std::size_t at = 0;
  for (const std::string_view piece : pieces) {
    at = text.find(piece, at);
    if (at == std::string_view::npos) return false;
    at += piece.size();
  }
  return true;
}

}  // namespace

// A row of the list, prepared for AddRow.
struct Sought::ListRow {
  std::int64_t row = 0;
  bool is_wildcard = false;
  std::vector<std::string_view> parts;
  std::string put_in;
  bool ends_in_beginning = false;
  Encoding encoding = Encoding::kBytes;  // the list's, or kBytes if the row is malformed in it
};

Sought::Sought(const SubstitutionTables& tables, std::uint8_t joker, Encoding list_encoding) {
  const char wildcard = static_cast<char>(joker);
  for (std::int64_t index = 0; index < tables.PairCount; ++index) {
    const std::string& left = tables.LeftTexts[static_cast<std::size_t>(index)];
    const std::string& right = tables.RightTexts[static_cast<std::size_t>(index)];
    if (left.empty()) continue;
    ListRow row;
    row.row = index;
    row.is_wildcard = joker != 0 && left.find(wildcard, 1) != std::string::npos;
    row.parts = row.is_wildcard ? PiecesOf(left, wildcard, 1) : std::vector<std::string_view>{left};
    if (row.is_wildcard) {
      std::string kept = right;
      kept.erase(std::remove(kept.begin(), kept.end(), wildcard), kept.end());
      if (HoldsAll(kept, row.parts)) {
        if (kept != right) {
          rows_that_stay_.push_back(index);
          continue;
        }
        if (kept.size() <= kLongestPart) row.put_in = kept;
      }
      row.ends_in_beginning = HasEndingInBeginning(left, joker);
      const auto longest = static_cast<std::size_t>(tables.MaxLeftLen);
      if ((row.ends_in_beginning && row.put_in.empty()) || TakesInOneByte(left, joker, longest)) {
        rows_not_judged_.push_back(index);
      }
    }
    const bool is_text =
        std::all_of(row.parts.begin(), row.parts.end(),
                    [&](std::string_view part) { return Decode(part, list_encoding).has_value(); });
    row.encoding = is_text ? list_encoding : Encoding::kBytes;
    AddRow(row, row.encoding);
    if (!is_text) {
      rows_of_bytes_.push_back(index);
      continue;
    }
    AddRow(row, row.encoding == Encoding::kUtf8 ? Encoding::kWindows1252 : Encoding::kUtf8, true);
    const std::size_t first_little = parts_.size();
    AddRow(row, Encoding::kUtf16Le);
    const std::size_t first_big = parts_.size();
    AddRow(row, Encoding::kUtf16Be);
    AddOtherOrders(first_little, first_big);
  }
  MakeKeys();
}

// Adds nothing if a part cannot be spelled in the encoding (see Alphabet::Spell), or if
// `ascii_is_told_elsewhere` is set and every occurrence would consist of ASCII bytes.
void Sought::AddRow(const ListRow& row, Encoding encoding, bool ascii_is_told_elsewhere) {
  std::vector<Spelling> spellings;
  for (const std::string_view part : row.parts) {
    std::u32string text = Decode(part, row.encoding).value_or(U"");
    std::optional<Spelling> spelling = alphabet_.Spell(text, encoding);
    while (spelling && spelling->LongestSize() > kLongestPart) {
      text.resize(text.size() / 2);
      spelling = alphabet_.Spell(text, encoding);
    }
    if (!spelling) return;
    look_ahead_ = std::max(look_ahead_, spelling->LongestSize());
    spellings.push_back(std::move(*spelling));
  }
  if (ascii_is_told_elsewhere &&
      std::all_of(spellings.begin(), spellings.end(), HasOnlyAsciiWays)) {
    return;
  }
  SoughtRow sought;
  sought.row = row.row;
  sought.encoding = encoding;
  sought.is_wildcard = row.is_wildcard;
  sought.ascii_is_told_elsewhere = ascii_is_told_elsewhere;
  sought.parts = spellings.size();
  const bool is_wide = encoding == Encoding::kUtf16Le || encoding == Encoding::kUtf16Be;
  if (row.ends_in_beginning) sought.least_left = is_wide ? 2 : 1;
  if (!row.put_in.empty()) {
    const std::optional<std::u32string> put_in = Decode(row.put_in, row.encoding);
    const std::optional<std::string> bytes = put_in ? Encode(*put_in, encoding) : std::nullopt;
    if (bytes) sought.put_in = *bytes;
    look_ahead_ = std::max(look_ahead_, sought.put_in.size());
  }
  if (sought.parts > 1) {
    sought.longest_span = kLongestMatch * (is_wide ? 2 : 1);
    look_behind_ = std::max(look_behind_, sought.longest_span);
  }
  rows_.push_back(std::move(sought));
  for (std::size_t number = 0; number < spellings.size(); ++number) {
    SoughtPart part;
    part.sought_row = rows_.size() - 1;
    part.number = number;
    part.spelling = std::move(spellings[number]);
    parts_.push_back(std::move(part));
  }
}

void Sought::AddOtherOrders(std::size_t first_little, std::size_t first_big) {
  for (std::size_t i = 0; first_big + i < parts_.size(); ++i) {
    parts_[first_little + i].other_order = static_cast<std::int32_t>(first_big + i);
    parts_[first_big + i].other_order = static_cast<std::int32_t>(first_little + i);
  }
}

void Sought::MakeKeys() {
  SoughtKeys::PartsByKey usual;
  SoughtKeys::PartsByKey rare;
  SoughtKeys::PartsByKey rare_forms;
  for (std::size_t part = 0; part < parts_.size(); ++part) {
    for (const Beginning& key : KeysOf(parts_[part].spelling)) {
      if (key.is_rare()) rare_forms[key.rare_form];
      std::vector<std::int32_t>& parts = (key.is_rare() ? rare : usual)[key.bytes];
      const auto index = static_cast<std::int32_t>(part);
      if (parts.empty() || parts.back() != index) parts.push_back(index);
    }
  }
  keys_ = std::make_unique<SoughtKeys>(usual);
  rare_keys_ = std::make_unique<SoughtKeys>(rare);
  rare_forms_ = std::make_unique<SoughtKeys>(rare_forms);
}

Encoding GuessEncoding(const SubstitutionTables& tables) {
  const bool is_utf8 =
      std::all_of(tables.LeftTexts.begin(), tables.LeftTexts.end(),
                  [](const std::string& text) { return Decode(text, Encoding::kUtf8); });
  return is_utf8 ? Encoding::kUtf8 : Encoding::kWindows1252;
}

}  // namespace morvex
