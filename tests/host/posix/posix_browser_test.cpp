// Showing a folder. A script stands in for the desktop's opener and records how the program starts
// it.
#include "host/posix/posix_browser.h"

#include <sys/wait.h>

#include <cerrno>
#include <chrono>
#include <filesystem>
#include <thread>

#include "host/posix/posix_system.h"
#include "tests/host/posix/posix_test.h"

namespace morvex::posix {
namespace {

namespace fs = std::filesystem;
using namespace posix_test;

class PosixBrowserTest : public PosixTest {
 protected:
  void SetUp() override {
    PosixTest::SetUp();
    path_before_ = getenv("PATH");
    fs::create_directory(folder_ / "bin");
  }
  void TearDown() override { setenv("PATH", path_before_.c_str(), 1); }

  // Installs `script` as the opener. The script finds the test's folder in $HERE. Its output in
  // $HERE/out is complete when $HERE/done appears.
  void Install(const std::string& script) {
    Put(folder_ / "bin/xdg-open",
        "#!/bin/sh\nHERE='" + folder_.Path() + "'\n" + script + "\n: > \"$HERE/done\"\n");
    ASSERT_EQ(chmod((folder_ / "bin/xdg-open").c_str(), 0755), 0);
    setenv("PATH", (folder_ / "bin:" + path_before_).c_str(), 1);
  }
  PosixSystemService system_{0, nullptr};

  bool IsDone() const {
    for (int tries = 0; tries < 1200; ++tries) {
      if (IsThere(folder_ / "done")) return true;
      std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    return false;
  }

 private:
  std::string path_before_;
};

TEST_F(PosixBrowserTest, TheFolderIsOneArgument) {
  Install("printf '%s|' \"$#\" \"$@\" > \"$HERE/out\"");
  const std::string odd = folder_ / "-a b'\"$HOME;`\n\xff";
  fs::create_directory(odd);
  system_.StartFileBrowser(odd + "/file that need not be there");
  ASSERT_TRUE(IsDone());
  EXPECT_EQ(Content(folder_ / "out"), "1|" + odd + "|");
}

TEST_F(PosixBrowserTest, ARelativePathBecomesAbsolute) {
  Install("printf '%s' \"$1\" > \"$HERE/out\"");
  const fs::path before = fs::current_path();
  fs::current_path(folder_.Path());
  system_.StartFileBrowser("file");
  fs::current_path(before);
  ASSERT_TRUE(IsDone());
  EXPECT_EQ(Content(folder_ / "out"), folder_.Path());
}

TEST_F(PosixBrowserTest, StreamsAndSignalsAreNotOurs) {
  Install(
      "links=$(for stream in 0 1 2; do readlink /proc/$$/fd/$stream; done)\n"
      "printf '%s' \"$links\" > \"$HERE/links\"\n"
      "grep -E '^Sig(Ign|Blk)' /proc/self/status > \"$HERE/signals\"");
  system_.StartFileBrowser(folder_ / "file");
  ASSERT_TRUE(IsDone());
  EXPECT_EQ(Content(folder_ / "links"), "/dev/null\n/dev/null\n/dev/null");
  std::ifstream signals(folder_ / "signals");
  std::string name;
  std::string mask;
  int masks = 0;
  while (signals >> name >> mask) {
    ++masks;
    const unsigned long long bits = std::stoull(mask, nullptr, 16);
    for (const int number : {SIGXFSZ, SIGINT, SIGTERM}) {
      EXPECT_EQ(bits >> (number - 1) & 1, 0u) << name << " " << number;
    }
  }
  EXPECT_EQ(masks, 2);
}

TEST_F(PosixBrowserTest, ItIsNotWaitedForAndLeavesNoChild) {
  Install(
      "for tries in $(seq 1200); do [ -e \"$HERE/go\" ] && break; sleep 0.05; done\n"
      "[ -e \"$HERE/go\" ] && : > \"$HERE/waited\"");
  system_.StartFileBrowser(folder_ / "file");
  EXPECT_FALSE(IsThere(folder_ / "done"));
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_EQ(errno, ECHILD);
  Put(folder_ / "go", "");
  ASSERT_TRUE(IsDone());
  EXPECT_TRUE(IsThere(folder_ / "waited"));
}

TEST_F(PosixBrowserTest, ItCannotStartInSilence) {
  setenv("PATH", (folder_ / "bin").c_str(), 1);
  system_.StartFileBrowser(folder_ / "file");
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_EQ(errno, ECHILD);
}

TEST_F(PosixBrowserTest, NothingIsStartedForNothing) {
  Install("printf '%s' \"$1\" > \"$HERE/out\"");
  system_.StartFileBrowser("");
  system_.StartFileBrowser(kNulName);
  system_.StartFileBrowser(folder_ / "last");
  ASSERT_TRUE(IsDone());
  EXPECT_EQ(Content(folder_ / "out"), folder_.Path());
}

}  // namespace
}  // namespace morvex::posix
