// Functions on paths and folders, for all folders of the core.
#pragma once

#include <string>
#include <string_view>

#include "core/host/error.h"
#include "core/program/program.h"

namespace morvex {

// Name of the work file. A processed copy is first written to a file of this name in the folder of
// its source.
inline constexpr const char* kWorkFileName = "tijdel.enc";
// Whether the host takes `name` for the work file's name.
bool IsWorkFileName(const Program& program, const std::string& name);

// Returns the folder, the host's separator and the name, joined without any other change.
std::string JoinPath(const Program& program, std::string_view folder, std::string_view name);

// Returns the path of `name` in the program's own folder.
std::string InProgramFolder(const Program& program, std::string_view name);

// Returns the part of the path before the last separator; "." if it has no separator. A root keeps
// its separator.
std::string FolderOf(const Program& program, const std::string& path);
// Returns the name behind the last separator.
std::string NameIn(const Program& program, const std::string& path);

// Whether `path` is `folder` or lies below it. Compares the texts alone; `folder` ends in no
// separator unless it is a root.
bool IsWithin(const Program& program, std::string_view path, std::string_view folder);

// Removes the fourth byte if it is a backslash, because JoinPath doubles the backslash of a drive
// root. Returns the empty text once the program is to stop.
std::string Normaliseer(const Program& program, const std::string& StringIn);

// Replaces two or more separators in a row by one, at the start of the path by two.
std::string FolderPathClean(const Program& program, std::string_view path);

// Changes ASCII letters to upper case; other bytes stay.
std::string UpperCase(std::string_view text);

bool FileExists(const Program& program, const std::string& path);
// The empty path counts as an existing folder.
bool FolderExists(const Program& program, const std::string& path);

// Whether both paths lead to the same file. False when one of them leads to no file; an error when
// a file cannot be looked up.
Result<bool> IsSameFile(const Program& program, const std::string& one, const std::string& other);
Result<bool> IsSameFile(const Program& program, const FileInfo& one, const std::string& other);

// Makes one folder.
ErrorNumber MakeFolder(const Program& program, const std::string& path);
// Makes a folder and its missing parents, from the top down. Returns the path, or the empty text
// when the folder could not be made.
std::string MakeFolderTree(const Program& program, const std::string& path);

}  // namespace morvex
