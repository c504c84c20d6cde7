// The table of error codes. A code that the table does not name counts as kPathFileAccess.
#include "host/windows/windows_errors.h"

#include "host/windows/windows_api.h"

namespace morvex::windows {
namespace {

// Codes that the compiler's headers do not declare.
constexpr Code kDiskQuotaExceeded = 1295;

}  // namespace

ErrorNumber ErrorFromCode(Code code, Missing missing) {
  switch (code) {
    case ERROR_SUCCESS:
      return ErrorNumber::kNone;
    case ERROR_FILE_NOT_FOUND:
      return missing == Missing::kFile ? ErrorNumber::kFileNotFound : ErrorNumber::kPathNotFound;
    case ERROR_PATH_NOT_FOUND:
    case ERROR_DIRECTORY:
    case ERROR_BAD_NET_NAME:
    case ERROR_INVALID_DRIVE:
    case ERROR_CANT_RESOLVE_FILENAME:
      return ErrorNumber::kPathNotFound;
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_WRITE_PROTECT:
    case ERROR_NETWORK_ACCESS_DENIED:
    case ERROR_PRIVILEGE_NOT_HELD:
      return ErrorNumber::kPermissionDenied;
    case ERROR_FILE_EXISTS:
    case ERROR_ALREADY_EXISTS:
      return ErrorNumber::kFileAlreadyExists;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
    case kDiskQuotaExceeded:
    case ERROR_FILE_TOO_LARGE:
      return ErrorNumber::kDiskFull;
    case ERROR_CRC:
    case ERROR_SEEK:
    case ERROR_READ_FAULT:
    case ERROR_WRITE_FAULT:
    case ERROR_GEN_FAILURE:
    case ERROR_IO_DEVICE:
    case ERROR_BROKEN_PIPE:
    case ERROR_NO_DATA:
      return ErrorNumber::kDeviceIo;
    case ERROR_TOO_MANY_OPEN_FILES:
      return ErrorNumber::kTooManyFiles;
    case ERROR_NOT_READY:
    case ERROR_DEV_NOT_EXIST:
    case ERROR_DEVICE_NOT_CONNECTED:
    case ERROR_UNRECOGNIZED_VOLUME:
    case ERROR_NO_MEDIA_IN_DRIVE:
    case ERROR_UNEXP_NET_ERR:
    case ERROR_NETNAME_DELETED:
    // A server that does not answer is no proof that the file is missing.
    case ERROR_BAD_NETPATH:
    case ERROR_NETWORK_UNREACHABLE:
    case ERROR_HOST_UNREACHABLE:
    case ERROR_SEM_TIMEOUT:
      return ErrorNumber::kDeviceUnavailable;
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
    case ERROR_FILENAME_EXCED_RANGE:
    case ERROR_INVALID_PARAMETER:
    case ERROR_NO_UNICODE_TRANSLATION:
      return ErrorNumber::kBadFileName;
    case ERROR_NOT_ENOUGH_MEMORY:
    case ERROR_OUTOFMEMORY:
    case ERROR_NO_SYSTEM_RESOURCES:
      return ErrorNumber::kOutOfMemory;
    default:
      return ErrorNumber::kPathFileAccess;
  }
}

ErrorNumber LastError(Missing missing) { return ErrorFromCode(GetLastError(), missing); }

}  // namespace morvex::windows
