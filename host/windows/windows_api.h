// Includes the system's headers and undefines those of their macros that would rename functions of
// the program.
#pragma once

#include <windows.h>
// windows.h must come before winioctl.h.
#include <winioctl.h>

#undef CopyFile
#undef CreateFile
#undef DeleteFile
#undef MoveFile
#undef ReplaceFile
