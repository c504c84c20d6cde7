// Errors are values. Every host call that can fail returns one of these numbers, 0 for success. The
// run log and the console show the numbers and texts.
#pragma once

#include <string>
#include <string_view>
#include <utility>

namespace morvex {

enum class ErrorNumber : int {
  kNone = 0,
  kInvalidCall = 5,
  kOverflow = 6,
  kOutOfMemory = 7,
  kSubscriptOutOfRange = 9,
  kTypeMismatch = 13,
  kBadFileName = 52,
  kFileNotFound = 53,
  kFileAlreadyOpen = 55,
  kDeviceIo = 57,
  kFileAlreadyExists = 58,
  kDiskFull = 61,
  kTooManyFiles = 67,
  kDeviceUnavailable = 68,
  kPermissionDenied = 70,
  kPathFileAccess = 75,
  kPathNotFound = 76,
};

// The description that follows the number in logs and messages; empty for kNone.
std::string_view ErrorText(ErrorNumber error);

// Returns a line such as "Error 70: Permission denied".
std::string ErrorLine(ErrorNumber error);

// A value, or the error that prevented it. `value` is meaningful only if `error` is kNone.
template <class T>
struct Result {
  ErrorNumber error = ErrorNumber::kNone;
  T value{};

  Result() = default;
  Result(T result) : value(std::move(result)) {}   // NOLINT(google-explicit-constructor)
  Result(ErrorNumber failure) : error(failure) {}  // NOLINT(google-explicit-constructor)

  explicit operator bool() const { return error == ErrorNumber::kNone; }
};

}  // namespace morvex
