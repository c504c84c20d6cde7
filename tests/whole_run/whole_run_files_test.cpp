// Whole runs over links, pipes, files with special permission bits and times, and the program's own
// folder.

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>

#include "program_run.h"

namespace morvex::whole_run {
namespace {

using std::string;

constexpr std::int64_t kSecond = 1'000'000'000;

std::int64_t NowNs() {
  return std::chrono::duration_cast<std::chrono::nanoseconds>(
             std::chrono::system_clock::now().time_since_epoch())
      .count();
}

// The exit status of a run that reached its end but left files without a copy.
constexpr int kNotAllCopied = 3;

class Files : public testing::Test {
 protected:
  Files() {
    scene_.Write("list", "ab|X\r\n|||\r\n");
    scene_.Write("src/a.txt", "ab1");
    scene_.MakeFolder("src/sub");
    scene_.MakeFolder("out");
    scene_.MakeFolder("elsewhere");
    scene_.Write("job.dat", UsualSettings(scene_.At("src"), scene_.At("out"), scene_.At("list")));
  }

  void Link(const string& text, const string& name) const {
    std::filesystem::create_symlink(text, scene_.At(name));
  }
  ProgramResult Run() const { return scene_.Run({"-if", scene_.At("job.dat")}); }
  // Runs the program, and checks that the file or folder `name` in the work folder has not changed.
  void RunAndExpectUnchanged(const string& name, int status = 0) const {
    const Disk before = Disk::Snapshot(scene_.At(name));
    EXPECT_EQ(Run().status, status);
    EXPECT_EQ(Differences(before, Disk::Snapshot(scene_.At(name))), "");
  }
  Node Found(const string& name) const {
    const Disk disk = Disk::Snapshot(scene_.At(name));
    const Node* node = disk.Find(scene_.At(name));
    return node == nullptr ? Node{NodeKind::kFile, "(missing)", {}, {}, {}} : *node;
  }

