#include "core/leftovers/spelling.h"

#include <algorithm>
#include <utility>

#include "core/leftovers/letter_case.h"

namespace morvex {
namespace {

constexpr char32_t kLastCharacter = 0x10FFFF;
constexpr char32_t kNoSign = 0;

// The characters of the codes 80 to 9F of Windows-1252. Codes without one stand for themselves.
constexpr std::array<char32_t, 32> kWindowsCharacters = {
    0x20AC, 0x81,   0x201A, 0x192,  0x201E, 0x2026, 0x2020, 0x2021, 0x2C6,  0x2030, 0x160,
    0x2039, 0x152,  0x8D,   0x17D,  0x8F,   0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x2DC,  0x2122, 0x161,  0x203A, 0x153,  0x9D,   0x17E,  0x178};
constexpr char32_t kFirstOfThem = 0x80;
constexpr char32_t kBehindThem = 0xA0;

bool IsSurrogate(char32_t unit) { return unit >= 0xD800 && unit <= 0xDFFF; }

std::uint8_t ByteAt(std::string_view bytes, std::size_t at) {
  return static_cast<std::uint8_t>(bytes[at]);
}

char Byte(char32_t value) { return static_cast<char>(value & 0xFF); }

// Bytes of the UTF-8 sequence that a byte begins; 0 when it begins none.
std::size_t Utf8Length(std::uint8_t lead) {
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead <= 0xDF) return 2;
  if (lead >= 0xE0 && lead <= 0xEF) return 3;
  return lead >= 0xF0 && lead <= 0xF4 ? 4 : 0;
}

std::optional<std::u32string> DecodeUtf8(std::string_view bytes) {
  constexpr std::array<char32_t, 5> kLeast = {0, 0, 0x80, 0x800, 0x10000};
  std::u32string text;
  for (std::size_t at = 0; at < bytes.size();) {
    const std::size_t length = Utf8Length(ByteAt(bytes, at));
    if (length == 0 || bytes.size() - at < length) return std::nullopt;
    char32_t character = ByteAt(bytes, at);
    if (length > 1) character &= 0xFFU >> (length + 1);
    for (std::size_t i = 1; i < length; ++i) {
      const std::uint8_t next = ByteAt(bytes, at + i);
      if ((next & 0xC0) != 0x80) return std::nullopt;
      character = character << 6 | (next & 0x3F);
    }
    if (character < kLeast[length] || character > kLastCharacter || IsSurrogate(character)) {
      return std::nullopt;
    }
    text += character;
    at += length;
  }
  return text;
}

std::optional<std::u32string> DecodeUtf16(std::string_view bytes, bool big_endian) {
  if (bytes.size() % 2 != 0) return std::nullopt;
  std::u32string text;
  char32_t high = 0;
  for (std::size_t at = 0; at < bytes.size(); at += 2) {
    const char32_t unit = static_cast<char32_t>(ByteAt(bytes, at + (big_endian ? 0 : 1))) << 8 |
                          ByteAt(bytes, at + (big_endian ? 1 : 0));
    const bool is_low = unit >= 0xDC00 && unit <= 0xDFFF;
    if (is_low != (high != 0)) return std::nullopt;
    if (is_low) {
      text += static_cast<char32_t>(0x10000 + ((high - 0xD800) << 10 | (unit - 0xDC00)));
      high = 0;
    } else if (IsSurrogate(unit)) {
      high = unit;
    } else {
      text += unit;
    }
  }
  if (high != 0) return std::nullopt;
  return text;
}

std::string EncodeUtf8(char32_t character) {
  if (character < 0x80) return {Byte(character)};
  if (character < 0x800) return {Byte(0xC0 | character >> 6), Byte(0x80 | (character & 0x3F))};
  if (character < 0x10000) {
    return {Byte(0xE0 | character >> 12), Byte(0x80 | (character >> 6 & 0x3F)),
            Byte(0x80 | (character & 0x3F))};
  }
  return {Byte(0xF0 | character >> 18), Byte(0x80 | (character >> 12 & 0x3F)),
          Byte(0x80 | (character >> 6 & 0x3F)), Byte(0x80 | (character & 0x3F))};
}

std::optional<std::string> EncodeWindows1252(char32_t character) {
  const auto found = std::find(kWindowsCharacters.begin(), kWindowsCharacters.end(), character);
  if (found != kWindowsCharacters.end()) {
    return std::string(
        1, Byte(kFirstOfThem + static_cast<char32_t>(found - kWindowsCharacters.begin())));
  }
  if (character > 0xFF || (character >= kFirstOfThem && character < kBehindThem)) {
    return std::nullopt;
  }
  return std::string(1, Byte(character));
}

std::string EncodeUtf16(char32_t character, bool big_endian) {
  std::string bytes;
  const auto add = [&](char32_t unit) {
    bytes += Byte(big_endian ? unit >> 8 : unit);
    bytes += Byte(big_endian ? unit : unit >> 8);
  };
  if (character < 0x10000) {
    add(character);
  } else {
    add(0xD800 + ((character - 0x10000) >> 10));
    add(0xDC00 + ((character - 0x10000) & 0x3FF));
  }
  return bytes;
}

}  // namespace

