#include "core/engine/passes/folder_passes.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "core/engine/passes/extension_filter.h"
#include "core/engine/passes/file_step.h"
#include "core/engine/passes/outcomes.h"
#include "core/engine/passes/progress.h"
#include "core/engine/passes/tree_rules.h"
#include "core/program/paths.h"

namespace morvex {
namespace {

// If fewer bytes than this are in use on a drive, ScaleFromDrive cannot set the scale.
constexpr std::uint64_t kLeastInUse = 1000;

void SetScale(Program& program, std::uint64_t bytes) {
  program.run.ProgressScale = ScaleFor(bytes);
  program.frmMorvex.ProgressBar1.SetMaximum(Scaled(bytes, program.run.ProgressScale));
}

// Sets the scale from the bytes in use on the source's drive. If fewer than kLeastInUse are in use,
// shows a message, stops the program and returns false.
bool ScaleFromDrive(Program& program, const std::string& source) {
  const Result<DriveSpace> drive = program.host.files.LookUpDrive(source);
  const std::uint64_t in_use =
      drive ? drive.value.total - std::min(drive.value.total, drive.value.available) : 0;
  if (in_use < kLeastInUse) {
    program.host.user.ShowMessage("Errors occurred.\r\nProgramm will be terminated.",
                                  MessageButtons::kOk, MessageIcon::kNone);
    program.Beeindigd = true;
    return false;
  }
  SetScale(program, in_use);
  return true;
}

bool FixScale(Program& program, const std::string& source, const std::string& target) {
  if (program.run.ScaleFixed) return true;
  TreeRules rules(program, source, target);
  const Result<FolderInfo> folder = program.host.files.LookUpFolder(source);
  const Result<std::uint64_t> size =
      folder ? FolderSize(program, rules, folder.value) : Result<std::uint64_t>(folder.error);
  if (size) {
    program.run.SourceSize = static_cast<std::int64_t>(size.value);
    SetScale(program, size.value);
  } else if (!ScaleFromDrive(program, source)) {
    return false;
  }
  program.run.ScaleFixed = true;
  return true;
}

Outcome PassedOverAt(const std::string& path, PassedOver why) {
  Outcome outcome;
  outcome.path = path;
  return PassedOverFor(std::move(outcome), why);
}

// Notes that `path` was passed over, because it leads neither to a file nor to a folder.
void PassOverNoFile(Program& program, const std::string& path, EntryKind kind) {
  const bool is_broken = kind == EntryKind::kBrokenLink;
  Outcome outcome =
      PassedOverAt(path, is_broken ? PassedOver::kBrokenLink : PassedOver::kSpecialFile);
  if (is_broken && program.observer != nullptr) {
    outcome.leads_to = program.host.files.LinkText(path).value;
  }
  NoteOutcome(program, outcome);
}

// Call when the run has ended early. Notes entries of the folder's listing, from index `first` on,
// as not reached: if `folders` is true the folders, otherwise all entries that are not folders.
void NoteNotReached(Program& program, const std::string& folder,
                    const std::vector<FolderEntry>& listing, std::size_t first, bool folders) {
  if (program.observer == nullptr) return;
  for (std::size_t i = first; i < listing.size(); ++i) {
    if ((listing[i].kind == EntryKind::kFolder) != folders) continue;
    Outcome outcome;
    outcome.kind = OutcomeKind::kNotReached;
    outcome.path = FolderPathClean(program, JoinPath(program, folder, listing[i].name));
    outcome.is_folder = folders;
    NoteOutcome(program, outcome);
  }
}

void HandleFiles(Program& program, const std::string& folder,
                 const std::vector<FolderEntry>& listing, const std::string& target_folder,
                 FolderPassKind pass) {
  const auto is_stale = [&](const FolderEntry& entry) {
    return IsWorkFileName(program, entry.name);
  };
  const StaleWorkFile stale = std::any_of(listing.begin(), listing.end(), is_stale)
                                  ? StaleWorkFile::kListed
                                  : StaleWorkFile::kNotListed;
  for (std::size_t i = 0; i < listing.size(); ++i) {
    const FolderEntry& entry = listing[i];
    if (program.Beeindigd) return NoteNotReached(program, folder, listing, i, false);
    if (entry.kind == EntryKind::kFolder) continue;
    // A stale work file is not a file of the source.
    if (is_stale(entry) || entry.kind != EntryKind::kFile) {
      const std::string path = FolderPathClean(program, JoinPath(program, folder, entry.name));
      if (is_stale(entry)) {
        NoteOutcome(program, PassedOverAt(path, PassedOver::kStaleWorkFile));
      } else {
        PassOverNoFile(program, path, entry.kind);
      }
      continue;
    }
    if (!HandleFile(program, folder, entry.name, target_folder, pass, stale)) {
      return NoteNotReached(program, folder, listing, i + 1, false);
    }
    ShowHits(program, program.run.HitsTotal);
    YieldToWindows(program);
  }
}

bool IsLeftOut(const std::string& folder, const std::string& target_folder) {
  constexpr std::array<std::string_view, 3> kWords = {"RECYCLER", "RECYCLED",
                                                      "SYSTEM VOLUME INFORMATION"};
  const std::string source_path = UpperCase(folder);
  const std::string target_path = UpperCase(target_folder);
  return std::any_of(kWords.begin(), kWords.end(), [&](std::string_view word) {
    return source_path.find(word) != std::string::npos ||
           target_path.find(word) != std::string::npos;
  });
}

// The two folders at which a pass starts.
struct OpenedFolders {
  ErrorNumber error = ErrorNumber::kNone;
  std::string source;
  std::string target;
  std::vector<FolderEntry> listing;  // of the source
};

OpenedFolders OpenFolders(Program& program, const std::string& source, const std::string& target) {
  FileService& files = program.host.files;
  const Result<FolderInfo> source_folder = files.LookUpFolder(source);
  if (!source_folder) return {source_folder.error, {}, {}, {}};
  const Result<FolderInfo> target_folder = files.LookUpFolder(target);
  if (!target_folder) return {target_folder.error, {}, {}, {}};
  Result<std::vector<FolderEntry>> listing = files.ListFolder(source_folder.value.path);
  if (!listing) return {listing.error, {}, {}, {}};
  return {ErrorNumber::kNone, source_folder.value.path, target_folder.value.path,
          std::move(listing.value)};
}

class TreeWalk {
 public:
  TreeWalk(Program& program, const std::string& source, const std::string& target)
      : program_(program), rules_(program, source, target) {}

