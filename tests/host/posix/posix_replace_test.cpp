// Replacing a file's content: what is kept, which links are followed, and failures.
#include "host/posix/posix_replace.h"

#include <filesystem>

#include "tests/host/posix/posix_test.h"

namespace morvex {
namespace {

namespace fs = std::filesystem;
using namespace posix_test;

using NameList = std::vector<std::string>;

class PosixReplaceTest : public PosixTest {
 protected:
  ErrorNumber Replace(std::string_view name, std::string_view bytes) {
    return files_.ReplaceFile(folder_ / name, bytes);
  }
  // Creates "closed/file", and makes "closed" a folder in which no further file can be created.
  void MakeClosedFolder(std::string_view bytes) {
    fs::create_directory(folder_ / "closed");
    Put(folder_ / "closed/file", bytes);
    ASSERT_EQ(chmod((folder_ / "closed").c_str(), 0555), 0);
  }
};

TEST_F(PosixReplaceTest, ANewFileIsMade) {
  const FileMask mask(027);
  EXPECT_EQ(Replace("file", "content"), ErrorNumber::kNone);
  EXPECT_EQ(Content(folder_ / "file"), "content");
  EXPECT_EQ(Bits(folder_ / "file"), 0640u);
  EXPECT_EQ(Names(folder_.Path()), NameList{"file"});
}

TEST_F(PosixReplaceTest, ContentIsReplacedWhateverItsLength) {
  const std::string long_bytes = Pattern(3'000'000);
  for (const std::string& bytes :
       {std::string("first"), std::string(), std::string("a\r\n\0\xff", 5), long_bytes,
        std::string("short")}) {
    EXPECT_EQ(Replace("file", bytes), ErrorNumber::kNone);
    EXPECT_TRUE(Content(folder_ / "file") == bytes) << bytes.size();
  }
  EXPECT_EQ(Names(folder_.Path()), NameList{"file"});
}

TEST_F(PosixReplaceTest, BitsAreKept) {
  const OrdinaryUser user(folder_.Path());
  const FileMask mask(077);
  Put(folder_ / "file", "old");
  for (const mode_t bits : {0600u, 0640u, 0666u, 0777u, 0200u}) {
    ASSERT_EQ(chmod((folder_ / "file").c_str(), bits), 0);
    EXPECT_EQ(Replace("file", "new"), ErrorNumber::kNone);
    EXPECT_EQ(Bits(folder_ / "file"), bits);
  }
}

TEST_F(PosixReplaceTest, TheOwnerIsKept) {
  if (geteuid() != 0) GTEST_SKIP() << "only root may write as another owner";
  Put(folder_ / "file", "old");
  ASSERT_EQ(chown((folder_ / "file").c_str(), 1234, 5678), 0);
  EXPECT_EQ(Replace("file", "new"), ErrorNumber::kNone);
  EXPECT_EQ(Content(folder_ / "file"), "new");
  EXPECT_EQ(StatusOf(folder_ / "file").st_uid, 1234u);
  EXPECT_EQ(StatusOf(folder_ / "file").st_gid, 5678u);
}

TEST_F(PosixReplaceTest, AnothersFileThatMayBeWrittenIsReplaced) {
  if (geteuid() != 0) GTEST_SKIP() << "needs a second user, which only root can be";
  { const OrdinaryUser owner(folder_.Path()); }
  Put(folder_ / "file", "old");
  ASSERT_EQ(chmod((folder_ / "file").c_str(), 0666), 0);
  ASSERT_EQ(seteuid(kNobody), 0);
  const ErrorNumber error = Replace("file", "new");
  ASSERT_EQ(seteuid(0), 0);
  EXPECT_EQ(error, ErrorNumber::kNone);
  EXPECT_EQ(Content(folder_ / "file"), "new");
  EXPECT_EQ(Bits(folder_ / "file"), 0666u);
}

TEST_F(PosixReplaceTest, LinksAreFollowedToTheirEnd) {
  fs::create_directory(folder_ / "folder");
  Put(folder_ / "folder/file", "old");
  fs::create_symlink("folder/file", folder_ / "one");
  fs::create_symlink(folder_ / "one", folder_ / "two");
  fs::create_directory_symlink("folder", folder_ / "alias");
  EXPECT_EQ(Replace("two", "by link"), ErrorNumber::kNone);
  EXPECT_EQ(Content(folder_ / "folder/file"), "by link");
  EXPECT_EQ(Replace("alias/file", "by alias"), ErrorNumber::kNone);
  EXPECT_EQ(Content(folder_ / "folder/file"), "by alias");
  EXPECT_TRUE(S_ISLNK(StatusOf(folder_ / "one").st_mode));
  EXPECT_TRUE(S_ISLNK(StatusOf(folder_ / "two").st_mode));
  EXPECT_EQ(Names(folder_ / "folder"), NameList{"file"});
}

TEST_F(PosixReplaceTest, ABrokenLinkIsMadeWhole) {
  fs::create_directory(folder_ / "folder");
  fs::create_symlink("folder/new", folder_ / "link");
  EXPECT_EQ(Replace("link", "content"), ErrorNumber::kNone);
  EXPECT_EQ(Content(folder_ / "folder/new"), "content");
  EXPECT_TRUE(S_ISLNK(StatusOf(folder_ / "link").st_mode));
  fs::create_symlink("none/new", folder_ / "hopeless");
  EXPECT_EQ(Replace("hopeless", "content"), ErrorNumber::kPathNotFound);
  fs::create_symlink("loop", folder_ / "loop");
  EXPECT_EQ(Replace("loop", "content"), ErrorNumber::kPathFileAccess);
}

TEST_F(PosixReplaceTest, OnlyFilesAreReplaced) {
  fs::create_directory(folder_ / "folder");
  ASSERT_EQ(mkfifo((folder_ / "pipe").c_str(), 0600), 0);
  Put(folder_ / "file", "kept");
  fs::create_symlink("folder", folder_ / "link");
  for (const char* name : {"folder", "folder/", "folder/.", "link", "pipe"}) {
    EXPECT_EQ(Replace(name, "x"), ErrorNumber::kPathFileAccess) << name;
  }
  for (const char* name : {"none/file", "none/", "file/x", "file/"}) {
    EXPECT_EQ(Replace(name, "x"), ErrorNumber::kPathNotFound) << name;
  }
  EXPECT_EQ(files_.ReplaceFile("/dev/full", "x"), ErrorNumber::kPathFileAccess);
  EXPECT_EQ(Names(folder_.Path()), (NameList{"file", "folder", "link", "pipe"}));
  EXPECT_EQ(Content(folder_ / "file"), "kept");
}

TEST_F(PosixReplaceTest, LongAndOddNamesWork) {
  for (const std::string& name : {kLongName, kOddName}) {
    EXPECT_EQ(Replace(name, "first"), ErrorNumber::kNone);
    EXPECT_EQ(Replace(name, "second"), ErrorNumber::kNone);
    EXPECT_EQ(Content(folder_ / name), "second");
  }
  EXPECT_EQ(Names(folder_.Path()).size(), 2u);
}

TEST_F(PosixReplaceTest, AReadOnlyFileIsNotReplaced) {
  Put(folder_ / "file", "kept");
  const OrdinaryUser user(folder_.Path());
  ASSERT_EQ(chmod((folder_ / "file").c_str(), 0444), 0);
  EXPECT_EQ(Replace("file", "new"), ErrorNumber::kPermissionDenied);
  EXPECT_EQ(Content(folder_ / "file"), "kept");
  EXPECT_EQ(Names(folder_.Path()), NameList{"file"});
}

TEST_F(PosixReplaceTest, AFullDiskKeepsTheOldContent) {
  Put(folder_ / "file", "kept");
  const FileSizeLimit limit(1000);
  EXPECT_EQ(Replace("file", std::string(2000, 'x')), ErrorNumber::kDiskFull);
  EXPECT_EQ(Replace("new", std::string(2000, 'x')), ErrorNumber::kDiskFull);
  EXPECT_EQ(Content(folder_ / "file"), "kept");
  EXPECT_EQ(Names(folder_.Path()), NameList{"file"});
}

TEST_F(PosixReplaceTest, RunningOutOfDescriptorsKeepsTheOldContent) {
  const std::string path = folder_ / "file";
  Put(path, "kept");
  int more = 0;
  for (;; ++more) {
    ErrorNumber error = ErrorNumber::kNone;
    {
      const DescriptorLimit limit(more);
      error = posix::ReplaceContent(path, "new");
    }
    if (error == ErrorNumber::kNone) break;
    ASSERT_EQ(error, ErrorNumber::kTooManyFiles) << more;
    EXPECT_EQ(Content(folder_ / "file"), "kept") << more;
    EXPECT_EQ(Names(folder_.Path()), NameList{"file"}) << more;
  }
  EXPECT_GE(more, 1);
  EXPECT_EQ(Content(folder_ / "file"), "new");
}

TEST_F(PosixReplaceTest, AReaderKeepsTheOldContent) {
  Put(folder_ / "file", "old");
  const auto reader = files_.OpenForReading(folder_ / "file");
  ASSERT_TRUE(reader);
  EXPECT_EQ(Replace("file", "new"), ErrorNumber::kNone);
  std::string into(3, '?');
  EXPECT_EQ(reader.value->ReadAt(0, into.data(), 3).value, 3u);
  EXPECT_EQ(into, "old");
}

TEST_F(PosixReplaceTest, WhereTheFolderTakesNoSecondFileTheFirstIsOverwritten) {
  const OrdinaryUser user(folder_.Path());
  MakeClosedFolder("some old content");
  ASSERT_EQ(chmod((folder_ / "closed/file").c_str(), 0604), 0);
  const ino_t before = StatusOf(folder_ / "closed/file").st_ino;
  const std::string long_bytes = Pattern(100'000);
  for (const std::string& bytes : {std::string("shorter"), long_bytes, std::string()}) {
    EXPECT_EQ(Replace("closed/file", bytes), ErrorNumber::kNone);
    EXPECT_TRUE(Content(folder_ / "closed/file") == bytes) << bytes.size();
  }
  EXPECT_EQ(StatusOf(folder_ / "closed/file").st_ino, before);
  EXPECT_EQ(Bits(folder_ / "closed/file"), 0604u);
  EXPECT_EQ(Names(folder_ / "closed"), NameList{"file"});
}

TEST_F(PosixReplaceTest, AClosedFolderTakesNoNewFile) {
  const OrdinaryUser user(folder_.Path());
  MakeClosedFolder("kept");
  EXPECT_EQ(Replace("closed/new", "x"), ErrorNumber::kPermissionDenied);
  ASSERT_EQ(chmod((folder_ / "closed/file").c_str(), 0444), 0);
  EXPECT_EQ(Replace("closed/file", "x"), ErrorNumber::kPermissionDenied);
  EXPECT_EQ(Content(folder_ / "closed/file"), "kept");
  EXPECT_EQ(Names(folder_ / "closed"), NameList{"file"});
}

TEST_F(PosixReplaceTest, AFullDiskKeepsTheOldContentOfAnOverwrittenFile) {
  const OrdinaryUser user(folder_.Path());
  MakeClosedFolder("some old content");
  const FileSizeLimit limit(1000);
  EXPECT_EQ(Replace("closed/file", std::string(2000, 'x')), ErrorNumber::kDiskFull);
  EXPECT_EQ(Content(folder_ / "closed/file"), "some old content");
}

TEST_F(PosixReplaceTest, AnothersFileInAStickyFolderIsOverwritten) {
  if (geteuid() != 0) GTEST_SKIP() << "needs a second user, which only root can be";
  Put(folder_ / "file", "old");
  ASSERT_EQ(chmod((folder_ / "file").c_str(), 0666), 0);
  ASSERT_EQ(chmod(folder_.Path().c_str(), 01777), 0);
  ASSERT_EQ(seteuid(kNobody), 0);
  const ErrorNumber error = Replace("file", "new");
  ASSERT_EQ(seteuid(0), 0);
  EXPECT_EQ(error, ErrorNumber::kNone);
  EXPECT_EQ(Content(folder_ / "file"), "new");
  EXPECT_EQ(StatusOf(folder_ / "file").st_uid, 0u);
  EXPECT_EQ(Names(folder_.Path()), NameList{"file"});
}

}  // namespace
}  // namespace morvex
