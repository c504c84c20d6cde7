// Translates the system's error codes into the program's error numbers, and keeps exceptions inside
// the host.
#pragma once

#include <new>
#include <utility>

#include "core/host/error.h"

namespace morvex::windows {

// The error for a name that does not exist: "file not found" or "path not found".
enum class Missing { kFile, kPath };

// An error code from GetLastError; 0 is success.
using Code = unsigned long;

// Returns the error number for an error code; kNone for 0.
ErrorNumber ErrorFromCode(Code code, Missing missing);

// Returns the error number for GetLastError, after a system call has failed.
ErrorNumber LastError(Missing missing);

// Runs `call`, which returns an ErrorNumber or a Result, and turns exceptions into errors.
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