  ErrorNumber error() const { return rules_.error(); }

  // Handles the sub-folders of `folders.source`, depth first.
  void Run(OpenedFolders folders) {
    walk_.Start({std::move(folders.source), std::move(folders.target), std::move(folders.listing)});
    while (const FolderEntry* entry = walk_.Next()) {
      if (entry->kind != EntryKind::kFolder) continue;
      YieldToWindows(program_);
      if (!program_.Beeindigd) {
        SubFolder(entry->name, walk_.level().target);
      } else {
        NoteNotReached(program_, walk_.level().source, {*entry}, 0, true);
      }
    }
  }

 private:
  void PassOverFolder(const std::string& path, PassedOver why) {
    Outcome outcome = PassedOverAt(path, why);
    outcome.is_folder = true;
    NoteOutcome(program_, outcome);
  }

  // Handles the files directly in the sub-folder and makes the walk visit its sub-folders next.
  void SubFolder(const std::string& name, const std::string& target) {
    FileService& files = program_.host.files;
    const std::string source_path = JoinPath(program_, walk_.level().source, name);
    const Result<FolderInfo> source = files.LookUpFolder(source_path);
    if (!source) {
      return NoteFailedFolder(program_, FolderPathClean(program_, source_path), source.error);
    }
    const std::string& path = source.value.path;
    const Result<PassedOver> why = rules_.WhyNotEntered(source.value);
    if (!why) return Fail(path, why.error);
    if (why.value != PassedOver::kNo) return PassOverFolder(path, why.value);
    // The target folder is created before IsLeftOut is asked, so that a folder that is left out
    // becomes an empty folder in the target.
    const std::string target_path = Normaliseer(program_, JoinPath(program_, target, name));
    if (!FolderExists(program_, target_path)) files.CreateFolderLike(target_path, source.value);
    const Result<FolderInfo> made = files.LookUpFolder(target_path);
    // kPathNotFound: the target folder could not be created; each of the folder's files will fail.
    // After any other error of the look-up the target folder may lie anywhere, even in the source,
    // so nothing is written into it.
    const ErrorNumber error =
        made && !rules_.MayWriteInto(made.value) ? ErrorNumber::kPathFileAccess : made.error;
    if (error != ErrorNumber::kNone && error != ErrorNumber::kPathNotFound) {
      return Fail(path, error);
    }
    if (IsLeftOut(path, target)) return PassOverFolder(path, PassedOver::kRecycleBin);
    Result<std::vector<FolderEntry>> listing = files.ListFolder(path);
    if (!listing) return NoteFailedFolder(program_, path, listing.error);
    HandleFiles(program_, path, listing.value, target_path, FolderPassKind::kWalk);
    walk_.Enter({path, JoinPath(program_, target, name), std::move(listing.value)}, source.value);
  }

  void Fail(const std::string& path, ErrorNumber error) {
    LogError(program_, path, error);
    NoteFailedFolder(program_, path, error);
  }

  Program& program_;
  TreeRules rules_;
  FolderStack walk_{rules_};
};

}  // namespace

ErrorNumber FolderPrepass(Program& program, const std::string& source, const std::string& target) {
  program.frmMorvex.ProgressBar1.SetValue(0);
  if (!FixScale(program, source, target)) return ErrorNumber::kPathNotFound;
  if (!FolderExists(program, target)) MakeFolder(program, target);
  YieldToWindows(program);
  const OpenedFolders folders = OpenFolders(program, source, target);
  if (folders.error != ErrorNumber::kNone) return folders.error;
  HandleFiles(program, folders.source, folders.listing, folders.target, FolderPassKind::kPrepass);
  if (program.Beeindigd) NoteNotReached(program, folders.source, folders.listing, 0, true);
  return ErrorNumber::kNone;
}

ErrorNumber FolderWalk(Program& program, const std::string& source, const std::string& target) {
  if (program.Beeindigd) return ErrorNumber::kNone;
  const std::string source_path = FolderPathClean(program, source);
  const std::string target_path = FolderPathClean(program, target);
  if (!FolderExists(program, target_path)) MakeFolder(program, target_path);
  OpenedFolders folders = OpenFolders(program, source_path, target_path);
  if (folders.error != ErrorNumber::kNone) return folders.error;
  TreeWalk walk(program, folders.source, folders.target);
  if (walk.error() != ErrorNumber::kNone) return walk.error();
  walk.Run(std::move(folders));
  return ErrorNumber::kNone;
}

}  // namespace morvex
