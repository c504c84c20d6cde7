#include "ui/commands/report_place.h"

#include <array>
#include <optional>
#include <utility>

#include "core/program/paths.h"
#include "core/program/run_log.h"
#include "core/settings/settings_file.h"
#include "ui/commands/real_place.h"
#include "ui/commands/run_report.h"
#include "ui/commands/shown_text.h"

namespace morvex {
namespace {

constexpr const char* kAnother = ": name another file for the report. Nothing was run.";
// The name of a report that finds its place taken, with a number in its middle.
constexpr const char* kBesideBegin = "morvex-report-";
constexpr const char* kBesideEnd = ".json";
constexpr int kNamingAttempts = 1000;

bool IsNothing(ErrorNumber error) {
  return error == ErrorNumber::kFileNotFound || error == ErrorNumber::kPathNotFound;
}

}  // namespace

bool ReportPlace::MayHold() {
  if (!SparesOwnPlaces()) return false;
  FileService& files = program_.host.files;
  const ErrorNumber found = files.LookUpFile(path_).error;
  if (found == ErrorNumber::kNone) return MayReplace();
  if (files.LookUpFolder(path_)) return Refuse(std::string("is a folder") + kAnother);
  if (!IsNothing(found)) return Refuse(ErrorLine(found) + ". Nothing was run.");
  return HasRoom();
}

bool ReportPlace::Refuse(const std::string& why) {
  messages_.Error(ShownPath(path_), why);
  return false;
}

// Looks at the names of what the run reads and writes, whether or not there is such a file yet.
bool ReportPlace::SparesOwnPlaces() {
  const std::string source = program_.request.source;
  const std::string target = program_.request.target;
  using Place = std::pair<std::string, const char*>;
  std::vector<Place> own = {{program_.settings.SubstitutieFile, "the replacement list"},
                            {settings_file_, "the settings file"}};
  if (FileExists(program_, source)) {
    own.emplace_back(source, "the source");
    own.emplace_back(target, "the target");
  }
  for (const char* name : {kRunLogName, kDebugLogName, kInitFileName}) {
    own.emplace_back(InProgramFolder(program_, name), "a file of the program's own");
  }
  for (const auto& [place, what] : own) {
    if (IsSamePlace(program_, path_, place)) return Refuse("is " + (what + std::string(kAnother)));
  }
  for (const std::string& path : {path_, RealPlace(program_, path_)}) {
    if (!IsTemporaryName(program_, NameIn(program_, path))) continue;
    return Refuse(std::string("has the name of the file that a run works on") + kAnother);
  }
  return true;
}

// A file is there. Beside a single file an older report may lie: the same command is given twice.
bool ReportPlace::MayReplace() {
  using Tree = std::pair<std::string, const char*>;
  const std::array<Tree, 2> trees = {Tree{program_.request.source, "the source"},
                                     Tree{program_.request.target, "the target"}};
  const bool is_single_file = FileExists(program_, trees.front().first);
  for (const auto& [place, what] : trees) {
    if (is_single_file || !WayFrom(program_, place, path_)) continue;
    return Refuse("is a file that lies in " + (what + std::string(kAnother)));
  }
  replaces_ = HoldsRunReport(program_.host.files, path_);
  if (replaces_) return true;
  return Refuse(std::string("holds something else than an older report") + kAnother);
}

// Nothing is there that is a file or a folder.
bool ReportPlace::HasRoom() {
  FileService& files = program_.host.files;
  const std::string source = program_.request.source;
  const bool is_single_file = FileExists(program_, source);
  std::optional<std::string> in_source;
  std::optional<std::string> in_target;
  if (!is_single_file) {
    in_source = WayFrom(program_, source, path_);
    in_target = WayFrom(program_, program_.request.target, path_);
  }
  ErrorNumber folder_error = files.LookUpFolder(FolderOf(program_, path_)).error;
  const bool folder_exists = folder_error == ErrorNumber::kNone;
  if (in_target) {
    const std::string origin = JoinPath(program_, source, *in_target);
    if (files.LookUpFile(origin) || files.LookUpFolder(origin)) {
      return Refuse("is where the copy of " + ShownPath(origin) + " will lie" + kAnother);
    }
    // The run makes the folders of the source.
    if (files.LookUpFolder(FolderOf(program_, origin))) folder_error = ErrorNumber::kNone;
  }
  if (folder_error != ErrorNumber::kNone) {
    return Refuse(ErrorLine(folder_error) + ". Nothing was run.");
  }
  const ErrorNumber probed = folder_exists ? Probe(path_) : ErrorNumber::kNone;
  if (probed == ErrorNumber::kFileAlreadyExists) {
    return Refuse(std::string("is no ordinary file") + kAnother);
  }
  if (probed != ErrorNumber::kNone) return Refuse(ErrorLine(probed) + ". Nothing was run.");
  if (in_source || in_target) {
    messages_.Warn(ShownPath(path_),
                   "the report will lie among the files of the source or the target and holds the "
                   "list's texts: name a place outside of both, or take it out before you hand the "
                   "copies over.");
  }
  return true;
}

// Whether a file of this name can be made: a link that leads nowhere, a pipe or a device has the
// name too, and no look at files and folders tells of them.
ErrorNumber ReportPlace::Probe(const std::string& path) {
  FileService& files = program_.host.files;
  Result<std::unique_ptr<OutputFile>> made = files.CreateFile(path, 0);
  if (!made) return made.error;
  made.value.reset();
  return files.DeleteFile(path);
}

bool ReportPlace::Put(const std::string& report) {
  FileService& files = program_.host.files;
  if (!replaces_ || !HoldsRunReport(files, path_)) return PutBeside(report);
  const ErrorNumber error = files.ReplaceFile(path_, report);
  return error == ErrorNumber::kNone || Refuse(ErrorLine(error));
}

// The report is whole under another name before it takes its own, in one step.
bool ReportPlace::PutBeside(const std::string& report) {
  FileService& files = program_.host.files;
  std::string beside;
  ErrorNumber error = ErrorNumber::kFileAlreadyExists;
  for (int number = 1; error == ErrorNumber::kFileAlreadyExists && number <= kNamingAttempts;
       ++number) {
    const std::string name = kBesideBegin + std::to_string(number) + kBesideEnd;
    if (files.IsSameName(name, NameIn(program_, path_))) continue;
    beside = JoinPath(program_, FolderOf(program_, path_), name);
    error = Probe(beside);
  }
  if (error == ErrorNumber::kNone) error = files.ReplaceFile(beside, report);
  if (error != ErrorNumber::kNone) return Refuse(ErrorLine(error));
  error = files.MoveToFreeName(beside, path_);
  // Some file systems have no such step.
  if (error != ErrorNumber::kNone && Probe(path_) == ErrorNumber::kNone) {
    error = files.MoveFile(beside, path_, {});
  }
  if (error == ErrorNumber::kNone) return true;
  return Refuse("something else has come to lie here during the run, and stays. The report is in " +
                ShownPath(beside) + ".");
}

}  // namespace morvex