std::optional<std::u32string> Decode(std::string_view bytes, Encoding encoding) {
  switch (encoding) {
    case Encoding::kUtf8:
      return DecodeUtf8(bytes);
    case Encoding::kUtf16Le:
    case Encoding::kUtf16Be:
      return DecodeUtf16(bytes, encoding == Encoding::kUtf16Be);
    case Encoding::kWindows1252:
    case Encoding::kBytes:
      break;
  }
  std::u32string text;
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    const char32_t code = ByteAt(bytes, at);
    const bool is_special =
        encoding == Encoding::kWindows1252 && code >= kFirstOfThem && code < kBehindThem;
    text += is_special ? kWindowsCharacters[code - kFirstOfThem] : code;
  }
  return text;
}

std::optional<std::string> Encode(char32_t character, Encoding encoding) {
  switch (encoding) {
    case Encoding::kUtf8:
      return EncodeUtf8(character);
    case Encoding::kWindows1252:
      return EncodeWindows1252(character);
    case Encoding::kUtf16Le:
    case Encoding::kUtf16Be:
      return EncodeUtf16(character, encoding == Encoding::kUtf16Be);
    case Encoding::kBytes:
      break;
  }
  if (character > 0xFF) return std::nullopt;
  return std::string(1, Byte(character));
}

std::optional<std::string> Encode(std::u32string_view text, Encoding encoding) {
  std::string bytes;
  for (const char32_t character : text) {
    const std::optional<std::string> encoded = Encode(character, encoding);
    if (!encoded) return std::nullopt;
    bytes += *encoded;
  }
  return bytes;
}

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
  std::u32string as_written;  // of each letter, where that is not what it was taken apart to
  for (const char32_t letter : text) {
    const std::u32string_view one(&letter, 1);
    const std::u32string apart =
        encoding == Encoding::kBytes ? std::u32string(one) : TakenApart(one);
    const bool is_sign = apart.size() == 1 && apart != one;
    letters += apart;
    as_written.append(apart.size(), is_sign ? letter : kNoSign);
  }
  spelling.letters.reserve(letters.size());
  for (std::size_t at = 0; at < letters.size(); ++at) {
    const LetterWays& ways =
        WaysOf(std::u32string_view(letters).substr(at), encoding, as_written[at]);
    if (ways.empty()) return std::nullopt;
    spelling.letters.push_back(&ways);
  }
  return spelling;
}

const LetterWays& Alphabet::WaysOf(std::u32string_view text, Encoding encoding, char32_t sign) {
  std::vector<JoinedLetter> joined;
  if (encoding != Encoding::kBytes) joined = JoinedAtBeginning(text);
  // What the ways depend on: the letter, and those that may be joined with it.
  std::size_t count = 1;
  for (const JoinedLetter& each : joined) count = std::max(count, each.letters);
  std::u32string key(text.substr(0, count));
  if (sign != kNoSign) key.front() = sign;
  const auto [known, is_new] =
      known_[static_cast<std::size_t>(encoding)].try_emplace(std::move(key));
  LetterWays& ways = known->second;
  if (!is_new) return ways;
  const auto add = [&](std::u32string_view way, std::size_t letters, bool is_rare) {
    // Of bytes that are no known text only those of ASCII are letters.
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
  for (const JoinedLetter& each : joined) add({&each.letter, 1}, each.letters, true);
  // So that one that begins with another one stands in front of it.
  std::stable_sort(ways.begin(), ways.end(), [](const LetterWay& one, const LetterWay& other) {
    return one.bytes.size() > other.bytes.size();
  });
  return ways;
}

}  // namespace morvex
