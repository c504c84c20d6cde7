#include "ui/commands/run_report.h"

#include <algorithm>
#include <array>
#include <istream>
#include <nlohmann/json.hpp>
#include <streambuf>

#include "core/engine/passes/outcomes.h"
#include "core/text/shown_text.h"

namespace morvex {
namespace {

// Keeps its keys in the order of insertion.
using Json = nlohmann::ordered_json;

constexpr const char* kProgramName = "Morvex";

const char* WordFor(OutcomeKind kind) {
  switch (kind) {
    case OutcomeKind::kProcessed:
      return "processed";
    case OutcomeKind::kCopied:
      return "copied";
    case OutcomeKind::kPassedOver:
      return "passed over";
    case OutcomeKind::kFailed:
      return "failed";
    case OutcomeKind::kStopped:
      return "stopped";
    case OutcomeKind::kNotReached:
      break;
  }
  return "not reached";
}

const char* WordsFor(RunEnd end) {
  switch (end) {
    case RunEnd::kNone:
    case RunEnd::kCouldNotRun:
      return "could not run";
    case RunEnd::kStopped:
      return "stopped";
    case RunEnd::kFinished:
      break;
  }
  return "finished";
}

// Returns why a file has no copy, as in "Permission denied: the source folder must be writable".
// The report names the path that the error is about in an element of its own.
std::string WhyFailed(const Outcome& outcome) {
  std::string why(ErrorText(outcome.error));
  const std::string_view cause = CauseText(outcome.cause);
  if (!cause.empty()) why.append(": ").append(cause);
  return why;
}

// Returns the time in UTC, as in 2026-01-31T23:59:59Z.
std::string UtcText(WallTime time) {
  using std::chrono::days;
  using std::chrono::floor;
  using std::chrono::seconds;
  const auto day = floor<days>(time);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss clock(floor<seconds>(time) - day);
  const auto two = [](auto number) {
    std::string digits = std::to_string(static_cast<long long>(number));
    return digits.size() < 2 ? "0" + digits : digits;
  };
  return std::to_string(static_cast<int>(date.year())) + "-" +
         two(static_cast<unsigned>(date.month())) + "-" + two(static_cast<unsigned>(date.day())) +
         "T" + two(clock.hours().count()) + ":" + two(clock.minutes().count()) + ":" +
         two(clock.seconds().count()) + "Z";
}

Json SettingsAsJson(const Program& program, const std::string& settings_file) {
  const RunRequest& request = program.request;
  Json settings;
  if (!settings_file.empty()) settings["settings_file"] = ShownPath(settings_file);
  settings["source"] = ShownPath(request.source);
  settings["target"] = ShownPath(request.target);
  settings["list"] = ShownPath(request.list);
  settings["separator"] = ShownText(program.settings.gSeparator);
  settings["joker"] = ShownText(WildcardText(program.settings.gJoker));
  settings["log"] = request.logging;
  settings["all"] = request.all_files;
  settings["extensions"] = Json::array();
  for (const std::string& extension : request.extensions) {
    settings["extensions"].push_back(ShownText(extension));
  }
  return settings;
}

Json RowsAsJson(const Program& program, const ListReview& review) {
  const SubstitutionTables& tables = program.tables;
  Json rows = Json::array();
  for (std::size_t row = 0; row < tables.LeftTexts.size(); ++row) {
    if (tables.LeftTexts[row].empty() && tables.RightTexts[row].empty()) continue;
    Json entry;
    entry["row"] = row + 1;
    if (row < review.line_of_row.size()) entry["line"] = review.line_of_row[row];
    entry["left"] = ShownText(tables.LeftTexts[row]);
    entry["right"] = ShownText(tables.RightTexts[row]);
    const std::vector<std::int64_t>& hits = program.run.hits_of_rows;
    entry["hits"] = row < hits.size() ? hits[row] : 0;
    rows.push_back(std::move(entry));
  }
  return rows;
}

// A file's bytes as a stream, block by block.
class FileBuffer : public std::streambuf {
 public:
  explicit FileBuffer(InputFile& file) : file_(file) {}

 private:
  int_type underflow() override {
    const Result<std::size_t> read = file_.ReadAt(offset_, block_.data(), block_.size());
    if (!read || read.value == 0) return traits_type::eof();
    offset_ += read.value;
    // The parser takes a NUL for the end of the document. A report holds no NUL, so each NUL is
    // replaced by a byte that makes parsing fail.
    std::replace(block_.begin(), block_.begin() + read.value, '\0', '\x01');
    setg(block_.data(), block_.data(), block_.data() + read.value);
    return traits_type::to_int_type(block_.front());
  }

