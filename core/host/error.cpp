#include "core/host/error.h"

namespace morvex {

std::string_view ErrorText(ErrorNumber error) {
  switch (error) {
    case ErrorNumber::kNone:
      return "";
    case ErrorNumber::kInvalidCall:
      return "Invalid procedure call or argument";
    case ErrorNumber::kOverflow:
      return "Overflow";
    case ErrorNumber::kOutOfMemory:
      return "Out of memory";
    case ErrorNumber::kSubscriptOutOfRange:
      return "Subscript out of range";
    case ErrorNumber::kTypeMismatch:
      return "Type mismatch";
    case ErrorNumber::kBadFileName:
      return "Bad file name or number";
    case ErrorNumber::kFileNotFound:
      return "File not found";
    case ErrorNumber::kFileAlreadyOpen:
      return "File already open";
    case ErrorNumber::kDeviceIo:
      return "Device I/O error";
    case ErrorNumber::kFileAlreadyExists:
      return "File already exists";
    case ErrorNumber::kDiskFull:
      return "Disk full";
    case ErrorNumber::kTooManyFiles:
      return "Too many files";
    case ErrorNumber::kDeviceUnavailable:
      return "Device unavailable";
    case ErrorNumber::kPermissionDenied:
      return "Permission denied";
    case ErrorNumber::kPathFileAccess:
      return "Path/File access error";
    case ErrorNumber::kPathNotFound:
      return "Path not found";
  }
  return "";
}

std::string ErrorLine(ErrorNumber error) {
  return "Error " + std::to_string(static_cast<int>(error)) + ": " + std::string(ErrorText(error));
}

}  // namespace morvex
