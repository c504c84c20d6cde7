// Paths and folders as the whole program handles them.
#pragma once

#include <string>
#include <string_view>

#include "core/host/error.h"
#include "core/program/program.h"

namespace morvex {

// Name of the work file, which lies in the folder of its source.
inline constexpr const char* kWorkFileName = "tijdel.enc";
// True if a file of this name is, or would be, the work file.
bool IsWorkFileName(const Program& program, const std::string& name);

// folder, the host's separator, name; nothing is tidied.
std::string JoinPath(const Program& program, std::string_view folder, std::string_view name);

// The same with the program's own folder, not passed through Normaliseer.
std::string InProgramFolder(const Program& program, std::string_view name);

// The folder of a path, as text: what stands before its last separator, "." where there is none. A
// root keeps its separator.
std::string FolderOf(const Program& program, const std::string& path);
// What follows its last separator.
std::string NameIn(const Program& program, const std::string& path);

// `path` is `folder`, no separator at its end unless it is a root, or lies below it, as their texts
// tell.
bool IsWithin(const Program& program, std::string_view path, std::string_view folder);

// Repairs the doubled backslash of a path made from a drive root: a backslash in fourth place is
// left out. Gives the empty text once the program is to stop.
std::string Normaliseer(const Program& program, const std::string& StringIn);

// Every doubled separator becomes one, but for a pair at the start.
std::string FolderPathClean(const Program& program, std::string_view path);

// ASCII letters in upper case; other bytes stay.
std::string UpperCase(std::string_view text);

bool FileExists(const Program& program, const std::string& path);
// The empty path counts as an existing folder.
bool FolderExists(const Program& program, const std::string& path);

// Both paths lead to the same file, whatever they are called. A path that leads to no file is the
// same as none; an error says that it cannot be told.
Result<bool> IsSameFile(const Program& program, const std::string& one, const std::string& other);
Result<bool> IsSameFile(const Program& program, const FileInfo& one, const std::string& other);

// Makes one folder; gives the number of the error that the attempt met.
ErrorNumber MakeFolder(const Program& program, const std::string& path);
// Makes a folder with every parent that is missing, from the top down. Gives the path, or the empty
// text when it could not be made.
std::string MakeFolderTree(const Program& program, const std::string& path);

}  // namespace morvex
