// Processes one source file: applies the skip rules, then substitutes its bytes into a work file
// beside it. The source file is only read.
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

// Returns the outcome with which every file starts: only path and size are set.
Outcome OutcomeOf(const SourceFile& source);

// Path of the work file for the files of `folder`. Empty once the program is to stop.
std::string WorkFilePath(const Program& program, const std::string& folder);

// The outcome of `source` when an error of the work file leaves it without a copy. If the folder
// forbids work files, the error is about the folder.
Outcome WorkFileFailed(const Program& program, const SourceFile& source, ErrorNumber error);

// Deletes a stale work file in the folder of `source`, which is processed next, so that no byte of
// it reaches the copy. kNone if there is none. kPathFileAccess, with nothing deleted, if `source`
// itself is that file, by name or by a link. A link, pipe or device of that name is deleted only if
// `name_is_taken`: creating the work file has just failed for that reason.
ErrorNumber DeleteStaleWorkFile(Program& program, const SourceFile& source, bool name_is_taken);

// Discards the work file of a copy that came to nothing. If that fails, the run remembers that the
// file is left.
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
