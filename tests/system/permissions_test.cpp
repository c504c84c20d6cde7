// Files and folders that the user may not read or write, and files that cannot be read. The program
// runs without privileges; if the tests run as root, the program runs as another user.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <filesystem>
#include <thread>

#include "tests/system/system_run.h"

namespace morvex::system_test {
namespace {

class Permissions : public SystemTest {
 protected:
  Permissions() { Put(source_); }
  ~Permissions() override {
    for (const auto& [path, bits] : changed_) chmod(path.c_str(), 0755);
  }

  // Sets the permission bits of the named files and folders, then runs.
  ProgramResult RunWith(const std::map<std::string, mode_t>& bits) {
    HandOver(scene_);
    for (const auto& [name, mode] : bits) {
      const std::string path = name == "program" ? scene_.program_folder() : scene_.At(name);
      EXPECT_EQ(chmod(path.c_str(), mode), 0) << path;
      changed_[path] = mode;
    }
    const ProgramResult result = Run({BecomeNobody, {}});
    for (const auto& [path, mode] : changed_) chmod(path.c_str(), 0755);
    return result;
  }
  void ExpectMissing(const std::string& name) {
    EXPECT_FALSE(scene_.Exists("out/" + name)) << name;
  }
  void ExpectTold(const ProgramResult& result, const std::string& words) {
    EXPECT_NE(result.errors.find(words), std::string::npos) << result.errors;
  }

