// Translates the system's error codes into the program's error numbers, and keeps exceptions inside
// the host.
#pragma once

#include <cerrno>
#include <new>
#include <utility>

#include "core/host/error.h"

namespace morvex::posix {

// The error for a name that does not exist: "file not found" or "path not found".
enum class Missing { kFile, kPath };

// Returns the error number for the error code `code` (a value of errno); kNone for 0.
ErrorNumber ErrorFromCode(int code, Missing missing);

// Returns the error number for errno, after a system call has failed.
inline ErrorNumber LastError(Missing missing) { return ErrorFromCode(errno, missing); }

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

}  // namespace morvex::posix
