// From the system's error codes to the program's error numbers, and the net under every call: no
// exception leaves it.
#pragma once

#include <new>
#include <utility>

#include "core/host/error.h"

namespace morvex::windows {

// What a name that is not there means to the caller: no such file, or no such way to it.
enum class Missing { kFile, kPath };

// An error code as GetLastError gives it; 0 is success.
using Code = unsigned long;

// The error number for an error code; 0 gives kNone.
ErrorNumber ErrorFromCode(Code code, Missing missing);

// The same for the system call that has just failed.
ErrorNumber LastError(Missing missing);

// Runs `call`, which gives an ErrorNumber or a Result, and turns what it throws into an error.
template <class Call>
auto Guarded(Call&& call) noexcept -> decltype(call()) {
  try {
    return std::forward<Call>(call)();
  } catch (const std::bad_alloc&) {
    return ErrorNumber::kOutOfMemory;
  } catch (...) {
    return ErrorNumber::kPathFileAccess;
  }
}

}  // namespace morvex::windows
