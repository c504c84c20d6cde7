// Processes one source file: applies the skip rules, then writes the result of the substitution to
// a work file beside the source file. The source file is only read.
#pragma once

#include <memory>
#include <string>

#include "core/program/program.h"
#include "core/program/run_observer.h"

namespace morvex {

struct SourceFile {
  std::string folder;     // full path of its folder
  std::string name;       // its name without the folder
  Result<FileInfo> info;  // result of the file's look-up
  std::string path;       // as it is shown and logged
};
SourceFile LookUpSource(const Program& program, const std::string& folder, const std::string& name);

// Returns the outcome with which every file starts: only `path` and `bytes` are set.
Outcome OutcomeOf(const SourceFile& source);

// Returns the path of the work file for the files of `folder`; empty once the program is to stop.
std::string WorkFilePath(const Program& program, const std::string& folder);

// Returns the outcome of a source that has no copy because of an error of the work file. The
// outcome's error_path is the work file's path; for kPermissionDenied, the folder's.
Outcome WorkFileFailed(const Program& program, const SourceFile& source, ErrorNumber error);

// Deletes a stale work file in the folder of `source` before `source` is processed, so that no byte
// of the stale file reaches the copy. Returns kNone if there is no stale file. Returns
// kPathFileAccess and deletes nothing if `source` itself is the stale file, by name or by a link.
// `name_is_taken`: creating the work file has just failed because the name was taken. Only then
// does the function also delete a pipe, a device, or a link that leads to no file.
ErrorNumber DeleteStaleWorkFile(Program& program, const SourceFile& source, bool name_is_taken);

// Discards the work file of a copy that came to nothing. If the work file cannot be deleted, the
// run's left_work_file names it.
void DiscardWorkFile(Program& program, WorkFile& work);

// Returns an outcome of one of these kinds:
//   kProcessed    `work` holds the whole result.
//   kStopped      `work` holds what was written before the stop.
//   kPassedOver   No work file. A skip rule applied, or the file changed while it was read.
//   kFailed       No work file. The error kFileAlreadyExists means that the work file's name was
//                 taken; the file of that name is unchanged.
//
// The caller sets Hits_Per_File and BytesBefore before the call, and moves or discards `work` after
// it.
Outcome ProcessFile(Program& program, const SourceFile& source, std::unique_ptr<WorkFile>& work);

}  // namespace morvex
