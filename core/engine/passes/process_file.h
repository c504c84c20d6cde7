// Processes one source file: the skip rules, then the substitution of its bytes into the temporary
// file beside it. The source file is only read.
#pragma once

#include <string>

#include "core/program/program.h"
#include "core/program/run_observer.h"

namespace morvex {

enum class ProcessEnd {
  kProcessed,  // the temporary file holds the whole result
  kSkipped,    // by a skip rule; there is no temporary file
  kStopped,    // the temporary file holds the bytes that were written before the stop
  kFailed,     // there is no temporary file
};

struct ProcessResult {
  ProcessEnd end = ProcessEnd::kProcessed;
  ErrorNumber error = ErrorNumber::kNone;  // why it is kFailed
  std::string path;                        // of the file that the error is about
  PassedOver why = PassedOver::kNo;        // it is kSkipped
  FailureCause cause = FailureCause::kNone;
};

// A failure that has to do with the temporary file at `temporary`: where the folder takes none, it
// is about the folder.
ProcessResult TemporaryFailed(const Program& program, ErrorNumber error,
                              const std::string& temporary);

// Path of the temporary file for the files of `folder`; empty once the program is to stop.
std::string TemporaryPath(const Program& program, const std::string& folder);

// Deletes a temporary file that an earlier run left in `folder`, so that no byte of it reaches the
// copy of the file `source`, which is processed next. kNone also when there was none;
// kPathFileAccess, and nothing deleted, when that file is the temporary file itself, by name or by
// link. What goes by the name and is no file is deleted only with `taken`: the name has just turned
// out to be taken.
ErrorNumber DeleteLeftOver(Program& program, const std::string& folder, const FileInfo& source,
                           bool taken);

// Deletes the temporary file of a copy that came to nothing. Where that fails the run remembers
// that it is left.
void DropTemporary(Program& program, const std::string& temporary);

// `name` is the file's bare name, `folder` the full path of its folder. The caller sets
// Hits_Per_File and BytesBefore before, and copies and deletes the temporary file after. A file
// that has the temporary file's name already stays as it is: kFailed with kFileAlreadyExists.
// `source` is what a look at the file just gave.
ProcessResult ProcessFile(Program& program, const std::string& name, const std::string& folder,
                          const Result<FileInfo>& source);
ProcessResult ProcessFile(Program& program, const std::string& name, const std::string& folder);

}  // namespace morvex
