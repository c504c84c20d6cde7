// Includes the system's headers and undefines their macros that would rename functions of the
// program.
#pragma once

#include <windows.h>
// Needs windows.h before it.
#include <winioctl.h>

#undef CopyFile
#undef CreateFile
#undef DeleteFile
#undef MoveFile
#undef ReplaceFile
