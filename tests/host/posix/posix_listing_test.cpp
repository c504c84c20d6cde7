// Listing folders: which names are listed, and the kind of each.
#include "host/posix/posix_listing.h"

#include <dirent.h>

#include <filesystem>
#include <map>
#include <optional>

#include "host/posix/posix_descriptor.h"
#include "tests/host/posix/posix_test.h"

namespace morvex::posix {
namespace {

namespace fs = std::filesystem;
using namespace posix_test;

using Listed = std::map<std::string, std::pair<EntryKind, bool>>;

class PosixListingTest : public PosixTest {
 protected:
  Listed ListedIn(const std::string& path) {
    const Result<std::vector<FolderEntry>> entries = files_.ListFolder(path);
    EXPECT_EQ(entries.error, ErrorNumber::kNone) << path;
    Listed listed;
    for (const FolderEntry& entry : entries.value) {
      const auto added = listed.emplace(entry.name, std::pair(entry.kind, entry.is_link));
      EXPECT_TRUE(added.second) << entry.name << " is listed twice";
    }
    return listed;
  }
};

TEST_F(PosixListingTest, AnEmptyFolderListsNothing) {
  const Result<std::vector<FolderEntry>> entries = files_.ListFolder(folder_.Path());
  ASSERT_TRUE(entries);
  EXPECT_TRUE(entries.value.empty());
}

TEST_F(PosixListingTest, FilesFoldersAndWhatLinksLeadTo) {
  fs::create_directory(folder_ / "folder");
  Put(folder_ / "file", "");
  Put(folder_ / ".hidden", "");
  Put(folder_ / "..two dots", "");
  fs::create_symlink("file", folder_ / "file link");
  fs::create_symlink("folder", folder_ / "folder link");
  fs::create_symlink("file link", folder_ / "link link");
  fs::create_hard_link(folder_ / "file", folder_ / "second name");
  const Listed expected = {
      {"folder", {EntryKind::kFolder, false}}, {"file", {EntryKind::kFile, false}},
      {".hidden", {EntryKind::kFile, false}},  {"..two dots", {EntryKind::kFile, false}},
      {"file link", {EntryKind::kFile, true}}, {"folder link", {EntryKind::kFolder, true}},
      {"link link", {EntryKind::kFile, true}}, {"second name", {EntryKind::kFile, false}},
  };
  EXPECT_EQ(ListedIn(folder_.Path()), expected);
}

TEST_F(PosixListingTest, WhatIsNeitherFileNorFolderIsListedAsWhatItIs) {
  ASSERT_EQ(mkfifo((folder_ / "pipe").c_str(), 0600), 0);
  fs::create_symlink("pipe", folder_ / "pipe link");
  fs::create_symlink("/dev/null", folder_ / "device link");
  fs::create_symlink("nowhere", folder_ / "broken");
  fs::create_symlink("loop", folder_ / "loop");
  Put(folder_ / "file", "");
  fs::create_symlink("file/x", folder_ / "through a file");
  const Listed expected = {
      {"file", {EntryKind::kFile, false}},
      {"pipe", {EntryKind::kSpecial, false}},
      {"pipe link", {EntryKind::kSpecial, true}},
      {"device link", {EntryKind::kSpecial, true}},
      {"broken", {EntryKind::kBrokenLink, true}},
      {"loop", {EntryKind::kBrokenLink, true}},
      {"through a file", {EntryKind::kBrokenLink, true}},
  };
  EXPECT_EQ(ListedIn(folder_.Path()), expected);
}

TEST_F(PosixListingTest, TheTextOfALinkIsReadAsItWasWritten) {
  const std::string longest(4000, 'x');
  fs::create_symlink("no/such/../place", folder_ / "broken");
  fs::create_symlink(longest, folder_ / "long");
  Put(folder_ / "file", "");
  EXPECT_EQ(files_.LinkText(folder_ / "broken").value, "no/such/../place");
  EXPECT_EQ(files_.LinkText(folder_ / "long").value, longest);
  EXPECT_EQ(files_.LinkText(folder_ / "file").error, ErrorNumber::kPathFileAccess);
  EXPECT_EQ(files_.LinkText(folder_ / "none").error, ErrorNumber::kFileNotFound);
  EXPECT_EQ(files_.LinkText("").error, ErrorNumber::kFileNotFound);
}

TEST_F(PosixListingTest, NamesAreBytes) {
  Put(folder_ / kOddName, "");
  Put(folder_ / kLongName, "");
  EXPECT_EQ(ListedIn(folder_.Path()), (Listed{{kOddName, {EntryKind::kFile, false}},
                                              {kLongName, {EntryKind::kFile, false}}}));
}

TEST_F(PosixListingTest, TheOrderIsTheFileSystemsOwn) {
  for (int index = 0; index < 200; ++index) Put(folder_ / std::to_string(index * 7919), "");
  std::vector<std::string> own;
  for (const auto& entry : fs::directory_iterator(folder_.Path())) {
    own.push_back(entry.path().filename());
  }
  std::vector<std::string> listed;
  for (const FolderEntry& entry : files_.ListFolder(folder_.Path()).value) {
    listed.push_back(entry.name);
  }
  EXPECT_EQ(listed, own);
}

TEST_F(PosixListingTest, AFolderIsListedThroughALink) {
  fs::create_directory(folder_ / "folder");
  Put(folder_ / "folder/file", "");
  fs::create_directory_symlink("folder", folder_ / "link");
  EXPECT_EQ(ListedIn(folder_ / "link"), (Listed{{"file", {EntryKind::kFile, false}}}));
}

TEST_F(PosixListingTest, WhatIsNoFolderCannotBeListed) {
  Put(folder_ / "file", "");
  EXPECT_EQ(files_.ListFolder(folder_ / "none").error, ErrorNumber::kPathNotFound);
  EXPECT_EQ(files_.ListFolder(folder_ / "file").error, ErrorNumber::kPathNotFound);
}

TEST_F(PosixListingTest, AForbiddenFolderIsAnError) {
  fs::create_directory(folder_ / "closed");
  const OrdinaryUser user(folder_.Path());
  ASSERT_EQ(chmod((folder_ / "closed").c_str(), 0333), 0);
  EXPECT_EQ(files_.ListFolder(folder_ / "closed").error, ErrorNumber::kPermissionDenied);
}

TEST_F(PosixListingTest, AFolderThatMayOnlyBeReadIsListed) {
  fs::create_directory(folder_ / "half");
  Put(folder_ / "half/file", "");
  fs::create_symlink("file", folder_ / "half/link");
  const OrdinaryUser user(folder_.Path());
  ASSERT_EQ(chmod((folder_ / "half").c_str(), 0444), 0);
  EXPECT_EQ(ListedIn(folder_ / "half"),
            (Listed{{"file", {EntryKind::kFile, false}}, {"link", {EntryKind::kFile, true}}}));
}

TEST_F(PosixListingTest, ALinkIntoAForbiddenFolderIsListedAsAFileSoThatItIsMissed) {
  fs::create_directories(folder_ / "closed/folder");
  Put(folder_ / "closed/file", "");
  fs::create_directory(folder_ / "open");
  fs::create_symlink("../closed/file", folder_ / "open/file link");
  fs::create_symlink("../closed/folder", folder_ / "open/folder link");
  const OrdinaryUser user(folder_.Path());
  ASSERT_EQ(chmod((folder_ / "closed").c_str(), 0), 0);
  EXPECT_EQ(ListedIn(folder_ / "open"), (Listed{{"file link", {EntryKind::kFile, true}},
                                                {"folder link", {EntryKind::kFile, true}}}));
  EXPECT_EQ(files_.LookUpFile(folder_ / "open/folder link").error, ErrorNumber::kPermissionDenied);
}

TEST_F(PosixListingTest, RunningOutOfDescriptorsIsAnError) {
  const std::string path = folder_.Path();
  ErrorNumber error = ErrorNumber::kNone;
  {
    const DescriptorLimit none_left(0);
    error = ReadFolder(path).error;
  }
  EXPECT_EQ(error, ErrorNumber::kTooManyFiles);
}

TEST_F(PosixListingTest, NamesWithoutATypeAreLookedAt) {
  fs::create_directory(folder_ / "folder");
  Put(folder_ / "file", "");
  ASSERT_EQ(mkfifo((folder_ / "pipe").c_str(), 0600), 0);
  fs::create_symlink("file", folder_ / "file link");
  fs::create_symlink("folder", folder_ / "folder link");
  fs::create_symlink("pipe", folder_ / "pipe link");
  fs::create_symlink("nowhere", folder_ / "broken");
  const Descriptor folder = OpenAt(AT_FDCWD, folder_.Path().c_str(), O_PATH | O_DIRECTORY);
  struct Case {
    const char* name;
    std::optional<EntryKind> kind;
    bool is_link;
  };
  const Case cases[] = {
      {"folder", EntryKind::kFolder, false},     {"file", EntryKind::kFile, false},
      {"pipe", EntryKind::kSpecial, false},      {"file link", EntryKind::kFile, true},
      {"folder link", EntryKind::kFolder, true}, {"pipe link", EntryKind::kSpecial, true},
      {"broken", EntryKind::kBrokenLink, true},  {"deleted since", std::nullopt, false},
  };
  for (const Case& tried : cases) {
    const Result<Examined> examined = ExamineEntry(folder.Get(), tried.name, DT_UNKNOWN);
    ASSERT_TRUE(examined) << tried.name;
    EXPECT_EQ(examined.value.kind, tried.kind) << tried.name;
    EXPECT_EQ(examined.value.is_link, tried.is_link) << tried.name;
  }
}

TEST_F(PosixListingTest, ANameWithoutATypeThatCannotBeLookedAtIsAnError) {
  fs::create_directory(folder_ / "half");
  Put(folder_ / "half/file", "");
  const OrdinaryUser user(folder_.Path());
  const Descriptor folder = OpenAt(AT_FDCWD, (folder_ / "half").c_str(), O_RDONLY);
  ASSERT_EQ(chmod((folder_ / "half").c_str(), 0444), 0);
  EXPECT_EQ(ExamineEntry(folder.Get(), "file", DT_UNKNOWN).error, ErrorNumber::kPermissionDenied);
  EXPECT_EQ(ExamineEntry(folder.Get(), "file", DT_REG).value.kind, EntryKind::kFile);
}

}  // namespace
}  // namespace morvex::posix
