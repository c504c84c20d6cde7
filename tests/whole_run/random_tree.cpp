// Random source trees. Many of the names are picked from fixed lists; for every rule about names,
// these lists contain names to which the rule applies.

#include <set>

#include "random_case.h"

namespace morvex::whole_run {
namespace {

constexpr std::int64_t kNanoseconds = 1'000'000'000;
constexpr std::size_t kBlock = 65536;
constexpr std::size_t kMegabyte = 1048576;

const std::vector<std::string>& OddNames() {
  static const std::vector<std::string> kNames{"Morvex",
                                               "Morvex.exe",
                                               "Morvex.log",
                                               "Morvex.txt",
                                               "Morvex.",
                                               "MorvexX",
                                               "MorvexXY",
                                               "morvex.txt",
                                               "Morvex.a.txt",
                                               "xMorvex.txt",
                                               "Morvex1.txt",
                                               "article",
                                               "cle",
                                               "xcle.txt",
                                               "a.cle",
                                               "article.txt",
                                               "a.b.cle",
                                               "le",
                                               "tijdel.enc",
                                               "morvex-cli.exe",
                                               "morvex-cli",
                                               "morvex.exe",
                                               "archive.tar.gz",
                                               ".txt",
                                               ".hidden",
                                               "trailing.",
                                               "noext",
                                               "a..txt",
                                               "page.html",
                                               "README.TXT",
                                               "x.h",
                                               "two words.txt",
                                               "a.b",
                                               "h",
                                               "b.doc.txt",
                                               "back\\s.txt",
                                               "\xC3\xA9.txt",
                                               "\xFF.txt",
                                               "tijdel.enc2",
                                               "Xtijdel.enc",
                                               "oracle"};
  return kNames;
}

const std::vector<std::string>& FolderNames() {
  static const std::vector<std::string> kNames{
      "one",      "two",        "three",
      "Four.txt", "Recycler",   "recycled",
      "RECYCLE",  "xRecYcLeRx", "System Volume Information",
      "_restore", "a_RESTORE",  "empty",
      ".dot",     "with blank", "system volume information2"};
  return kNames;
}

std::string RandomName(RandomSource* random) {
  if (random->Percent(45)) {
    return random->Pick(OddNames());
  }
  const std::vector<std::string> ends{".txt", ".txt", ".txt",    ".TXT", ".doc", ".html",
                                      ".h",   "",     ".tar.gz", ".",    ".cle", ".log"};
  const std::string stem = random->Text("abAB1", 1, 3);
  return stem + random->Pick(ends);
}

std::string RandomFileBytes(const RandomList& list, RandomSource* random) {
  if (random->OneIn(10)) {
    return {};
  }
  if (random->OneIn(40)) {
    return ContentsAcrossBorder(list, kBlock, random);
  }
  if (random->OneIn(250)) {
    return ContentsAcrossBorder(list, kMegabyte, random);
  }
  return RandomContents(list, random->Below(300), random);
}

Entry RandomFile(const std::string& folder, const std::string& name, const RandomList& list,
                 RandomSource* random) {
  const std::vector<unsigned> permissions{0644, 0644, 0600, 0755, 0444, 0640, 0666, 0777};
  Entry file;
  file.name = folder + "/" + name;
  file.bytes = RandomFileBytes(list, random);
  file.permissions = random->Pick(permissions);
  file.modified_ns = RandomTime(random->OneIn(12), random);
  return file;
}

}  // namespace

std::int64_t RandomTime(bool changed_after_arming, RandomSource* random) {
  const std::int64_t past = 946'684'800;      // the start of the year 2000
  const std::int64_t future = 4'070'908'800;  // the start of the year 2099
  const auto spread = static_cast<std::int64_t>(random->Below(700'000'000));
  const auto fraction = static_cast<std::int64_t>(random->Below(1'000'000'000));
  return ((changed_after_arming ? future : past) + spread / 2) * kNanoseconds + fraction;
}

void AddRandomTree(const std::string& folder, std::size_t depth, const RandomList& list,
                   RandomSource* random, std::vector<Entry>* entries) {
  Entry self;
  self.name = folder;
  self.is_folder = true;
  entries->push_back(self);
  std::set<std::string> used;
  for (std::size_t left = random->Below(8); left > 0; --left) {
    const std::string name = RandomName(random);
    if (used.insert(name).second) {
      entries->push_back(RandomFile(folder, name, list, random));
    }
  }
  if (depth == 0) {
    return;
  }
  for (std::size_t left = random->Below(4); left > 0; --left) {
    const std::string name = random->Pick(FolderNames());
    if (used.insert(name).second) {
      AddRandomTree(folder + "/" + name, depth - 1, list, random, entries);
    }
  }
}

std::string RandomExtensionLines(RandomSource* random) {
  const std::vector<std::string> entries{
      ".txt", ".TXT", ".doc", ".html", ".h", ".tar.gz", ".",    "r.gz",     "icle", "txt", ".enc",
      ".cle", ".exe", ".log", "a.b",   "h",  "",        "oext", ".doc.txt", ".b",   "cle"};
  std::string lines = random->OneIn(6) ? "" : "1.txt\r\n";
  for (std::size_t left = random->Below(8); left > 0; --left) {
    const std::vector<std::string> marks{"1", "1", "1", "0", "x", "2"};
    const std::string mark = random->Pick(marks);
    lines += mark + random->Pick(entries) + "\r\n";
    if (random->OneIn(25)) {
      lines += "\r\n";
    }
  }
  if (random->OneIn(5)) {
    lines += "1.log";  // no line end behind the last line
  }
  return lines;
}

}  // namespace morvex::whole_run