  InputFile& file_;
  std::uint64_t offset_ = 0;
  std::array<char, 16384> block_{};
};

// Whether the file begins like a report. Rules out most other files without parsing them.
bool BeginsAsReport(InputFile& file) {
  const std::string wanted = std::string("{\"program\":\"") + kProgramName + "\"";
  FileBuffer buffer(file);
  std::istream stream(&buffer);
  char next = 0;
  return std::all_of(wanted.begin(), wanted.end(),
                     [&](char each) { return stream >> next && next == each; });
}

}  // namespace

bool HoldsRunReport(FileService& files, const std::string& path) {
  const Result<std::unique_ptr<InputFile>> file = files.OpenForReading(path);
  if (!file) return false;
  if (!BeginsAsReport(*file.value)) return false;
  FileBuffer buffer(*file.value);
  std::istream stream(&buffer);
  // Drops what is inside the report's parts; keeping it would take memory in proportion to the
  // report.
  const auto is_part = [](int depth, Json::parse_event_t, Json&) { return depth < 2; };
  const Json report = Json::parse(stream, is_part, false);
  const auto is = [&report](const char* key, Json::value_t type) {
    const auto found = report.find(key);
    return found != report.end() && found->type() == type;
  };
  return report.is_object() && report.value("program", Json()) == kProgramName &&
         is("version", Json::value_t::string) && is("started", Json::value_t::string) &&
         is("end", Json::value_t::string) && is("settings", Json::value_t::object) &&
         is("totals", Json::value_t::object) && is("rows", Json::value_t::array) &&
         is("files", Json::value_t::array);
}

RunReport::RunReport(const Program& program)
    : program_(program),
      started_(program.host.system.Now()),
      steady_start_(program.host.system.SteadyTime()),
      last_(steady_start_) {}

void RunReport::OnOutcome(const Outcome& outcome) {
  Json entry;
  entry["path"] = ShownPath(outcome.path);
  if (outcome.is_folder) entry["folder"] = true;
  entry["outcome"] = WordFor(outcome.kind);
  switch (outcome.kind) {
    case OutcomeKind::kProcessed:
      ++totals_.processed;
      break;
    case OutcomeKind::kCopied:
      ++totals_.copied;
      break;
    case OutcomeKind::kPassedOver:
      ++totals_.passed_over;
      entry["why"] = ReasonText(outcome.why);
      if (!outcome.leads_to.empty()) entry["leads_to"] = ShownPath(std::string(outcome.leads_to));
      break;
    case OutcomeKind::kFailed:
      ++totals_.failed;
      entry["why"] = WhyFailed(outcome);
      entry["error"] = static_cast<int>(outcome.error);
      entry["error_path"] = ShownPath(outcome.error_path);
      break;
    case OutcomeKind::kStopped:
      ++totals_.stopped;
      break;
    case OutcomeKind::kNotReached:
      ++totals_.not_reached;
      break;
  }
  const std::chrono::milliseconds now = program_.host.system.SteadyTime();
  if (!outcome.is_folder && outcome.kind != OutcomeKind::kNotReached) {
    entry["bytes"] = outcome.bytes;
    entry["hits"] = outcome.hits;
    entry["milliseconds"] = (now - last_).count();
  }
  last_ = now;
  if (!entries_.empty()) entries_ += ",\n";
  entries_ += "    " + entry.dump();
}

std::string RunReport::Text(const std::string& version, int exit_status, const ListReview& review,
                            const std::string& settings_file) const {
  const RunState& run = program_.run;
  const std::chrono::milliseconds took = program_.host.system.SteadyTime() - steady_start_;
  Json head;
  head["program"] = kProgramName;
  head["version"] = version;
  head["started"] = UtcText(started_);
  head["milliseconds"] = took.count();
  head["end"] = WordsFor(run.end);
  head["exit_status"] = exit_status;
  head["settings"] = SettingsAsJson(program_, settings_file);
  head["totals"] = {{"processed", totals_.processed},
                    {"copied", totals_.copied},
                    {"passed_over", totals_.passed_over},
                    {"failed", totals_.failed},
                    {"stopped", totals_.stopped},
                    {"not_reached", totals_.not_reached},
                    {"scanned", run.FilesDone},
                    {"skipped", run.FilesSkipped},
                    {"not_of_this_run", run.other_files},
                    {"hits", run.HitsTotal},
                    {"bytes", run.BytesTotal}};
  head["rows"] = RowsAsJson(program_, review);
  std::string text = head.dump(2);
  text.resize(text.size() - 2);  // drops the closing brace and the line break in front of it
  return text + ",\n  \"files\": [" + (entries_.empty() ? "" : "\n" + entries_ + "\n  ") + "]\n}\n";
}

}  // namespace morvex
