// Shared by the tests of the POSIX host: a temporary folder, short ways to create and examine files
// with system calls, and temporary limits on what the process may do.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "host/posix/posix_files.h"

namespace morvex::posix_test {

inline constexpr uid_t kNobody = 65534;

// A new temporary folder. The destructor deletes it with everything in it, whatever the permission
// bits.
class TempFolder {
 public:
  explicit TempFolder(const std::string& base = std::filesystem::temp_directory_path()) {
    std::string pattern = base + "/morvex-test-XXXXXX";
    if (mkdtemp(pattern.data()) != nullptr) path_ = std::filesystem::canonical(pattern);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;
  ~TempFolder() {
    if (path_.empty()) return;
    std::error_code ignored;
    Open(path_);
    std::filesystem::remove_all(path_, ignored);
  }

  const std::string& Path() const { return path_; }
  std::string operator/(std::string_view name) const { return path_ + "/" + std::string(name); }

 private:
  static void Open(const std::filesystem::path& folder) {
    std::error_code ignored;
    std::filesystem::permissions(folder, std::filesystem::perms::owner_all,
                                 std::filesystem::perm_options::add, ignored);
    for (const auto& entry : std::filesystem::directory_iterator(folder, ignored)) {
      if (entry.is_directory(ignored) && !entry.is_symlink(ignored)) Open(entry.path());
    }
  }

  std::string path_;
};

inline void Put(const std::string& path, std::string_view bytes) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  file.close();
  ASSERT_TRUE(file) << path;
}

// Returns a file's content, or "(cannot be read)", which no test writes into a file.
inline std::string Content(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::stringbuf bytes;
  if (!file) return "(cannot be read)";
  file >> &bytes;
  return std::move(bytes).str();
}

// Returns bytes that differ from offset to offset, so that a test notices misplaced pieces.
inline std::string Pattern(std::size_t size) {
  std::string bytes;
  bytes.reserve(size + 16);
  for (unsigned number = 0; bytes.size() < size; number += 7919) {
    bytes += std::to_string(number);
  }
  bytes.resize(size);
  return bytes;
}

inline struct stat StatusOf(const std::string& path) {
  struct stat status {};
  EXPECT_EQ(lstat(path.c_str(), &status), 0) << path;
  return status;
}

inline mode_t Bits(const std::string& path) { return StatusOf(path).st_mode & 07777; }

inline bool IsThere(const std::string& path) {
  struct stat status {};
  return lstat(path.c_str(), &status) == 0;
}

// Returns the names in a folder, sorted.
inline std::vector<std::string> Names(const std::string& folder) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

inline void SetModified(const std::string& path, timespec moment) {
  timespec times[2] = {};
  times[0].tv_nsec = UTIME_OMIT;
  times[1] = moment;
  ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times, 0), 0) << path;
}

// During its lifetime, the process cannot write a file beyond `bytes` bytes: an attempt fails.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) : handler_(signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &before_);
    rlimit limit = before_;
    limit.rlim_cur = bytes;
    EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &before_);
    signal(SIGXFSZ, handler_);
  }

 private:
  void (*handler_)(int);
  rlimit before_{};
};

// During its lifetime, the process can open only `more` further files at a time. Meanwhile, a test
// may use only free functions and local variables, not its members: a sanitizer opens files itself
// when it first meets an object of a class with virtual functions.
class DescriptorLimit {
 public:
  explicit DescriptorLimit(int more) {
    const int next = open("/dev/null", O_RDONLY);
    EXPECT_GE(next, 0);
    close(next);
    getrlimit(RLIMIT_NOFILE, &before_);
    rlimit limit = before_;
    limit.rlim_cur = static_cast<rlim_t>(next + more);
    EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
  }
  DescriptorLimit(const DescriptorLimit&) = delete;
  DescriptorLimit& operator=(const DescriptorLimit&) = delete;
  ~DescriptorLimit() { setrlimit(RLIMIT_NOFILE, &before_); }

 private:
  rlimit before_{};
};

class FileMask {
 public:
  explicit FileMask(mode_t mask) : before_(umask(mask)) {}
  FileMask(const FileMask&) = delete;
  FileMask& operator=(const FileMask&) = delete;
  ~FileMask() { umask(before_); }

 private:
  mode_t before_;
};

// During its lifetime, the process has no privileges. If it runs as root, it first gives the folder
// and everything in it to the user kNobody and then becomes this user; otherwise nothing changes.
class OrdinaryUser {
 public:
  explicit OrdinaryUser(const std::string& folder) {
    if (geteuid() != 0) return;
    HandOver(folder);
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
      HandOver(entry.path());
    }
    changed_ = setegid(kNobody) == 0 && seteuid(kNobody) == 0;
    EXPECT_TRUE(changed_);
  }
  OrdinaryUser(const OrdinaryUser&) = delete;
  OrdinaryUser& operator=(const OrdinaryUser&) = delete;
  ~OrdinaryUser() {
    if (!changed_) return;
    EXPECT_EQ(seteuid(0), 0);
    EXPECT_EQ(setegid(0), 0);
  }

 private:
  static void HandOver(const std::string& path) {
    EXPECT_EQ(lchown(path.c_str(), kNobody, kNobody), 0) << path;
  }

  bool changed_ = false;
};

// Returns a folder to which everybody may write, on another file system than `path`; nothing if
// there is no such folder.
inline std::optional<std::string> FolderOnOtherDevice(const std::string& path) {
  for (const std::string folder : {"/dev/shm", "/var/tmp", "/tmp"}) {
    struct stat status {};
    if (stat(folder.c_str(), &status) != 0 || status.st_dev == StatusOf(path).st_dev) continue;
    const bool open_to_all = (status.st_mode & S_IWOTH) != 0;
    if (open_to_all && access(folder.c_str(), W_OK | X_OK) == 0) return folder;
  }
  return std::nullopt;
}

// A test with a temporary folder and the tested service.
class PosixTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_FALSE(folder_.Path().empty()); }

  TempFolder folder_;
  PosixFileService files_;
};

inline const std::string kNulName("a\0b", 3);
inline const std::string kLongName(255, 'n');
inline const std::string kTooLongName(300, 'n');
// A name with bytes that careless programs mishandle.
inline const std::string kOddName = "line\nbreak \xff\xfe\t-'\"*?\\";

}  // namespace morvex::posix_test
