#include "ui/commands/findings_output.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "core/text/shown_text.h"

namespace morvex {
namespace {

using Json = nlohmann::ordered_json;
using namespace std::string_literals;

// The most bytes of a row's left text that a line of the output shows.
constexpr std::size_t kMostOfARow = 80;

const char* NameOf(Encoding encoding) {
  switch (encoding) {
    case Encoding::kUtf8:
      return "UTF-8";
    case Encoding::kWindows1252:
      return "Windows-1252";
    case Encoding::kUtf16Le:
      return "UTF-16LE";
    case Encoding::kUtf16Be:
      return "UTF-16BE";
    case Encoding::kBytes:
      break;
  }
  return "bytes";
}

const char* NameOf(Within within) {
  if (within == Within::kName) return "name";
  return within == Within::kLink ? "link" : "contents";
}

bool IsInListEncoding(const CheckSubject& subject, Encoding encoding) {
  return encoding == subject.list_encoding || encoding == Encoding::kBytes;
}

// Returns how the left text is written where it was found, as in "as it stands" or "UTF-16LE, other
// letter case".
std::string FormOf(const CheckSubject& subject, const Leftover& leftover) {
  const bool in_list_encoding = IsInListEncoding(subject, leftover.encoding);
  std::string form = in_list_encoding ? "" : NameOf(leftover.encoding);
  if (!leftover.as_written) {
    form += form.empty() ? "other letter case" : ", other letter case";
  } else if (in_list_encoding) {
    form = "as it stands";
  }
  return leftover.is_wildcard ? form + ", by its parts" : form;
}

// A finding and the bytes around it, as text.
struct Surroundings {
  std::string before;
  std::string text;
  std::string behind;
};

Surroundings SurroundingsOf(const Finding& finding) {
  const Leftover& leftover = finding.leftover;
  const std::string_view around = finding.around;
  const bool is_wide =
      leftover.encoding == Encoding::kUtf16Le || leftover.encoding == Encoding::kUtf16Be;
  // A UTF-16 unit has two bytes, so the shown bytes must start at an even distance from the
  // finding.
  const std::size_t odd = is_wide ? leftover.before % 2 : 0;
  const auto size =
      static_cast<std::size_t>(std::min<std::uint64_t>(leftover.size, LeftoverSearch::kShown));
  const bool is_cut = size < leftover.size;
  Surroundings surroundings;
  surroundings.before = ShownPiece(around.substr(odd, leftover.before - odd), leftover.encoding);
  surroundings.text = ShownPiece(around.substr(leftover.before, size), leftover.encoding);
  if (is_cut) {
    surroundings.text += "...";
  } else {
    surroundings.behind = ShownPiece(around.substr(leftover.before + size), leftover.encoding);
  }
  return surroundings;
}

std::int64_t LineOfRow(const CheckSubject& subject, std::int64_t row) {
  const auto index = static_cast<std::size_t>(row);
  return index < subject.review.line_of_row.size() ? subject.review.line_of_row[index] : 0;
}

class Lines : public FindingsOutput {
 public:
  Lines(const CheckSubject& subject, std::ostream& output, MessageColours colours)
      : subject_(subject), output_(output), colours_(colours) {}

  void Entry(const CheckedEntry& entry) override {
    for (const Finding& finding : entry.findings) Line(entry, finding);
    if (entry.not_kept > 0) {
      output_ << Painted(ShownPath(entry.path), Paint::kPlace, colours_) << ": " << entry.not_kept
              << " further findings\n";
    }
  }

  void End(const CheckTotals& /*totals*/) override { output_ << std::flush; }

 private:
  void Line(const CheckedEntry& entry, const Finding& finding) {
    const Leftover& leftover = finding.leftover;
    const std::string line = std::to_string(leftover.line);
    const std::string place =
        ShownPath(entry.path) +
        (finding.within == Within::kContents ? ":" + line : ": "s + NameOf(finding.within));
    const Surroundings around = SurroundingsOf(finding);
    const std::string& left = subject_.tables.LeftTexts[static_cast<std::size_t>(leftover.row)];
    std::string row =
        ShownPiece(std::string_view(left).substr(0, kMostOfARow), subject_.list_encoding);
    if (left.size() > kMostOfARow) row += "...";
    output_ << Painted(place, Paint::kPlace, colours_) << ": byte " << leftover.offset << ": row "
            << leftover.row + 1 << " \"" << row << "\", " << FormOf(subject_, leftover) << ": "
            << around.before << Painted(around.text, Paint::kFinding, colours_) << around.behind
            << "\n";
  }

