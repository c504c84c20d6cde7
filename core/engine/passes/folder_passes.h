// A folder run: FolderPrepass handles the files that lie directly in the source and fixes the
// progress scale, FolderWalk then visits every sub-folder, depth first, each folder's files before
// its sub-folders.
//
// A selected file is processed and the result copied to the target under the file's name; every
// other file is copied unchanged. Both go on after every error; the run driver looks at Beeindigd
// afterwards.
#pragma once

#include <string>

#include "core/program/program.h"

namespace morvex {

// An error is one of the source or target folder itself, without which nothing could be done.
ErrorNumber FolderPrepass(Program& program, const std::string& source, const std::string& target);
ErrorNumber FolderWalk(Program& program, const std::string& source, const std::string& target);

}  // namespace morvex
