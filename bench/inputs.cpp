#include "bench/inputs.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <set>

namespace morvex::bench {
namespace {

using Rows = std::vector<std::pair<std::string, std::string>>;

// A random number generator whose numbers do not depend on the standard library.
class Random {
 public:
  std::uint64_t Next() {
    state_ ^= state_ << 13;
    state_ ^= state_ >> 7;
    state_ ^= state_ << 17;
    return state_;
  }
  std::size_t Below(std::size_t bound) { return static_cast<std::size_t>(Next() >> 16) % bound; }

 private:
  std::uint64_t state_ = 88172645463325252ULL;
};

std::string Number(std::size_t number, int width) {
  char text[32];
  std::snprintf(text, sizeof text, "%0*zu", width, number);
  return text;
}

// Returns `count` different names of one or two words, such as "Jansen Kolstra".
std::vector<std::string> MakeNames(std::size_t count, Random& random) {
  static constexpr std::array kStarts = {"Ba", "Bre", "Da",  "De", "Fe",  "Gro", "Ha",  "Jan",
                                         "Ka", "Kol", "La",  "Me", "Mol", "Ni",  "Pe",  "Ri",
                                         "Sa", "Smi", "Ste", "Ta", "Ver", "Vis", "Wil", "Zan"};
  static constexpr std::array kMiddles = {"a",  "be", "der", "do", "en", "kel", "le",  "li",
                                          "ma", "ne", "ni",  "ra", "ro", "sel", "ter", "ve"};
  static constexpr std::array kEnds = {"berg", "boer", "dijk", "horst", "ing", "ks",
                                       "len",  "mans", "ma",   "na",    "ser", "sen",
                                       "stra", "veld", "vis",  "wijk"};
  const auto word = [&] {
    std::string text = kStarts[random.Below(kStarts.size())];
    for (std::size_t more = random.Below(3); more > 0; --more) {
      text += kMiddles[random.Below(kMiddles.size())];
    }
    return text + kEnds[random.Below(kEnds.size())];
  };
  std::set<std::string> seen;
  std::vector<std::string> names;
  while (names.size() < count) {
    const std::string name = random.Below(3) == 0 ? word() + " " + word() : word();
    if (seen.insert(name).second) names.push_back(name);
  }
  return names;
}

// Returns sentences of common words; about every fortieth word is one of `names`.
std::string MakeProse(std::size_t size, const std::vector<std::string>& names, Random& random) {
  static constexpr std::array kWords = {
      "the",     "of",      "and",       "to",         "a",       "in",        "that",
      "is",      "was",     "for",       "on",         "with",    "as",        "at",
      "by",      "from",    "they",      "were",       "this",    "have",      "which",
      "would",   "there",   "their",     "report",     "patient", "treatment", "meeting",
      "between", "Tuesday", "hospital",  "letter",     "signed",  "before",    "after",
      "account", "number",  "according", "Department", "However", "The",       "It",
      "When",    "March",   "Amsterdam", "received",   "payment", "question"};
  std::string text;
  text.reserve(size + 64);
  std::size_t line = 0;
  while (text.size() < size) {
    const std::size_t before = text.size();
    if (random.Below(40) == 0 && !names.empty()) {
      text += names[random.Below(names.size())];
    } else {
      text += kWords[random.Below(kWords.size())];
    }
    line += text.size() - before + 1;
    if (line > 76) {
      text += random.Below(6) == 0 ? ".\r\n" : "\r\n";
      line = 0;
    } else {
      text += random.Below(14) == 0 ? ". " : " ";
    }
  }
  return text;
}

Rows NameRows(const std::vector<std::string>& names) {
  Rows rows;
  for (std::size_t i = 0; i < names.size(); ++i) {
    rows.emplace_back(names[i], "Person " + std::to_string(i + 1));
  }
  return rows;
}

Input Prose(std::size_t size, std::size_t count) {
  Random random;
  const std::vector<std::string> names = MakeNames(count, random);
  return {"", "prose, a name in forty words", NameRows(names), 0, MakeProse(size, names, random)};
}

Input NoMatch(std::size_t size) {
  Random random;
  const std::vector<std::string> names = MakeNames(1000, random);
  return {"", "prose without any of the 1,000 names", NameRows(names), 0,
          MakeProse(size, {}, random)};
}

Input Ids(std::size_t size) {
  Random random;
  Input input;
  input.what = "10,000 numbered ids, three in a line of about 140 bytes";
  for (std::size_t i = 1; i <= 10'000; ++i) {
    input.rows.emplace_back("PATIENT-" + Number(i, 6), "P" + Number(i, 5));
  }
  const auto id = [&] { return "PATIENT-" + Number(1 + random.Below(10'000), 6); };
  while (input.text.size() < size) {
    input.text += "2024-03-" + Number(1 + random.Below(28), 2) + " 14:02:51 INFO transfer " + id() +
                  " shares a room with " + id() + "; ward 4 informed, contact person of " + id() +
                  " called\r\n";
  }
  return input;
}

// Ids of two kinds, PAT-00000 and CASE2026-000000. They differ in length and in the number of bytes
// before the running number.
Input TwoIdFamilies(std::size_t size) {
  Random random;
  Input input;
  input.what =
      "5,000 ids PAT-00000 and 5,000 ids CASE2026-000000, three in a line of about 140 bytes";
  const auto patient = [](std::size_t i) { return "PAT-" + Number(i * 17 % 100'000, 5); };
  const auto file = [](std::size_t i) { return "CASE2026-" + Number(i * 13, 6); };
  for (std::size_t i = 0; i < 5'000; ++i) {
    input.rows.emplace_back(patient(i), "P" + Number(i, 5));
    input.rows.emplace_back(file(i), "C" + Number(i, 5));
  }
  while (input.text.size() < size) {
    input.text += "2026-03-" + Number(1 + random.Below(28), 2) + " 14:02:51 INFO " +
                  file(random.Below(5'000)) + " names " + patient(random.Below(5'000)) +
                  "; ward 4 informed, the contact person of " + patient(random.Below(5'000)) +
                  " called about a CASE and a PATH\r\n";
  }
  return input;
}

// Prefixes of many lengths; half of them begin with the same eight bytes.
Input IdsAndNames(std::size_t size) {
  Random random;
  Input input;
  input.what =
      "5,000 ids PATIENT-000000 and 5,000 names, an id and a name in about 190 bytes of prose";
  const std::vector<std::string> names = MakeNames(5'000, random);
  for (std::size_t i = 0; i < 5'000; ++i) {
    input.rows.emplace_back("PATIENT-" + Number(i * 3, 6), "P" + Number(i, 5));
    input.rows.emplace_back(names[i], "Person " + std::to_string(i + 1));
  }
  while (input.text.size() < size) {
    input.text += MakeProse(150, {}, random) + "PATIENT-" + Number(random.Below(5'000) * 3, 6) +
                  ", " + names[random.Below(names.size())] + ".\r\n";
  }
  return input;
}

std::string Letters(std::size_t size, Random& random) {
  std::string text(size, ' ');
  for (char& letter : text) letter = "ACGT"[random.Below(4)];
  return text;
}

Input Dna(std::size_t size) {
  Random random;
  Input input;
  input.what = "four letters, 1,000 rows of 12";
  for (int i = 0; i < 1000; ++i) input.rows.emplace_back(Letters(12, random), "N");
  input.text = Letters(size, random);
  return input;
}

Input Jokers(std::size_t size) {
  Random random;
  Input input;
  input.what = "100 rows such as Field042: *; in prose, one in about 160 bytes";
  input.joker = '*';
  for (std::size_t i = 0; i < 100; ++i) {
    input.rows.emplace_back("Field" + Number(i, 3) + ": *;", "Field" + Number(i, 3) + ": [*];");
  }
  while (input.text.size() < size) {
    input.text += MakeProse(140, {}, random) + "Field" + Number(random.Below(100), 3) + ": " +
                  Letters(8 + random.Below(12), random) + ";\r\n";
  }
  return input;
}

Input TailThatNeverComes(std::size_t size) {
  return {"", "a*zq over nothing but a", {{"a*zq", "<*>"}}, '*', std::string(size, 'a')};
}

Input RowsOfA(std::size_t size) {
  Input input{"", "100 rows a to aaaa..., longest first, over a", {}, 0, std::string(size, 'a')};
  for (std::size_t length = 100; length > 0; --length) {
    input.rows.emplace_back(std::string(length, 'a'), "b");
  }
  return input;
}

Input RowsOfAThatMiss(std::size_t size) {
  Input input{"", "100 rows a...ab of 4 to 103 bytes over a", {}, 0, std::string(size, 'a')};
  for (std::size_t length = 3; length < 103; ++length) {
    input.rows.emplace_back(std::string(length, 'a') + "b", "c");
  }
  return input;
}

Input LongRowsThatMiss(std::size_t size) {
  Input input{"", "10 rows a...ab of 30,000 bytes over a", {}, 0, std::string(size, 'a')};
  for (std::size_t i = 0; i < 10; ++i) {
    input.rows.emplace_back(std::string(30'000 + i, 'a') + "b", "c");
  }
  return input;
}

Input SharedStart(std::size_t size) {
  Random random;
  Input input;
  input.what = "10,000 rows that share 16 bytes, over starts of which half go on as a row";
  for (std::size_t i = 0; i < 10'000; ++i) {
    input.rows.emplace_back("employee-record-" + Number(i * 7, 6), "E" + std::to_string(i));
  }
  while (input.text.size() < size) {
    const std::size_t number = random.Below(10'000) * 7;
    input.text += "employee-record-" + Number(number + random.Below(2), 6) + " ";
  }
  return input;
}

Input EveryByte(std::size_t size) {
  return {"", "a match at every byte", {{"a", "b"}}, 0, std::string(size, 'a')};
}

using Maker = Input (*)(std::size_t);

struct Named {
  const char* name;
  Maker make;
  bool worst;
};

constexpr std::array kInputs = {
    Named{"prose-10", [](std::size_t size) { return Prose(size, 10); }, false},
    Named{"prose-100", [](std::size_t size) { return Prose(size, 100); }, false},
    Named{"prose-1000", [](std::size_t size) { return Prose(size, 1'000); }, false},
    Named{"prose-10000", [](std::size_t size) { return Prose(size, 10'000); }, false},
    Named{"no-match", NoMatch, false},
    Named{"ids-10000", Ids, false},
    Named{"two-id-families", TwoIdFamilies, false},
    Named{"ids-and-names", IdsAndNames, false},
    Named{"dna-1000", Dna, false},
    Named{"jokers-100", Jokers, false},
    Named{"every-byte", EveryByte, true},
    Named{"tail-never-comes", TailThatNeverComes, true},
    Named{"rows-of-a", RowsOfA, true},
    Named{"rows-of-a-that-miss", RowsOfAThatMiss, true},
    Named{"long-rows-that-miss", LongRowsThatMiss, true},
    Named{"shared-16-bytes", SharedStart, true},
};

}  // namespace

std::vector<std::string> InputNames() {
  std::vector<std::string> names;
  for (const Named& input : kInputs) names.emplace_back(input.name);
  return names;
}

bool IsWorstCase(const std::string& name) {
  for (const Named& input : kInputs) {
    if (name == input.name) return input.worst;
  }
  return false;
}

Input MakeInput(const std::string& name, std::size_t size) {
  if (name == "prose-100000") return Prose(size, 100'000);
  for (const Named& input : kInputs) {
    if (name != input.name) continue;
    Input made = input.make(size);
    made.name = name;
    return made;
  }
  return {};
}

}  // namespace morvex::bench
