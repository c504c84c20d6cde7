// Runs with too little room: on small disks that grow by one page from run to run, and with a limit
// on the size of a file. No file of the target is half made, the source is unchanged, and the run
// says why it ended.
#include <sys/mount.h>
#include <sys/resource.h>

#include <filesystem>

#include "tests/support/own_mounts.h"
#include "tests/system/system_run.h"

namespace morvex::system_test {
namespace {

constexpr std::size_t kPage = 4096;

class FullDisk : public SystemTest {
 protected:
  // Mounts a disk of `pages` pages on the folder `name`.
  void MountDisk(const std::string& name, std::size_t pages) {
    const std::string size = "size=" + std::to_string(pages * kPage) + ",nr_inodes=0";
    ASSERT_EQ(mount("tmpfs", scene_.At(name).c_str(), "tmpfs", 0, size.c_str()), 0);
  }
  void UnmountDisk(const std::string& name) {
    ASSERT_EQ(umount2(scene_.At(name).c_str(), MNT_DETACH), 0);
  }

  static void ExpectTold(const ProgramResult& result) {
    if (result.status == 0) return;
    const bool told = result.errors.find("The disk is full") != std::string::npos ||
                      result.errors.find("Error 61: Disk full") != std::string::npos;
    EXPECT_TRUE(told) << result.errors;
  }
};

const Files kSource = {{"a.txt", Text(3 * kPage)},
                       {"b.bin", Text(2 * kPage + 1)},
                       {"sub/c.txt", Text(100)},
                       {"sub/d.bin", Text(kPage)},
                       {"sub/deep/e.txt", Text(5 * kPage - 1)}};

#define RUN_OR_SKIP(...)                                  \
  if (!test::OwnMounts::Run(__VA_ARGS__))                 \
  GTEST_SKIP() << "this user may not make mounts of his " \
                  "own"

TEST_F(FullDisk, OfTheTargetAtEveryPage) {
  RUN_OR_SKIP([this] {
    Put(kSource);
    bool complete = false;
    for (std::size_t pages = 1; pages < 60 && !complete && !HasFailure(); ++pages) {
      SCOPED_TRACE(std::to_string(pages) + " pages");
      MountDisk("out", pages);
      const ProgramResult result = Run();
      ExpectNothingWrong(kSource);
      ExpectTold(result);
      complete = Target().size() == kSource.size();
      EXPECT_EQ(result.status == 0 && whole_run::WithoutWarnings(result.errors).empty(), complete)
          << result.errors;
      UnmountDisk("out");
    }
    EXPECT_TRUE(complete) << "there was never room enough";
  });
}

TEST_F(FullDisk, OfTheSourceAtEveryPage) {
  RUN_OR_SKIP([this] {
    bool complete = false;
    for (std::size_t pages = 15; pages < 60 && !complete && !HasFailure(); ++pages) {
      SCOPED_TRACE(std::to_string(pages) + " pages");
      MountDisk("src", pages);
      Put(kSource);
      const ProgramResult result = Run();
      ExpectNothingWrong(kSource);
      ExpectTold(result);
      complete = Target().size() == kSource.size();
      EXPECT_EQ(result.status == 0 && whole_run::WithoutWarnings(result.errors).empty(), complete)
          << result.errors;
      UnmountDisk("src");
      std::filesystem::remove_all(scene_.At("out"));
      scene_.MakeFolder("out");
    }
    EXPECT_TRUE(complete) << "there was never room enough";
  });
}

// The disk with the program's folder is full: neither log nor settings can be written.
TEST_F(FullDisk, OfTheProgramFolderStopsNoRun) {
  RUN_OR_SKIP([this] {
    Put(kSource);
    const std::string aside = scene_.root() + "/aside";
    std::filesystem::rename(scene_.program_folder(), aside);
    whole_run::MakeFolders(scene_.program_folder());
    const auto size = std::filesystem::file_size(aside + "/morvex-cli");
    const std::string room = "size=" + std::to_string((size / kPage + 1) * kPage);
    ASSERT_EQ(mount("tmpfs", scene_.program_folder().c_str(), "tmpfs", 0, room.c_str()), 0);
    std::filesystem::copy_file(aside + "/morvex-cli", scene_.program_folder() + "/morvex-cli");
    EXPECT_EQ(Run().status, 0);
    ExpectAllRight(kSource);
    EXPECT_EQ(scene_.RunLog(), "");
  });
}

// Every run saves its settings. Without room for them, the old settings stay whole, and the log
// contains only whole records.
TEST_F(FullDisk, OfTheProgramFolderKeepsTheOldSettingsAndWholeRecords) {
  RUN_OR_SKIP([this] {
    Put(kSource);
    const std::string old_settings = "an older run's\r\n";
    const std::string program = scene_.program_folder() + "/morvex-cli";
    const std::string aside = scene_.root() + "/aside";
    std::filesystem::rename(program, aside);
    const auto pages = std::filesystem::file_size(aside) / kPage + 1;
    // The disk has room for the program, the old settings and `more` further pages.
    for (std::size_t more : {0u, 1u, 2u}) {
      SCOPED_TRACE(std::to_string(more) + " pages more");
      const std::string room = "size=" + std::to_string((pages + 1 + more) * kPage);
      ASSERT_EQ(mount("tmpfs", scene_.program_folder().c_str(), "tmpfs", 0, room.c_str()), 0);
      std::filesystem::copy_file(aside, program);
      whole_run::WriteWholeFile(scene_.program_folder() + "/Init.dat", old_settings);
      EXPECT_EQ(Run().status, 0);
      ExpectAllRight(kSource);
      EXPECT_EQ(scene_.InitDat(), more == 0 ? old_settings : scene_.Read("job.dat"));
      EXPECT_EQ(Log().empty(), more == 0);
      for (const std::string& line : Log()) EXPECT_FALSE(line.starts_with("malformed")) << line;
      EXPECT_EQ(umount2(scene_.program_folder().c_str(), MNT_DETACH), 0);
    }
  });
}

TEST_F(FullDisk, OfTheReportKeepsTheOldOneAndIsTold) {
  RUN_OR_SKIP([this] {
    Put(kSource);
    scene_.MakeFolder("reports");
    MountDisk("reports", 1);
    const std::string older =
        R"({"program": "Morvex", "version": "1", "started": "", "end": "", "settings": {},)"
        R"( "totals": {}, "rows": [], "files": []})";
    whole_run::WriteWholeFile(scene_.At("reports/run.json"), older);
    const ProgramResult result =
        scene_.Run({"run", scene_.At("src"), scene_.At("out"), "--list", scene_.At("list"), "--ext",
                    ".txt", "--report", scene_.At("reports/run.json")});
    EXPECT_EQ(result.status, 1);
    EXPECT_NE(result.errors.find("run.json: error: Error 61: Disk full"), std::string::npos)
        << result.errors;
    ExpectAllRight(kSource);
    EXPECT_EQ(FilesBelow(scene_.At("reports")), (Files{{"run.json", older}}));
    UnmountDisk("reports");
  });
}

class FileSize : public SystemTest, public ::testing::WithParamInterface<std::size_t> {};

TEST_P(FileSize, LimitedToSoManyBytesCutsNoCopyShort) {
  const Files source = {{"long.txt", Text(300'000)}, {"short.txt", "ab"}, {"z.bin", Text(300'000)}};
  Put(source);
  const rlim_t bytes = GetParam();
  const ProgramResult result = Run({[bytes] {
                                      const rlimit limit{bytes, bytes};
                                      setrlimit(RLIMIT_FSIZE, &limit);
                                    },
                                    {}});
  ExpectNothingWrong(source);
  const bool fits = bytes >= 300'000;
  EXPECT_EQ(Target().size() == source.size(), fits);
  // The test sends the program's output to files, whose size is limited too.
  if (bytes >= kPage) {
    EXPECT_EQ(whole_run::WithoutWarnings(result.errors).empty(), fits) << result.errors;
  }
  EXPECT_EQ(result.status == 0, fits) << result.errors;
}

INSTANTIATE_TEST_SUITE_P(Bytes, FileSize,
                         ::testing::Values(0, 1, 2, 4095, 4096, 4097, 131'071, 131'072, 131'073,
                                           163'840, 262'144, 299'999, 300'000));

}  // namespace
}  // namespace morvex::system_test
