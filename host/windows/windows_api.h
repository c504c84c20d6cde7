// The system's own declarations, without those of its macros that take the names of functions of
// the program.
#pragma once

#include <windows.h>
// Needs the first.
#include <winioctl.h>

#undef CopyFile
#undef CreateFile
#undef DeleteFile
#undef MoveFile
#undef ReplaceFile
