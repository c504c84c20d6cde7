// Compares a finished run with its prediction: times and dates by their form, the rest byte for
// byte.

#include <algorithm>
#include <filesystem>
#include <sstream>

#include "program_run.h"

namespace morvex::whole_run {
namespace {

constexpr std::size_t kShownRecords = 400;

bool IsDigit(char letter) { return letter >= '0' && letter <= '9'; }

// Returns whether the text has the given form. In a form, '9' stands for one digit, 'N' for a whole
// number, and any other character for itself.
bool HasForm(const std::string& text, const std::string& form) {
  std::size_t at = 0;
  for (const char mark : form) {
    if (mark == 'N' && at < text.size() && text[at] == '-') {
      ++at;
    }
    const bool digit = mark == '9' || mark == 'N';
    if (at >= text.size() || (digit ? !IsDigit(text[at]) : text[at] != mark)) {
      return false;
    }
    ++at;
    while (mark == 'N' && at < text.size() && IsDigit(text[at])) {
      ++at;
    }
  }
  return at == text.size();
}

bool IsElapsedTime(const std::string& text) { return HasForm(text, "N min N sec"); }

bool IsNumberedError(const std::string& text) {
  const std::size_t colon = text.find(": ");
  return colon != std::string::npos && colon + 2 < text.size() &&
         HasForm(text.substr(0, colon), "Error N");
}

bool Agrees(const LogLine& expected, const std::string& message) {
  switch (expected.kind) {
    case LogKind::kExact:
      return message == expected.text;
    case LogKind::kHeader:
      return HasForm(message, std::string(25, '-') + "99/99/99" + std::string(25, '-'));
    case LogKind::kElapsed:
      return message.compare(0, expected.text.size(), expected.text) == 0 &&
             IsElapsedTime(message.substr(expected.text.size()));
    case LogKind::kErrorNumber:
      return IsNumberedError(message);
  }
  return false;
}

std::string Described(const LogLine& line) {
  switch (line.kind) {
    case LogKind::kExact:
      return Escaped(line.text);
    case LogKind::kHeader:
      return "(header with the date)";
    case LogKind::kElapsed:
      return Escaped(line.text) + "(minutes and seconds)";
    case LogKind::kErrorNumber:
      return "Error (number): (text)";
  }
  return {};
}

void CheckLog(const std::vector<LogLine>& expected, const std::string& log_bytes,
              std::ostringstream* text) {
  const std::vector<std::string> messages = LogMessages(log_bytes);
  const std::size_t count = std::max(expected.size(), messages.size());
  for (std::size_t at = 0; at < count && at < kShownRecords; ++at) {
    const bool both = at < expected.size() && at < messages.size();
    if (both && Agrees(expected[at], messages[at])) {
      continue;
    }
    *text << "  log record " << at + 1
          << "\n    expected: " << (at < expected.size() ? Described(expected[at]) : "(none)")
          << "\n    found:    " << (at < messages.size() ? Escaped(messages[at]) : "(none)")
          << "\n";
    return;
  }
}

// Returns the lines that are not empty: an empty label may print as an empty line or not at all.
std::vector<std::string> FilledLines(const std::string& text) {
  std::vector<std::string> lines;
  for (const std::string& line : TextLines(text)) {
    if (!line.empty()) {
      lines.push_back(line);
    }
  }
  return lines;
}

void CheckOutput(const RunOutcome& expected, const std::string& output, std::ostringstream* text) {
  std::vector<std::string> wanted;
  for (const std::string& caption : expected.captions) {
    for (const std::string& line : FilledLines(caption)) {
      wanted.push_back(line);
    }
  }
  const std::vector<std::string> found = FilledLines(output);
  bool same = wanted.size() == found.size();
  for (std::size_t at = 0; same && at < wanted.size(); ++at) {
    same = wanted[at] == kElapsedCaption ? IsElapsedTime(found[at]) : wanted[at] == found[at];
  }
  if (same && output.find('\r') == std::string::npos) {
    return;
  }
  *text << "  standard output\n    expected:";
  for (const std::string& line : wanted) {
    *text << " [" << Escaped(line) << "]";
  }
  *text << "\n    found:    " << Escaped(output) << "\n";
}

std::string WithoutFinalLineBreak(std::string text) {
  text.erase(std::remove(text.begin(), text.end(), '\r'), text.end());
  while (!text.empty() && text.back() == '\n') {
    text.pop_back();
  }
  return text;
}

// Warnings that have tests of their own are left out of standard error. The rest must begin with
// the predicted message boxes, word for word. The console's own remarks may follow, but only if the
// run gives an occasion for them. A sanitizer's report must never follow.
void CheckErrors(const RunOutcome& expected, const std::string& errors, std::ostringstream* text) {
  const std::string found = WithoutFinalLineBreak(WithoutWarnings(errors));
  const bool in_front = found.compare(0, expected.messages.size(), expected.messages) == 0;
  const bool alone = found.size() == expected.messages.size();
  const bool reported = errors.find("runtime error:") != std::string::npos ||
                        errors.find("Sanitizer") != std::string::npos;
  const std::string others =
      std::to_string(expected.other_files) +
      (expected.other_files == 1 ? " file in the target is" : " files in the target are") +
      " not of this run.";
  const bool of_target = expected.other_files == 0
                             ? found.find(" not of this run") == std::string::npos
                             : found.find(others) != std::string::npos;
  if (in_front && !reported && of_target && (alone || expected.occasion_for_remarks)) {
    return;
  }
  *text << "  standard error\n    expected: " << Escaped(expected.messages)
        << (expected.occasion_for_remarks ? " (and remarks)" : "")
        << "\n    found:    " << Escaped(errors) << "\n";
}

void CheckProgramFolder(const Scene& scene, const RunOutcome& expected, bool log_expected,
                        std::ostringstream* text) {
  std::vector<std::string> wanted{"Init.dat"};
  if (log_expected) {
    wanted.emplace_back("Morvex.log");
  }
  if (scene.ProgramFolderNames() != wanted) {
    *text << "  program folder holds:";
    for (const std::string& name : scene.ProgramFolderNames()) {
      *text << " " << Escaped(name);
    }
    *text << "\n";
  }
  if (std::filesystem::exists(scene.program_folder() + "/Init.dat") &&
      scene.InitDat() != expected.init_dat) {
    *text << "  Init.dat\n    expected: " << Escaped(expected.init_dat)
          << "\n    found:    " << Escaped(scene.InitDat()) << "\n";
  }
}

}  // namespace

std::vector<std::string> LogMessages(const std::string& log_bytes) {
  const std::string end = "\"\r\n";
  std::vector<std::string> messages;
  std::size_t at = 0;
  while (at < log_bytes.size()) {
    const std::size_t stop = log_bytes.find(end, at);
    if (stop == std::string::npos) {
      messages.push_back("malformed record: " + log_bytes.substr(at));
      break;
    }
    const std::string record = log_bytes.substr(at, stop - at);
    const bool formed = record.size() > 10 && record[0] == '"' && record[9] == ' ' &&
                        HasForm(record.substr(1, 8), "99:99:99");
    messages.push_back(formed ? record.substr(10) : "malformed record: " + record);
    at = stop + end.size();
  }
  return messages;
}

std::string Problems(const Scene& scene, const RunOutcome& expected, const ProgramResult& result,
                     const std::string& old_log) {
  std::ostringstream text;
  if (result.status != expected.exit_status) {
    text << "  exit status: expected " << expected.exit_status << ", found " << result.status
         << "\n";
  }
  CheckErrors(expected, result.errors, &text);
  CheckOutput(expected, result.output, &text);
  const std::string log = scene.RunLog();
  if (log.compare(0, old_log.size(), old_log) != 0) {
    text << "  the run log lost what it held before\n";
  } else {
    CheckLog(expected.log, log.substr(old_log.size()), &text);
  }
  CheckProgramFolder(scene, expected, !expected.log.empty() || !old_log.empty(), &text);
  text << Differences(expected.disk, Disk::Snapshot(scene.work()));
  return text.str();
}

std::string RunAndCompare(const Scene& scene, const std::string& settings_name) {
  const std::string old_log = scene.RunLog();
  const RunOutcome expected = PredictRun(scene.Input(settings_name));
  const ProgramResult result = scene.Run({"-if", scene.At(settings_name)});
  return Problems(scene, expected, result, old_log);
}

}  // namespace morvex::whole_run
