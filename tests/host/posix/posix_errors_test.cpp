// The error numbers for the system's codes. Exceptions do not leave the host.
#include "host/posix/posix_errors.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace morvex::posix {
namespace {

TEST(PosixErrorsTest, NoCodeIsNoError) {
  EXPECT_EQ(ErrorFromCode(0, Missing::kFile), ErrorNumber::kNone);
}

TEST(PosixErrorsTest, AMissingNameGoesByWhatWasAskedFor) {
  EXPECT_EQ(ErrorFromCode(ENOENT, Missing::kFile), ErrorNumber::kFileNotFound);
  EXPECT_EQ(ErrorFromCode(ENOENT, Missing::kPath), ErrorNumber::kPathNotFound);
}

TEST(PosixErrorsTest, EveryOtherCodeMeansTheSameToAll) {
  struct Case {
    int code;
    ErrorNumber error;
  };
  const Case cases[] = {
      {ENOTDIR, ErrorNumber::kPathNotFound},
      {EACCES, ErrorNumber::kPermissionDenied},
      {EPERM, ErrorNumber::kPermissionDenied},
      {EROFS, ErrorNumber::kPermissionDenied},
      {EEXIST, ErrorNumber::kFileAlreadyExists},
      {ENOSPC, ErrorNumber::kDiskFull},
      {EDQUOT, ErrorNumber::kDiskFull},
      {EFBIG, ErrorNumber::kDiskFull},
      {EIO, ErrorNumber::kDeviceIo},
      {EMFILE, ErrorNumber::kTooManyFiles},
      {ENFILE, ErrorNumber::kTooManyFiles},
      {ENODEV, ErrorNumber::kDeviceUnavailable},
      {ENXIO, ErrorNumber::kDeviceUnavailable},
      {ENAMETOOLONG, ErrorNumber::kBadFileName},
      {EINVAL, ErrorNumber::kBadFileName},
      {EILSEQ, ErrorNumber::kBadFileName},
      {ENOMEM, ErrorNumber::kOutOfMemory},
      {EISDIR, ErrorNumber::kPathFileAccess},
      {ELOOP, ErrorNumber::kPathFileAccess},
      {ETXTBSY, ErrorNumber::kPathFileAccess},
      {ENOTEMPTY, ErrorNumber::kPathFileAccess},
  };
  for (const Case& tried : cases) {
    EXPECT_EQ(ErrorFromCode(tried.code, Missing::kFile), tried.error) << tried.code;
    EXPECT_EQ(ErrorFromCode(tried.code, Missing::kPath), tried.error) << tried.code;
  }
}

TEST(PosixErrorsTest, LastErrorReadsTheSystemsCode) {
  errno = EROFS;
  EXPECT_EQ(LastError(Missing::kFile), ErrorNumber::kPermissionDenied);
}

TEST(PosixErrorsTest, AGuardedCallGivesWhatItGives) {
  EXPECT_EQ(Guarded([] { return ErrorNumber::kDiskFull; }), ErrorNumber::kDiskFull);
  const Result<int> result = Guarded([]() -> Result<int> { return 7; });
  ASSERT_TRUE(result);
  EXPECT_EQ(result.value, 7);
}

TEST(PosixErrorsTest, AGuardedCallTurnsExceptionsIntoErrors) {
  const auto no_memory = []() -> ErrorNumber { throw std::bad_alloc(); };
  const auto no_length = []() -> Result<std::string> { throw std::length_error("length"); };
  const auto no_reason = []() -> ErrorNumber { throw 1; };
  EXPECT_EQ(Guarded(no_memory), ErrorNumber::kOutOfMemory);
  EXPECT_EQ(Guarded(no_length).error, ErrorNumber::kPathFileAccess);
  EXPECT_EQ(Guarded(no_reason), ErrorNumber::kPathFileAccess);
}

}  // namespace
}  // namespace morvex::posix
