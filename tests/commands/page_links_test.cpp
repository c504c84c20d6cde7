// Links and pictures in the pages lead to files that exist, and links to headings lead to headings
// that exist. Links to other sites are not checked.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "tests/commands/command_scene.h"

namespace morvex::commands {
namespace {

namespace fs = std::filesystem;

std::string Text(const fs::path& page) { return whole_run::ReadWholeFile(page.string()); }

std::vector<fs::path> Pages() {
  const fs::path root = SourceRoot();
  std::vector<fs::path> pages;
  for (const char* name : {"README.md", "CONTRIBUTING.md", "CHANGELOG.md", "SECURITY.md"}) {
    pages.push_back(root / name);
  }
  for (const fs::directory_entry& entry : fs::directory_iterator(root / "docs")) {
    if (entry.path().extension() == ".md") pages.push_back(entry.path());
  }
  return pages;
}

// Whether the line begins or ends a block of code. Such a line may be indented, because the block
// may belong to a list.
bool IsFence(const std::string& line) {
  return line.find("```") != std::string::npos && line.find("```") == line.find_first_not_of(' ');
}

// Returns the page without blocks of code and without code between backticks, because brackets in
// code do not mark links.
std::string Prose(const std::string& text) {
  std::istringstream lines(text);
  std::string prose;
  bool in_block = false;
  bool in_code = false;
  for (std::string line; std::getline(lines, line);) {
    if (IsFence(line)) in_block = !in_block;
    if (line.empty()) in_code = false;
    if (in_block || IsFence(line)) continue;
    for (const char byte : line) {
      if (byte == '`') in_code = !in_code;
      if (!in_code && byte != '`') prose += byte;
    }
    prose += '\n';
  }
  return prose;
}

// Returns every text between `open` and the next `close`.
std::vector<std::string> Between(std::string_view text, std::string_view open,
                                 std::string_view close) {
  std::vector<std::string> found;
  for (std::size_t at = text.find(open); at != std::string_view::npos; at = text.find(open, at)) {
    at += open.size();
    found.emplace_back(text.substr(at, text.find(close, at) - at));
  }
  return found;
}

std::vector<std::string> Links(const std::string& text) {
  const std::string prose = Prose(text);
  std::vector<std::string> links = Between(prose, "](", ")");
  for (const char* open : {"src=\"", "srcset=\"", "href=\""}) {
    for (std::string& link : Between(prose, open, "\"")) links.push_back(std::move(link));
  }
  return links;
}

// Returns the name by which a link reaches a heading: capital letters become small letters, blanks
// become hyphens, and punctuation other than "-" and "_" is left out.
std::string NameOfHeading(std::string_view heading) {
  std::string name;
  for (const char byte : heading) {
    const auto code = static_cast<unsigned char>(byte);
    if (byte == ' ') name += '-';
    if (byte == '-' || byte == '_' || code > 0x7F || std::isalnum(code) != 0) {
      name += static_cast<char>(std::tolower(code));
    }
  }
  return name;
}

std::set<std::string> Headings(const std::string& text) {
  std::istringstream lines(text);
  std::set<std::string> names;
  bool in_block = false;
  for (std::string line; std::getline(lines, line);) {
    if (IsFence(line)) in_block = !in_block;
    const std::size_t marks = line.find_first_not_of('#');
    if (in_block || marks == 0 || marks == std::string::npos || line[marks] != ' ') continue;
    names.insert(NameOfHeading(std::string_view(line).substr(marks + 1)));
  }
  return names;
}

// Returns what is wrong with a link of the page; empty if the link leads to an existing file or
// heading.
std::string Problem(const fs::path& page, const std::string& link) {
  const std::size_t mark = std::min(link.find('#'), link.size());
  const std::string file = link.substr(0, mark);
  const fs::path target = file.empty() ? page : page.parent_path() / file;
  if (!fs::exists(target)) return "no such file";
  if (mark == link.size()) return "";
  return Headings(Text(target)).contains(link.substr(mark + 1)) ? "" : "no such heading";
}

bool LeadsElsewhere(const std::string& link) { return link.find("://") != std::string::npos; }

TEST(PageLinks, LeadToFilesAndHeadingsThatExist) {
  std::size_t checked = 0;
  for (const fs::path& page : Pages()) {
    for (const std::string& link : Links(Text(page))) {
      if (LeadsElsewhere(link)) continue;
      ++checked;
      EXPECT_EQ(Problem(page, link), "") << page << ": " << link;
    }
  }
  EXPECT_GE(checked, 40u);
}

TEST(PageLinks, AreFoundInLinesTablesAndPictures) {
  const std::string text =
      "# One: `-if`\n[a](x.md#b) and [c](y.md)\n| ![d](z.png) |\n\n<img src=\"i.png\" "
      "srcset=\"s\">\n"
      "```\n# no heading\n[no](link)\n```\n`[no](link)` `code over\ntwo lines` [e](v.md)\n";
  EXPECT_EQ(Links(text),
            (std::vector<std::string>{"x.md#b", "y.md", "z.png", "v.md", "i.png", "s"}));
  EXPECT_EQ(Headings(text), (std::set<std::string>{"one--if"}));
}

TEST(PageLinks, ThatLeadNowhereAreTold) {
  const fs::path page = fs::path(SourceRoot()) / "README.md";
  EXPECT_EQ(Problem(page, "docs/manual.md#the-wildcard"), "");
  EXPECT_EQ(Problem(page, "#pages"), "");
  EXPECT_EQ(Problem(page, "docs/manual.md#no-such-part"), "no such heading");
  EXPECT_EQ(Problem(page, "docs/no-such-page.md"), "no such file");
}

}  // namespace
}  // namespace morvex::commands
