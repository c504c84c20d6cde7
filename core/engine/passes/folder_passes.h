// A folder run. FolderPrepass handles the files that lie directly in the source and sets the scale
// of the progress bar. FolderWalk then visits every sub-folder, depth first: a folder's files come
// before its sub-folders.
//
// A selected file is processed, and the result moved to the target under the file's name; every
// other file is copied unchanged. Errors of single files and sub-folders do not end a pass, with
// one exception: a disk that is full while a selected file is processed. After each pass the run
// driver checks Beeindigd.
#pragma once

#include <string>

#include "core/program/program.h"

namespace morvex {

// Each returns an error if the source or target folder itself is unusable. FolderPrepass also
// returns one, and sets Beeindigd, if it cannot set the scale. After an error no file has been
// handled.
ErrorNumber FolderPrepass(Program& program, const std::string& source, const std::string& target);
ErrorNumber FolderWalk(Program& program, const std::string& source, const std::string& target);

}  // namespace morvex
