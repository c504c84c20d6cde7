// Errors are values. Every call on the host that can fail gives one of these numbers, 0 for
// success; the numbers and texts are those that the run log and the console show.
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

// The description that stands behind the number in logs and messages; empty for kNone.
std::string_view ErrorText(ErrorNumber error);

// As in "Error 70: Permission denied".
std::string ErrorLine(ErrorNumber error);

// A value, or the number of the error that prevented it. The value is meaningful only when `error`
// is kNone.
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
