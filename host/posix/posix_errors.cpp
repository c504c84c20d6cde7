// The table of error codes. A code that the table does not name counts as kPathFileAccess.
#include "host/posix/posix_errors.h"

namespace morvex::posix {

ErrorNumber ErrorFromCode(int code, Missing missing) {
  switch (code) {
    case 0:
      return ErrorNumber::kNone;
    case ENOENT:
      return missing == Missing::kFile ? ErrorNumber::kFileNotFound : ErrorNumber::kPathNotFound;
    case ENOTDIR:
      return ErrorNumber::kPathNotFound;
    case EACCES:
    case EPERM:
    case EROFS:
      return ErrorNumber::kPermissionDenied;
    case EEXIST:
      return ErrorNumber::kFileAlreadyExists;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
      return ErrorNumber::kDiskFull;
    case EIO:
      return ErrorNumber::kDeviceIo;
    case EMFILE:
    case ENFILE:
      return ErrorNumber::kTooManyFiles;
    case ENODEV:
    case ENXIO:
      return ErrorNumber::kDeviceUnavailable;
    case ENAMETOOLONG:
    case EINVAL:
    case EILSEQ:  // bytes that the file system allows in no name
      return ErrorNumber::kBadFileName;
    case ENOMEM:
      return ErrorNumber::kOutOfMemory;
    default:
      return ErrorNumber::kPathFileAccess;
  }
}

}  // namespace morvex::posix