  const CheckSubject& subject_;
  std::ostream& output_;
  const MessageColours colours_;
};

class JsonDocument : public FindingsOutput {
 public:
  JsonDocument(const CheckSubject& subject, std::ostream& output)
      : subject_(subject), output_(output) {
    Json head;
    head["program"] = "Morvex";
    head["version"] = subject.version;
    head["tree"] = ShownPath(subject.tree);
    head["list"] = ShownPath(subject.list);
    head["list_encoding"] = NameOf(subject.list_encoding);
    head["all_rows"] = subject.all_rows;
    std::string text = head.dump(2);
    text.resize(text.size() - 2);  // drops the closing brace and the line break in front of it
    output_ << text << ",\n  \"findings\": [";
  }

  void Entry(const CheckedEntry& entry) override {
    for (const Finding& finding : entry.findings) Object(entry, finding);
    if (entry.not_kept > 0) not_kept_.push_back({ShownPath(entry.path), entry.not_kept});
    const char* const what = NameAloneText(entry.kind);
    if (what != nullptr) {
      Json name = {{"path", ShownPath(entry.path)}, {"what", what}};
      if (entry.is_link) name["link"] = ShownPath(entry.link_text);
      names_.push_back(std::move(name));
    }
    if (entry.error != ErrorNumber::kNone) {
      unreadable_.push_back({{"path", ShownPath(entry.path)},
                             {"error", static_cast<int>(entry.error)},
                             {"why", ErrorText(entry.error)}});
    }
  }

  void End(const CheckTotals& totals) override {
    const Json count = {
        {"files", totals.files.all},
        {"folders", totals.folders.all},
        {"names", totals.names.all},
        {"bytes", totals.bytes},
        {"findings", totals.findings},
        {"with_findings",
         totals.files.with_findings + totals.folders.with_findings + totals.names.with_findings},
        {"files_with_findings", totals.files.with_findings},
        {"folders_with_findings", totals.folders.with_findings},
        {"names_with_findings", totals.names.with_findings},
        {"unreadable", totals.unreadable}};
    output_ << (any_ ? "\n  ],\n" : "],\n") << "  \"not_listed\": " << not_kept_.dump()
            << ",\n  \"names_alone\": " << names_.dump()
            << ",\n  \"unreadable\": " << unreadable_.dump()
            << ",\n  \"interrupted\": " << Json(totals.interrupted).dump()
            << ",\n  \"totals\": " << count.dump() << "\n}\n"
            << std::flush;
  }

 private:
  void Object(const CheckedEntry& entry, const Finding& finding) {
    const Leftover& leftover = finding.leftover;
    const Surroundings around = SurroundingsOf(finding);
    Json object;
    object["path"] = ShownPath(entry.path);
    object["where"] = NameOf(finding.within);
    object["byte"] = leftover.offset;
    object["line"] = leftover.line;
    object["size"] = leftover.size;
    object["row"] = leftover.row + 1;
    object["row_line"] = LineOfRow(subject_, leftover.row);
    object["left"] = ShownText(subject_.tables.LeftTexts[static_cast<std::size_t>(leftover.row)]);
    object["form"] = FormOf(subject_, leftover);
    object["encoding"] = NameOf(leftover.encoding);
    object["as_written"] = leftover.as_written;
    object["before"] = around.before;
    object["text"] = around.text;
    object["behind"] = around.behind;
    output_ << (any_ ? ",\n    " : "\n    ") << object.dump();
    any_ = true;
  }

  const CheckSubject& subject_;
  std::ostream& output_;
  bool any_ = false;
  Json not_kept_ = Json::array();
  Json names_ = Json::array();
  Json unreadable_ = Json::array();
};

}  // namespace

const char* NameAloneText(CheckedKind kind) {
  switch (kind) {
    case CheckedKind::kFolderElsewhere:
      return "link to a folder that is gone through under another path";
    case CheckedKind::kBrokenLink:
      return "broken link";
    case CheckedKind::kSpecial:
      return "pipe, socket or device";
    case CheckedKind::kFile:
    case CheckedKind::kFolder:
      break;
  }
  return nullptr;
}

std::unique_ptr<FindingsOutput> FindingsAsLines(const CheckSubject& subject, std::ostream& output,
                                                MessageColours colours) {
  return std::make_unique<Lines>(subject, output, colours);
}

std::unique_ptr<FindingsOutput> FindingsAsJson(const CheckSubject& subject, std::ostream& output) {
  return std::make_unique<JsonDocument>(subject, output);
}

}  // namespace morvex
