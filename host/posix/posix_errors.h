// From the system's error codes to the program's error numbers, and the net under every call: no
// exception leaves it.
#pragma once

#include <cerrno>
#include <new>
#include <utility>

#include "core/host/error.h"

namespace morvex::posix {

// What a name that is not there means to the caller: no such file, or no such way to it.
enum class Missing { kFile, kPath };

// The error number for the error code `code` (a value of errno); 0 gives kNone.
ErrorNumber ErrorFromCode(int code, Missing missing);

// The same for the system call that has just failed.
inline ErrorNumber LastError(Missing missing) { return ErrorFromCode(errno, missing); }

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

}  // namespace morvex::posix
