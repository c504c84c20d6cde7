// What a folder pass does with one file. The single-file run shares MakeProcessedCopy.
#pragma once

#include <string>

#include "core/engine/passes/extension_filter.h"
#include "core/engine/passes/process_file.h"
#include "core/program/program.h"
#include "core/program/run_observer.h"

namespace morvex {

// What becomes of the work file when a stop request cuts a file short. kStays: it is copied to the
// target and stays beside its source. kGoes: it is moved to the target.
enum class WorkFileAtStop { kStays, kGoes };

// Whether the listing of the file's folder has a stale work file, one that an earlier run left. A
// listed one is deleted before the file is processed. One that is not listed is deleted only if the
// work file cannot be created because its name is taken.
enum class StaleWorkFile { kListed, kNotListed };

// Processes the file and moves the result to the path `target`. If a stop request comes during the
// processing, `target` gets what was written until then; if a stop request ends the move, the whole
// result stays in the work file. The error is kPathFileAccess if `target` is the source file
// itself. Sets every member of the outcome except `hits`.
Outcome MakeProcessedCopy(Program& program, const SourceFile& source, const std::string& target,
                          WorkFileAtStop at_stop, StaleWorkFile stale);

// Handles the file `name` of `folder`; its copy goes into `target_folder`. Both folders are full
// paths. Notes the outcome. Returns false if the pass must end; Beeindigd is then set, by a stop
// request or because the disk is full.
bool HandleFile(Program& program, const std::string& folder, const std::string& name,
                const std::string& target_folder, FolderPassKind pass,
                StaleWorkFile stale = StaleWorkFile::kListed);

}  // namespace morvex
