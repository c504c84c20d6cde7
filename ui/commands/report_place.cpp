#include "ui/commands/report_place.h"

#include <array>
#include <optional>
#include <utility>

#include "core/program/paths.h"
#include "core/program/run_log.h"
#include "core/settings/settings_file.h"
#include "core/text/shown_text.h"
#include "ui/commands/real_place.h"
#include "ui/commands/run_report.h"

namespace morvex {
namespace {

constexpr const char* kAnother = ": name another file for the report. Nothing was run.";
// The name of a report that is written beside its path: these two, with a number between them.
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

// Refuses the paths that the run reads or writes, whether or not the files exist yet.
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
    if (!IsWorkFileName(program_, NameIn(program_, path))) continue;
    return Refuse(std::string("has the name of a run's work file") + kAnother);
  }
  return true;
}

// Called when a file exists at the path. Returns whether the report may replace that file, which
// must be an older report. A folder run replaces no file in its source or target folder. A
// single-file run may replace a report beside its source or target, so that the same command works
// twice.
bool ReportPlace::MayReplace() {
  using Tree = std::pair<std::string, const char*>;
  const std::array<Tree, 2> trees = {Tree{program_.request.source, "the source"},
                                     Tree{program_.request.target, "the target"}};
  const bool is_single_file = FileExists(program_, trees.front().first);
  for (const auto& [place, what] : trees) {
    if (is_single_file || !WayFrom(program_, place, path_)) continue;
    return Refuse("is an existing file in " + (what + std::string(kAnother)));
  }
  replaces_ = HoldsRunReport(program_.host.files, path_);
  if (replaces_) return true;
  return Refuse(std::string("is not an older report") + kAnother);
}

// Called when there is no file or folder at the path. Returns whether the report can be written
// there.
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
      return Refuse("is where the copy of " + ShownPath(origin) + " will be" + kAnother);
    }
    // The report's folder exists in the source, so the run will create it in the target.
    if (files.LookUpFolder(FolderOf(program_, origin))) folder_error = ErrorNumber::kNone;
  }
  if (folder_error != ErrorNumber::kNone) {
    return Refuse(ErrorLine(folder_error) + ". Nothing was run.");
  }
  const ErrorNumber probed = folder_exists ? Probe(path_) : ErrorNumber::kNone;
  if (probed == ErrorNumber::kFileAlreadyExists) {
    return Refuse(std::string("is not an ordinary file") + kAnother);
  }
  if (probed != ErrorNumber::kNone) return Refuse(ErrorLine(probed) + ". Nothing was run.");
  if (in_source || in_target) {
    messages_.Warn(ShownPath(path_),
                   "the report will be in the source or the target folder and holds the list's "
                   "texts: name a path outside of both, or remove it before you hand the copies "
                   "over.");
  }
  return true;
}

// Creates a file and deletes it again. This fails if the path is a broken link, a pipe or a device,
// which look-ups of files and folders do not find.
ErrorNumber ReportPlace::Probe(const std::string& path) {
  FileService& files = program_.host.files;
  const Result<std::unique_ptr<WorkFile>> made = files.CreateWorkFile(path, 0);
  return made ? made.value->Discard() : made.error;
}

bool ReportPlace::Put(const std::string& report) {
  FileService& files = program_.host.files;
  if (!replaces_ || !HoldsRunReport(files, path_)) return PutBeside(report);
  const ErrorNumber error = files.ReplaceFile(path_, report);
  return error == ErrorNumber::kNone || Refuse(ErrorLine(error));
}

// Writes the report under another name and then moves it to its path in one step, so that it
// appears there whole.
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
  // MoveToFreeName fails on file systems that cannot move to a free name in one step. If the path
  // is still free, MoveFile moves the report.
  if (error != ErrorNumber::kNone && Probe(path_) == ErrorNumber::kNone) {
    error = files.MoveFile(beside, path_, {});
  }
  if (error == ErrorNumber::kNone) return true;
  return Refuse("another file appeared here during the run and was kept. The report is in " +
                ShownPath(beside) + ".");
}

}  // namespace morvex
