// What a folder pass does with one file. The single-file run shares MakeProcessedCopy.
#pragma once

#include <string>

#include "core/engine/passes/extension_filter.h"
#include "core/engine/passes/process_file.h"
#include "core/program/program.h"
#include "core/program/run_observer.h"

namespace morvex {

// Whether the work file stays beside its source when a stop request cuts the file short. In every
// other case it is gone afterwards.
enum class WorkFileAtStop { kStays, kGoes };

// Whether the listing of the file's folder has a stale work file. If so, it is deleted before the
// file is processed; otherwise only if its name turns out to be taken.
enum class StaleWorkFile { kListed, kNotListed };

// Processes the file and moves the result to the path `target`. After a stop request `target` gets
// the part that was written. kPathFileAccess if `target` is the source file itself. Sets everything
// of the outcome but `hits`.
Outcome MakeProcessedCopy(Program& program, const SourceFile& source, const std::string& target,
                          WorkFileAtStop at_stop, StaleWorkFile stale);

// Handles the file `name` of `folder`; its copy goes into `target_folder`. Both folders are full
// paths. Notes the outcome. Returns false if the pass must end; Beeindigd is then set, by a stop
// request or because the disk is full.
bool HandleFile(Program& program, const std::string& folder, const std::string& name,
                const std::string& target_folder, FolderPassKind pass,
                StaleWorkFile stale = StaleWorkFile::kListed);

}  // namespace morvex
