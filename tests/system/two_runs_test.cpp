// Two runs at the same time over one source: neither takes the work file of the other run for its
// own. Other tests run over files that other programs change, shorten or delete meanwhile.
#include <signal.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "tests/system/system_run.h"

namespace morvex::system_test {
namespace {

class TwoRuns : public SystemTest {
 protected:
  // Waits until the work file has bytes: a run may not yet have claimed a work file that is still
  // empty.
  void AwaitWorkFile() const {
    const std::filesystem::path path = scene_.At("src/tijdel.enc");
    Await("bytes in " + path.string(), [&] {
      std::error_code none;
      return std::filesystem::exists(path, none) && std::filesystem::file_size(path, none) > 0;
    });
  }
};

TEST_F(TwoRuns, OverOneSourceBothEndWithTheirOwnTree) {
  Files source;
  for (int i = 0; i < 400; ++i) {
    source["f" + std::to_string(i) + ".txt"] =
        Text(i % 40 == 7 ? 400'000 : static_cast<std::size_t>(i % 50)) + "ab";
  }
  Put(source);
  scene_.MakeFolder("out2");
  scene_.Write("list2", "ab|the other run's||\r\n");
  scene_.Write("job2.dat",
               whole_run::UsualSettings(scene_.At("src"), scene_.At("out2"), scene_.At("list2")));
  ProgramResult other;
  const ProgramResult one = Run({{}, [&](pid_t /*process*/) { other = RunJob("job2.dat"); }});
  EXPECT_EQ(one.status, 0) << one.errors;
  EXPECT_EQ(other.status, 0) << other.errors;
  ExpectAllRight(source);
  EXPECT_TRUE(FilesBelow(scene_.At("out2")) == Copied(source, "the other run's"));
}

TEST_F(TwoRuns, IntoOneTargetBothEndWell) {
  Files source;
  for (int i = 0; i < 400; ++i) {
    source["f" + std::to_string(i) + (i % 3 == 0 ? ".bin" : ".txt")] = Text(300) + "ab";
  }
  Put(source);
  scene_.Write("job2.dat", scene_.Read("job.dat"));
  ProgramResult other;
  const ProgramResult one = Run({{}, [&](pid_t /*process*/) { other = RunJob("job2.dat"); }});
  EXPECT_EQ(one.status, 0) << one.errors;
  EXPECT_EQ(other.status, 0) << other.errors;
  ExpectAllRight(source);
}

TEST_F(TwoRuns, AStoppedOneIsNotWaitedForForEver) {
  Put({{"a.txt", Text(50'000'000)}, {"sub/b.txt", "ab"}});
  scene_.MakeFolder("out2");
  scene_.Write("job2.dat",
               whole_run::UsualSettings(scene_.At("src"), scene_.At("out2"), scene_.At("list")));
  ProgramResult other;
  const ProgramResult one = Run({{}, [&](pid_t process) {
                                   AwaitWorkFile();
                                   kill(process, SIGSTOP);
                                   other = RunJob("job2.dat");
                                   kill(process, SIGCONT);
                                 }});
  EXPECT_EQ(one.status, 0) << one.errors;
  EXPECT_EQ(Target().size(), 2u);
  EXPECT_EQ(other.status, 3);
  EXPECT_NE(
      other.errors.find("src/a.txt: Error 55: File already open: the temporary file beside it: "),
      std::string::npos)
      << other.errors;
  EXPECT_FALSE(scene_.Exists("out2/a.txt"));
  EXPECT_EQ(scene_.Read("out2/sub/b.txt"), "X");
}

class ChangingFiles : public SystemTest {
 protected:
  static constexpr std::size_t kSize = 30'000'000;

  // Runs the program, pauses it once its work file exists, calls `change`, and lets the program go
  // on.
  ProgramResult RunAndMeanwhile(const std::function<void()>& change) {
    return Run({{}, [&](pid_t process) {
                  Await("a temporary file", [&] { return scene_.Exists("src/tijdel.enc"); });
                  kill(process, SIGSTOP);
                  change();
                  kill(process, SIGCONT);
                }});
  }
  std::string Long() const { return scene_.At("src/long.txt"); }
  void ExpectPassedOver(const ProgramResult& result) {
    EXPECT_FALSE(scene_.Exists("out/long.txt"));
    EXPECT_FALSE(scene_.Exists("src/tijdel.enc"));
    EXPECT_EQ(result.status, 3);
    EXPECT_NE(result.errors.find("1 file was passed over and not copied"), std::string::npos)
        << result.errors;
  }
};

TEST_F(ChangingFiles, OneThatGrowsGetsNoCopy) {
  Put({{"long.txt", Text(kSize)}});
  ExpectPassedOver(RunAndMeanwhile([&] { std::ofstream(Long(), std::ios::app) << "ab"; }));
}

TEST_F(ChangingFiles, OneThatIsCutGetsNoCopy) {
  Put({{"long.txt", Text(kSize)}});
  ExpectPassedOver(RunAndMeanwhile([&] { EXPECT_EQ(truncate(Long().c_str(), 1000), 0); }));
}

TEST_F(ChangingFiles, OneThatIsWrittenOverGetsNoCopy) {
  Put({{"long.txt", Text(kSize)}});
  ExpectPassedOver(
      RunAndMeanwhile([&] { std::ofstream(Long(), std::ios::in | std::ios::out) << "ABABAB"; }));
}

TEST_F(ChangingFiles, OneThatIsTakenAwayIsCopiedAsItWas) {
  const Files source = {{"long.txt", Text(kSize)}};
  Put(source);
  const ProgramResult result = RunAndMeanwhile([&] { std::filesystem::remove(Long()); });
  EXPECT_EQ(result.status, 0) << result.errors;
  EXPECT_TRUE(Target() == Copied(source));
}

TEST_F(ChangingFiles, OneThatGivesWayToANewOneIsCopiedAsItWas) {
  const Files source = {{"long.txt", Text(kSize)}};
  Put(source);
  scene_.Write("new", "ab");
  const ProgramResult result =
      RunAndMeanwhile([&] { std::filesystem::rename(scene_.At("new"), Long()); });
  EXPECT_EQ(result.status, 0) << result.errors;
  EXPECT_TRUE(Target() == Copied(source));
}

}  // namespace
}  // namespace morvex::system_test
