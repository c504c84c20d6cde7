// Makes file contents for a list. Left texts of the list are planted in them, with wildcards filled
// in, so that captures have many lengths. Some planted texts lack their last byte, so that attempts
// fail late.

#include <algorithm>

#include "random_list.h"

namespace morvex::whole_run {
namespace {

// Fills the space between planted texts; no alphabet contains it.
constexpr char kFiller = '-';

std::string LineBreaksFor(const std::string& text) {
  std::string result = text;
  for (std::size_t at = result.find("[CRLF]"); at != std::string::npos;
       at = result.find("[CRLF]")) {
    result.replace(at, 6, "\r\n");
  }
  return result;
}

// Returns one of the list's left texts as a file might contain it: each wildcard is replaced by
// `span` or kept, and the last byte may be missing.
std::string Planted(const RandomList& list, const std::string& span, RandomSource* random) {
  if (list.rows.empty()) {
    return random->Text(list.alphabet, 0, 6);
  }
  const std::string left = LineBreaksFor(random->Pick(list.rows).left);
  std::string text;
  for (const char letter : left) {
    const bool is_joker = list.joker != 0 && letter == static_cast<char>(list.joker);
    if (is_joker && !random->OneIn(5)) {
      text += span;
    } else {
      text += letter;
    }
  }
  if (random->OneIn(6) && !text.empty()) {
    text.pop_back();
  }
  return text;
}

std::string OddPiece(const RandomList& list, RandomSource* random) {
  const std::vector<std::string> pieces{std::string(1, '\0'), "\xFF", "\r\n", "\n", "\r", "[CRLF]",
                                        std::string(3, '\0'), "*",    "?",    "-"};
  if (list.joker != 0 && random->OneIn(3)) {
    return std::string(1, static_cast<char>(list.joker));
  }
  return random->Pick(pieces);
}

void Overlay(std::size_t at, const std::string& text, std::string* bytes) {
  for (std::size_t i = 0; i < text.size() && at + i < bytes->size(); ++i) {
    (*bytes)[at + i] = text[i];
  }
}

}  // namespace

std::string RandomContents(const RandomList& list, std::size_t size, RandomSource* random) {
  std::string bytes;
  while (bytes.size() < size) {
    // Most contents begin with a planted text, because a match at the first byte is a special case:
    // it may write in front of the first byte.
    const std::size_t kind = bytes.empty() && !random->OneIn(3) ? 50 : random->Below(100);
    if (kind < 45) {
      bytes += random->Text(list.alphabet, 1, 4);
    } else if (kind < 85) {
      const std::string span = random->Text(list.alphabet, 0, 12);
      bytes += Planted(list, span, random);
    } else {
      bytes += OddPiece(list, random);
    }
  }
  return bytes;
}

std::string ContentsAcrossBorder(const RandomList& list, std::size_t border, RandomSource* random) {
  const std::size_t size = border - 40 + random->Below(200);
  std::string bytes(size, kFiller);
  std::vector<std::size_t> places{border, border / 2, border / 16 * 5, border - 4096, 4096, size};
  for (const std::size_t place : places) {
    const std::size_t back = random->Below(24);
    std::string island = RandomContents(list, random->Between(1, 40), random);
    // Most islands (texts among the filler) end with a NUL. This byte ends a capture that the
    // island left open.
    if (!random->OneIn(4)) {
      island += '\0';
    }
    Overlay(place - std::min(place, back), island, &bytes);
  }
  // In some contents, the wildcards of one planted text are replaced by about as many bytes as a
  // capture can have at most.
  if (random->OneIn(2)) {
    const std::string span(random->Between(32740, 32775), kFiller);
    Overlay(random->Between(1, 200), Planted(list, span, random), &bytes);
  }
  return bytes;
}

}  // namespace morvex::whole_run
