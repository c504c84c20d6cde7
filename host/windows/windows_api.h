// Includes the system's headers and removes those of their macros that replace names of functions
// of the program.
#pragma once

#include <windows.h>
// Needs windows.h before it.
#include <winioctl.h>

#undef CopyFile
#undef CreateFile
#undef DeleteFile
#undef MoveFile
#undef ReplaceFile