  const Files source_ = {
      {"a.txt", "ab1"}, {"b.bin", "ab2"}, {"sub/c.txt", "ab3"}, {"sub/d.bin", "ab4"}};
  std::map<std::string, mode_t> changed_;
};

TEST_F(Permissions, AFileThatMayNotBeReadIsNamedAndTheRestIsCopied) {
  const ProgramResult result = RunWith({{"src/a.txt", 0}});
  EXPECT_EQ(result.status, 3);
  ExpectNothingWrong(source_);
  ExpectMissing("a.txt");
  EXPECT_EQ(Target().size(), 3u);
  ExpectTold(result, "1 file or folder could not be copied");
  ExpectTold(result, "src/a.txt: Error 70: Permission denied");
}

TEST_F(Permissions, AFileThatIsCopiedUnchangedAndMayNotBeReadIsNamedToo) {
  const ProgramResult result = RunWith({{"src/b.bin", 0}});
  EXPECT_EQ(result.status, 3);
  ExpectNothingWrong(source_);
  ExpectMissing("b.bin");
  ExpectTold(result, "src/b.bin: Error 70: Permission denied");
}

TEST_F(Permissions, AFolderThatMayNotBeListedIsNamedAndTheRestIsCopied) {
  const ProgramResult result = RunWith({{"src/sub", 0}});
  EXPECT_EQ(result.status, 3);
  ExpectNothingWrong(source_);
  EXPECT_EQ(Target().size(), 2u);
  ExpectTold(result, "src/sub: Error 70: Permission denied");
}

TEST_F(Permissions, ASourceFolderThatMayNotBeListedIsNamed) {
  const ProgramResult result = RunWith({{"src", 0}});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(Target().size(), 0u);
  ExpectTold(result, "src: Error 70: Permission denied");
}

TEST_F(Permissions, ALinkIntoAFolderThatMayNotBeSearchedIsNamed) {
  scene_.Write("closed/e.txt", "ab5");
  scene_.Write("closed/in/f.txt", "ab6");
  std::filesystem::create_symlink("../closed/e.txt", scene_.At("src/link.txt"));
  std::filesystem::create_symlink("../closed/in", scene_.At("src/folder"));
  const ProgramResult result = RunWith({{"closed", 0}});
  EXPECT_EQ(result.status, 3);
  ExpectAllRight(source_);
  ExpectTold(result, "2 files or folders could not be copied");
  ExpectTold(result, "Error 70: Permission denied");
}

TEST_F(Permissions, ASourceFolderThatTakesNoWorkFileFailsItsFilesAndChangesNothing) {
  const ProgramResult result = RunWith({{"src", 0555}});
  EXPECT_EQ(result.status, 3);
  ExpectNothingWrong(source_);
  ExpectMissing("a.txt");
  EXPECT_EQ(Target().size(), 3u);
  ExpectTold(result,
             "src/a.txt: Error 70: Permission denied: the source folder must be writable: ");
}

TEST_F(Permissions, ATargetThatMayNotBeWrittenTakesNothing) {
  const ProgramResult result = RunWith({{"out", 0555}});
  EXPECT_EQ(result.status, 3);
  ExpectNothingWrong(source_);
  EXPECT_EQ(Target().size(), 0u);
  ExpectTold(result, "4 files or folders could not be copied");
}

TEST_F(Permissions, ATargetFolderBelowThatMayNotBeWrittenFailsItsFiles) {
  scene_.MakeFolder("out/sub");
  const ProgramResult result = RunWith({{"out/sub", 0555}});
  EXPECT_EQ(result.status, 3);
  ExpectNothingWrong(source_);
  EXPECT_EQ(Target().size(), 2u);
  ExpectTold(result, "2 files or folders could not be copied");
}

TEST_F(Permissions, AnOldCopyThatMayNotBeWrittenIsReplacedWhole) {
  scene_.Write("out/a.txt", "old");
  const ProgramResult result = RunWith({{"out/a.txt", 0444}});
  EXPECT_EQ(result.status, 0) << result.errors;
  ExpectAllRight(source_);
}

TEST_F(Permissions, AProgramFolderThatMayNotBeWrittenStopsNoRun) {
  const ProgramResult result = RunWith({{"program", 0555}});
  EXPECT_EQ(result.status, 0) << result.errors;
  ExpectAllRight(source_);
  EXPECT_EQ(scene_.ProgramFolderNames(), std::vector<std::string>{});
}

TEST_F(Permissions, AListThatMayNotBeReadStartsNoRun) {
  const ProgramResult result = RunWith({{"list", 0}});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(Target().size(), 0u);
  ExpectTold(result, "list: Error 70: Permission denied");
}

TEST_F(Permissions, ASettingsFileThatMayNotBeReadStartsNoRun) {
  const ProgramResult result = RunWith({{"job.dat", 0}});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(Target().size(), 0u);
  ExpectTold(result, "job.dat: Error 70: Permission denied");
}

TEST_F(Permissions, ANewFolderOfTheTargetIsNoMoreOpenThanItsSource) {
  scene_.MakeFolder("src/private");
  scene_.Write("src/private/e.txt", "ab");
  HandOver(scene_);
  ASSERT_EQ(chmod(scene_.At("src/private").c_str(), 0700), 0);
  EXPECT_EQ(Run({BecomeNobody, {}}).status, 0);
  struct stat status {};
  ASSERT_EQ(stat(scene_.At("out/private").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0700u);
  EXPECT_EQ(Target().at("private/e.txt"), "X");
}

TEST_F(Permissions, AFolderWithoutWriteRightHasItsUnchangedFilesCopiedIntoOneThatCanBeWritten) {
  scene_.MakeFolder("src/fixed");
  scene_.Write("src/fixed/e.bin", "ab");
  const ProgramResult result = RunWith({{"src/fixed", 0555}});
  EXPECT_EQ(result.status, 0) << result.errors;
  EXPECT_EQ(Target().at("fixed/e.bin"), "ab");
}

class ReadErrors : public SystemTest {};

TEST_F(ReadErrors, InAFileLeaveNoCopyOfItAndAreNamed) {
  // Reading this attribute fails with a device error if the device does not support it.
  const char* broken = "/sys/devices/system/cpu/cpu0/power/autosuspend_delay_ms";
  const int file = open(broken, O_RDONLY);
  char byte = 0;
  const bool fails = file >= 0 && read(file, &byte, 1) < 0 && errno == EIO;
  if (file >= 0) close(file);
  if (!fails) GTEST_SKIP() << "no file here that cannot be read";
  const Files source = {{"a.txt", "ab1"}, {"z.txt", "ab2"}};
  Put(source);
  std::filesystem::create_symlink(broken, scene_.At("src/broken.txt"));
  // The attribute's modification time is that of its first look-up; the run must start later.
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  const ProgramResult result = Run();
  ExpectAllRight(source);
  EXPECT_EQ(result.status, 3);
  EXPECT_NE(result.errors.find("src/broken.txt: Error 57: Device I/O error"), std::string::npos)
      << result.errors;
}

TEST_F(ReadErrors, InTheListStartNoRun) {
  Put({{"a.txt", "ab1"}});
  scene_.Write("job.dat",
               whole_run::UsualSettings(scene_.At("src"), scene_.At("out"), "/proc/self/mem"));
  const ProgramResult result = Run();
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(Target().size(), 0u);
  EXPECT_NE(result.errors.find("Error 57: Device I/O error"), std::string::npos) << result.errors;
}

TEST_F(ReadErrors, InTheSettingsFileStartNoRun) {
  std::filesystem::remove(scene_.At("job.dat"));
  std::filesystem::create_symlink("/proc/self/mem", scene_.At("job.dat"));
  const ProgramResult result = Run();
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(result.errors.find("Error 57: Device I/O error"), std::string::npos) << result.errors;
}

// If the program starts without standard streams, the files that it opens must not get the
// descriptors of these streams.
TEST(Output, ThatHasNowhereToGoReachesNoFileOfTheRun) {
  const std::string bytes = Text(60'000'000);
  for (const char* closed : {"<&-", ">&-", "2>&-", "<&- >&- 2>&-"}) {
    SCOPED_TRACE(closed);
    const Scene scene;
    scene.Write("src/a.txt", bytes);
    scene.MakeFolder("out");
    scene.Write("list", "ab|X||\r\n");
    scene.Write("job.dat",
                whole_run::UsualSettings(scene.At("src"), scene.At("out"), scene.At("list")));
    // The program is stopped in the middle of the file. It reports this while its work file is
    // still open.
    const std::string script = "\"$0\" -if job.dat " + std::string(closed) +
                               " & until [ -s src/tijdel.enc ] || ! kill -0 $!; do :; done\n"
                               "kill -TERM $!; wait $!";
    const ProgramResult result = whole_run::RunProgram(
        "/bin/bash", {"-c", script, scene.program_folder() + "/morvex-cli"}, scene.work(), 60);
    EXPECT_EQ(result.status, 1);
    const std::string partial = scene.Read("src/tijdel.enc");
    EXPECT_GT(partial.size(), 0u);
    EXPECT_TRUE(Replaced(bytes, "X").starts_with(partial)) << partial.substr(0, 200);
    EXPECT_TRUE(scene.Read("out/a.txt") == partial);
    EXPECT_TRUE(scene.Read("src/a.txt") == bytes);
  }
}

TEST(Output, ThatCannotBeWrittenIsNoSuccess) {
  const Scene scene;
  const std::string program = scene.program_folder() + "/morvex-cli";
  for (const char* option : {"--help", "--version"}) {
    const ProgramResult result = whole_run::RunProgram(
        "/bin/sh", {"-c", "exec \"$0\" " + std::string(option) + " >/dev/full", program},
        scene.work(), 60);
    EXPECT_EQ(result.status, 1) << option;
    EXPECT_EQ(result.errors, "The result could not be written to standard output.\n");
  }
}

}  // namespace
}  // namespace morvex::system_test