  Scene scene_;
};

TEST_F(Files, LinkToAFileIsReadAsThatFile) {
  scene_.Write("elsewhere/real.txt", "ab2");
  scene_.Write("elsewhere/real.bin", "ab3");
  SetPermissions(scene_.At("elsewhere/real.txt"), 0640);
  SetModified(scene_.At("elsewhere/real.bin"), 1'111'111'111 * kSecond + 5);
  Link("../elsewhere/real.txt", "src/link.txt");
  Link("../elsewhere/real.bin", "src/link.bin");
  RunAndExpectUnchanged("elsewhere");
  EXPECT_EQ(Found("out/link.txt").kind, NodeKind::kFile);
  EXPECT_EQ(Found("out/link.txt").bytes, "X2");
  EXPECT_EQ(Found("out/link.txt").permissions, 0640U);
  EXPECT_EQ(Found("out/link.bin").kind, NodeKind::kFile);
  EXPECT_EQ(Found("out/link.bin").bytes, "ab3");
  EXPECT_EQ(Found("out/link.bin").modified_ns, 1'111'111'111 * kSecond + 5);
}

TEST_F(Files, LinkToAFolderIsFollowed) {
  scene_.Write("elsewhere/in/c.txt", "ab4");
  Link("../elsewhere/in", "src/linked");
  RunAndExpectUnchanged("elsewhere");
  EXPECT_EQ(Found("out/linked").kind, NodeKind::kFolder);
  EXPECT_EQ(Found("out/linked/c.txt").bytes, "X4");
}

TEST_F(Files, LinkThatLeadsBackUpIsNotFollowed) {
  Link("..", "src/sub/up");
  Link(".", "src/sub/self");
  RunAndExpectUnchanged("src");
  EXPECT_EQ(Found("out/a.txt").bytes, "X1");
  EXPECT_FALSE(scene_.Exists("out/sub/up/sub"));
  EXPECT_FALSE(scene_.Exists("out/sub/up/a.txt"));
  EXPECT_FALSE(scene_.Exists("out/sub/self/self"));
}

TEST_F(Files, BrokenLinksAndPipesAreNoFilesAndMissed) {
  Link("nowhere.txt", "src/broken.txt");
  ASSERT_EQ(mkfifo(scene_.At("src/pipe.txt").c_str(), 0600), 0);
  ASSERT_EQ(mkfifo(scene_.At("src/sub/pipe.bin").c_str(), 0600), 0);
  RunAndExpectUnchanged("src", 3);
  for (const char* absent : {"out/broken.txt", "out/pipe.txt", "out/sub/pipe.bin"}) {
    EXPECT_FALSE(scene_.Exists(absent)) << absent;
  }
  EXPECT_NE(scene_.RunLog().find("gemorvexeerd: 1 bestanden"), string::npos);
  EXPECT_NE(scene_.RunLog().find("Overgeslagen: 0 bestanden"), string::npos);
}

TEST_F(Files, LinkInTheTargetIsNotWrittenThrough) {
  scene_.Write("src/b.bin", "ab5");
  scene_.Write("elsewhere/victim.txt", "mine");
  scene_.Write("elsewhere/victim.bin", "mine");
  Link("../elsewhere/victim.txt", "out/a.txt");
  Link("../elsewhere/victim.bin", "out/b.bin");
  RunAndExpectUnchanged("elsewhere");
  EXPECT_EQ(Found("out/a.txt").kind, NodeKind::kFile);
  EXPECT_EQ(Found("out/a.txt").bytes, "X1");
  EXPECT_EQ(Found("out/b.bin").kind, NodeKind::kFile);
  EXPECT_EQ(Found("out/b.bin").bytes, "ab5");
}

TEST_F(Files, FolderLinkInTheTargetIsNotWrittenThrough) {
  scene_.Write("src/sub/c.txt", "ab6");
  scene_.Write("src/sub/d.bin", "ab7");
  Link("../elsewhere", "out/sub");
  RunAndExpectUnchanged("elsewhere", kNotAllCopied);
}

TEST_F(Files, LeftOverThatIsALinkIsRemovedAndNotWrittenThrough) {
  scene_.Write("elsewhere/victim", "mine");
  Link("../elsewhere/victim", "src/tijdel.enc");
  RunAndExpectUnchanged("elsewhere");
  EXPECT_FALSE(scene_.Exists("src/tijdel.enc"));
  EXPECT_EQ(Found("out/a.txt").bytes, "X1");
}

TEST_F(Files, HardLinkOfTheSourceInTheTargetIsLeftAlone) {
  scene_.Write("src/b.bin", "ab8");
  std::filesystem::create_hard_link(scene_.At("src/a.txt"), scene_.At("out/a.txt"));
  std::filesystem::create_hard_link(scene_.At("src/b.bin"), scene_.At("out/b.bin"));
  RunAndExpectUnchanged("src", kNotAllCopied);
  EXPECT_EQ(Found("out/a.txt").bytes, "ab1");
  const std::vector<string> messages = LogMessages(scene_.RunLog());
  ASSERT_GT(messages.size(), 3U);
  EXPECT_EQ(messages[2], scene_.At("src/a.txt"));
  EXPECT_EQ(messages[3], "Error 75: Path/File access error");
}

TEST_F(Files, TargetThatIsALinkToTheSourceChangesNothing) {
  std::filesystem::remove(scene_.At("out"));
  Link("src", "out");
  scene_.Write("src/sub/c.txt", "ab9");
  RunAndExpectUnchanged("src", kNotAllCopied);
}

TEST_F(Files, SingleFileOntoALinkToItselfFails) {
  Link("src/a.txt", "alias");
  scene_.Write("job.dat",
               UsualSettings(scene_.At("src/a.txt"), scene_.At("alias"), scene_.At("list")));
  const Disk before = Disk::Snapshot(scene_.work());
  EXPECT_EQ(Run().status, 1);
  EXPECT_EQ(Differences(before, Disk::Snapshot(scene_.work())), "");
}

TEST_F(Files, CopiesCarryPermissionsWhateverTheMask) {
  scene_.Write("src/b.bin", "b");
  SetPermissions(scene_.At("src/a.txt"), 0764);
  SetPermissions(scene_.At("src/b.bin"), 0466);
  const mode_t old_mask = umask(077);
  const string problems = RunAndCompare(scene_, "job.dat");
  umask(old_mask);
  EXPECT_EQ(problems, "");
  EXPECT_EQ(Found("out/a.txt").permissions, 0764U);
  EXPECT_EQ(Found("out/b.bin").permissions, 0466U);
}

TEST_F(Files, OnlyFilesChangedAfterArmingAreLate) {
  scene_.Write("src/just_now.txt", "ab10");
  scene_.Write("src/tomorrow.txt", "ab11");
  scene_.Write("src/tomorrow.bin", "ab12");
  SetModified(scene_.At("src/just_now.txt"), NowNs() - kSecond);
  SetModified(scene_.At("src/tomorrow.txt"), NowNs() + 86'400 * kSecond);
  SetModified(scene_.At("src/tomorrow.bin"), NowNs() + 86'400 * kSecond);
  EXPECT_EQ(RunAndCompare(scene_, "job.dat"), "");
  EXPECT_EQ(Found("out/just_now.txt").bytes, "X10");
  EXPECT_FALSE(scene_.Exists("out/tomorrow.txt"));
  EXPECT_EQ(Found("out/tomorrow.bin").bytes, "ab12");
}

TEST_F(Files, NamesAreBytes) {
  scene_.Write("src/new\nline.txt", "ab");
  scene_.Write("src/\xFF\xFE.txt", "ab");
  scene_.Write("src/" + string(251, 'n') + ".txt", "ab");
  scene_.Write("src/*?\"<>|.txt", "ab");
  EXPECT_EQ(RunAndCompare(scene_, "job.dat"), "");
  EXPECT_EQ(Found("out/new\nline.txt").bytes, "X");
}

TEST_F(Files, OwnNameFollowsTheExecutable) {
  Scene scene("renamed");
  for (const char* name : {"src/renamed.exe", "src/renamed", "src/morvex-cli.exe"}) {
    scene.Write(name, "ab");
  }
  scene.Write("list", "ab|X\r\n");
  scene.MakeFolder("out");
  scene.Write("job.dat", UsualSettings(scene.At("src"), scene.At("out"), scene.At("list")) +
                             "1.exe\r\n1.\r\n");
  EXPECT_EQ(RunAndCompare(scene, "job.dat"), "");
  EXPECT_FALSE(scene.Exists("out/renamed.exe"));
  EXPECT_EQ(scene.Read("out/morvex-cli.exe"), "X");
  EXPECT_EQ(scene.Read("out/renamed"), "X");
}

TEST_F(Files, UnreadableSourcesAreTheOnlyOnesMissing) {
  if (geteuid() == 0) {
    GTEST_SKIP() << "the superuser can read everything";
  }
  scene_.Write("src/closed.txt", "ab");
  scene_.Write("src/closed.bin", "ab");
  scene_.Write("src/sub/c.txt", "ab13");
  scene_.Write("src/closed/d.txt", "ab");
  for (const char* name : {"src/closed.txt", "src/closed.bin", "src/closed"}) {
    SetPermissions(scene_.At(name), 0000);
  }
  EXPECT_EQ(Run().status, 0);
  SetPermissions(scene_.At("src/closed"), 0755);
  EXPECT_EQ(Found("out/a.txt").bytes, "X1");
  EXPECT_EQ(Found("out/sub/c.txt").bytes, "X13");
  EXPECT_FALSE(scene_.Exists("out/closed.bin"));
  EXPECT_FALSE(scene_.Exists("out/closed/d.txt"));
  EXPECT_FALSE(scene_.Exists("src/tijdel.enc"));
}

TEST_F(Files, UnreadableListReadsNoRow) {
  if (geteuid() == 0) {
    GTEST_SKIP() << "the superuser can read everything";
  }
  SetPermissions(scene_.At("list"), 0000);
  EXPECT_EQ(RunAndCompare(scene_, "job.dat"), "");
  EXPECT_EQ(Found("out/a.txt").bytes, "ab1");
}

TEST_F(Files, ReadOnlyProgramFolderDoesNotStopTheRun) {
  if (geteuid() == 0) {
    GTEST_SKIP() << "the superuser can write everywhere";
  }
  SetPermissions(scene_.program_folder(), 0555);
  EXPECT_EQ(Run().status, 0);
  SetPermissions(scene_.program_folder(), 0755);
  EXPECT_EQ(Found("out/a.txt").bytes, "X1");
  EXPECT_TRUE(scene_.ProgramFolderNames().empty());
}

}  // namespace
}  // namespace morvex::whole_run
