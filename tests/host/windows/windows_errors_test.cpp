#include "host/windows/windows_errors.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

#include "host/windows/windows_api.h"

namespace morvex::windows {
namespace {

TEST(WindowsErrors, AMissingNameIsAFileOrAPathAsItWasAskedFor) {
  EXPECT_EQ(ErrorFromCode(ERROR_FILE_NOT_FOUND, Missing::kFile), ErrorNumber::kFileNotFound);
  EXPECT_EQ(ErrorFromCode(ERROR_FILE_NOT_FOUND, Missing::kPath), ErrorNumber::kPathNotFound);
  EXPECT_EQ(ErrorFromCode(ERROR_PATH_NOT_FOUND, Missing::kFile), ErrorNumber::kPathNotFound);
  EXPECT_EQ(ErrorFromCode(ERROR_BAD_NET_NAME, Missing::kFile), ErrorNumber::kPathNotFound);
}

TEST(WindowsErrors, CodesHaveTheNumbersThatTheLogShows) {
  const auto number = [](Code code) { return ErrorFromCode(code, Missing::kFile); };
  EXPECT_EQ(number(ERROR_SUCCESS), ErrorNumber::kNone);
  EXPECT_EQ(number(ERROR_ACCESS_DENIED), ErrorNumber::kPermissionDenied);
  EXPECT_EQ(number(ERROR_SHARING_VIOLATION), ErrorNumber::kPermissionDenied);
  EXPECT_EQ(number(ERROR_FILE_EXISTS), ErrorNumber::kFileAlreadyExists);
  EXPECT_EQ(number(ERROR_ALREADY_EXISTS), ErrorNumber::kFileAlreadyExists);
  EXPECT_EQ(number(ERROR_DISK_FULL), ErrorNumber::kDiskFull);
  EXPECT_EQ(number(ERROR_HANDLE_DISK_FULL), ErrorNumber::kDiskFull);
  EXPECT_EQ(number(ERROR_CRC), ErrorNumber::kDeviceIo);
  EXPECT_EQ(number(ERROR_TOO_MANY_OPEN_FILES), ErrorNumber::kTooManyFiles);
  EXPECT_EQ(number(ERROR_NOT_READY), ErrorNumber::kDeviceUnavailable);
  EXPECT_EQ(number(ERROR_NO_MEDIA_IN_DRIVE), ErrorNumber::kDeviceUnavailable);
  EXPECT_EQ(number(ERROR_BAD_NETPATH), ErrorNumber::kDeviceUnavailable);
  EXPECT_EQ(number(ERROR_INVALID_NAME), ErrorNumber::kBadFileName);
  EXPECT_EQ(number(ERROR_NOT_ENOUGH_MEMORY), ErrorNumber::kOutOfMemory);
  EXPECT_EQ(number(ERROR_CALL_NOT_IMPLEMENTED), ErrorNumber::kPathFileAccess);
}

TEST(WindowsErrors, TheLastCodeIsThatOfTheCallThatFailed) {
  SetLastError(ERROR_DISK_FULL);
  EXPECT_EQ(LastError(Missing::kFile), ErrorNumber::kDiskFull);
}

TEST(WindowsErrors, NoExceptionLeavesAGuardedCall) {
  EXPECT_EQ(Guarded([]() -> ErrorNumber { throw std::bad_alloc(); }), ErrorNumber::kOutOfMemory);
  EXPECT_EQ(Guarded([]() -> ErrorNumber { throw std::logic_error(""); }),
            ErrorNumber::kPathFileAccess);
  EXPECT_EQ(Guarded([] { return ErrorNumber::kDiskFull; }), ErrorNumber::kDiskFull);
}

}  // namespace
}  // namespace morvex::windows
