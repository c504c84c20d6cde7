// Makes rows, then writes them as lines in one of the forms that a list file comes in: as the
// program writes it, typed by hand, or damaged.

#include "random_list.h"

namespace morvex::whole_run {
namespace {

const std::vector<std::string>& Separators() {
  static const std::vector<std::string> kSeparators{"|",  "|",  "|", "|",    "||", ";;",
                                                    "=>", "\t", " ", "a=b",  "a",  "bb",
                                                    "",   ";",  "=", "\xFF", "|x|"};
  return kSeparators;
}

void ChooseJoker(RandomList* list, RandomSource* random) {
  if (random->Percent(20)) {
    const std::vector<std::string> lines{"jok=", std::string("jok=\0", 5), "", "="};
    list->joker_line = random->Pick(lines);
    return;
  }
  const std::string jokers = "******??a|[C]\r\xFFj=";
  const char joker = random->Letter(jokers);
  list->joker = static_cast<unsigned char>(joker);
  list->joker_line = std::string("jok=") + joker;
  if (joker == 'j' && random->OneIn(2)) {
    // Without "=", the whole line is the value, and the wildcard is its first byte: "j".
    list->joker_line = "jok";
  } else if (random->OneIn(8)) {
    list->joker_line += "xyz";
  }
}

void ChooseSeparator(RandomList* list, RandomSource* random) {
  list->separator = random->Pick(Separators());
  const bool bare = random->OneIn(8) && list->separator.find('=') == std::string::npos;
  list->separator_line = (bare ? "" : "sep=") + list->separator;
}

std::string ChooseAlphabet(RandomSource* random) {
  const std::string letters = "abcde";
  std::string alphabet = letters.substr(0, random->Between(2, 5));
  const std::vector<std::string> odd{std::string(1, '\0'), "\xFF", "\r", "\xE9", "x"};
  if (random->OneIn(3)) {
    alphabet += random->Pick(odd);
  }
  return alphabet;
}

// Returns the wildcard as text, or some letter if there is no wildcard.
std::string JokerText(const RandomList& list) {
  return std::string(1, list.joker == 0 ? 'a' : static_cast<char>(list.joker));
}

std::string RandomLeft(const RandomList& list, RandomSource* random) {
  const std::string joker = JokerText(list);
  const std::string prefix = random->Text(list.alphabet, 1, 3);
  const std::string tail = random->Text(list.alphabet, 1, 4);
  switch (random->Below(16)) {
    case 0:
      return joker + tail;
    case 1:
      return prefix + joker;
    case 2:
      return prefix + joker + prefix.substr(random->Below(prefix.size()));
    case 3:
      return prefix + joker + tail + joker;
    case 4:
      return prefix + joker + random->Text(list.alphabet, 0, 2) + joker + tail;
    case 5:
      return prefix + joker + joker;
    case 6:
      return prefix + "[CRLF]" + random->Text(list.alphabet, 0, 2);
    case 7:
      return prefix + joker + "[CRLF]";
    case 8:
      return random->OneIn(2) ? "[CRLF" + prefix : joker;
    case 9:
    case 10:
      return prefix + joker + tail;
    case 11:
    case 12:
      // The part behind the wildcard is also the end of the part in front of it.
      return prefix + tail + joker + tail;
    default:
      return random->Text(list.alphabet, 1, 5);
  }
}

std::string RandomRight(const RandomList& list, RandomSource* random) {
  const std::string joker = JokerText(list);
  const std::string letters = list.alphabet + "XYZ";
  const std::string front = random->Text(letters, 0, 3);
  const std::string back = random->Text(letters, 0, 3);
  switch (random->Below(10)) {
    case 0:
      return "";
    case 1:
      return front + joker + back;
    case 2:
      return front + joker + joker + back;
    case 3:
      return joker + front + joker + back + joker;
    case 4:
      return front + "[CRLF]" + back;
    case 5:
      return front + joker + "[CRLF]" + back + "[crlf]";
    case 6:
      return front + list.separator + back;
    default:
      return front + back;
  }
}

Row RandomRow(const RandomList& list, RandomSource* random) {
  Row row;
  row.left = RandomLeft(list, random);
  row.right = RandomRight(list, random);
  if (random->OneIn(12)) {
    row.left.clear();
  }
  if (!list.rows.empty() && random->OneIn(8)) {
    row.left = random->Pick(list.rows).left;
  }
  return row;
}

std::string LineEnd(std::size_t form, RandomSource* random) {
  const std::vector<std::string> ends{"\r\n", "\r\n", "\n"};
  return form == 2 && random->OneIn(2) ? "\n" : ends[form];
}

std::string ListBytes(const RandomList& list, RandomSource* random) {
  const std::string& mark = list.separator;
  const std::size_t end_form = random->Below(3);
  const std::size_t closing = random->Below(5);
  std::string bytes;
  for (std::size_t at = 0; at < list.rows.size(); ++at) {
    const Row& row = list.rows[at];
    if (random->OneIn(20)) {
      bytes += "no such thing" + LineEnd(end_form, random);
    }
    if (random->OneIn(25)) {
      bytes += row.left + mark + mark + "cd" + LineEnd(end_form, random);
    }
    const bool last = at + 1 == list.rows.size();
    bytes += row.left + mark + row.right + (last && closing == 0 ? mark + mark : "");
    bytes += LineEnd(end_form, random);
  }
  if (closing == 1 || closing == 2) {
    bytes += mark + mark + mark + LineEnd(end_form, random);
  }
  if (closing == 2) {
    bytes += "ab" + mark + "after the end" + LineEnd(end_form, random);
  }
  while (random->OneIn(3) && !bytes.empty() && (bytes.back() == '\n' || bytes.back() == '\r')) {
    bytes.pop_back();
  }
  return bytes;
}

}  // namespace

RandomList MakeRandomList(RandomSource* random) {
  RandomList list;
  list.alphabet = ChooseAlphabet(random);
  ChooseJoker(&list, random);
  ChooseSeparator(&list, random);
  for (std::size_t left = random->Below(9); left > 0; --left) {
    list.rows.push_back(RandomRow(list, random));
  }
  list.bytes = ListBytes(list, random);
  return list;
}

}  // namespace morvex::whole_run
