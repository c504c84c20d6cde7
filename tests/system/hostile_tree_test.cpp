// Unusual trees: links of every kind, special files, source and target inside each other, very deep
// folders, long and strange names, very many files, very large files.
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "tests/system/system_run.h"

namespace morvex::system_test {
namespace {

namespace fs = std::filesystem;

class HostileTree : public SystemTest {
 protected:
  void Link(const std::string& text, const std::string& name) const {
    fs::create_symlink(text, scene_.At(name));
  }
  void Job(const std::string& source, const std::string& target) const {
    scene_.Write("job.dat",
                 whole_run::UsualSettings(scene_.At(source), scene_.At(target), scene_.At("list")));
  }
  static void ExpectTold(const ProgramResult& result, const std::string& words) {
    EXPECT_NE(result.errors.find(words), std::string::npos) << result.errors;
  }
  static void ExpectSilent(const ProgramResult& result) { ExpectOnly(result, 0, ""); }
  static void ExpectOnly(const ProgramResult& result, int status, const std::string& errors) {
    EXPECT_EQ(result.status, status) << result.errors;
    EXPECT_EQ(whole_run::WithoutWarnings(result.errors), errors);
  }
};

TEST_F(HostileTree, LinksInARingAreNotFollowedForEver) {
  Put({{"a/1.txt", "ab1"}, {"b/2.txt", "ab2"}});
  Link("../b", "src/a/to_b");
  Link("../a", "src/b/to_a");
  Link("self", "src/self");
  Link("..", "src/a/up");
  ExpectOnly(Run(), 3,
             "1 file was passed over and not copied: a link that leads nowhere.\n"
             "4 folders were left out: a link to a folder that it lies in.\n");
  EXPECT_EQ(
      Target(),
      (Files{
          {"a/1.txt", "X1"}, {"a/to_b/2.txt", "X2"}, {"b/2.txt", "X2"}, {"b/to_a/1.txt", "X1"}}));
}

TEST_F(HostileTree, FoldersThatAllLinkToEachOtherEndAndAreTold) {
  constexpr int kFolders = 8;
  for (int i = 0; i < kFolders; ++i) {
    scene_.MakeFolder("src/" + std::to_string(i));
    for (int j = 0; j < kFolders; ++j) {
      const std::string other = std::to_string(j);
      if (i != j) Link("../" + other, "src/" + std::to_string(i) + "/" + other);
    }
  }
  const ProgramResult result = Run();
  EXPECT_EQ(result.status, 3);
  ExpectTold(result, "left out: a folder that links had led to a thousand times");
  const auto made = std::distance(fs::recursive_directory_iterator(scene_.At("out")), {});
  EXPECT_LT(made, 2 * kFolders * 1000);
}

TEST_F(HostileTree, LinksToOutsideAreReadAndWhatTheyLeadToStays) {
  scene_.Write("elsewhere/real.txt", "ab1");
  scene_.Write("elsewhere/in/deep.txt", "ab2");
  Link("../elsewhere/real.txt", "src/link.txt");
  Link("../elsewhere/in", "src/in");
  Link("nowhere", "src/broken.txt");
  ExpectOnly(Run(), 3, "1 file was passed over and not copied: a link that leads nowhere.\n");
  EXPECT_EQ(Target(), (Files{{"link.txt", "X1"}, {"in/deep.txt", "X2"}}));
  EXPECT_EQ(FilesBelow(scene_.At("elsewhere")),
            (Files{{"real.txt", "ab1"}, {"in/deep.txt", "ab2"}}));
}

TEST_F(HostileTree, LinksInTheTargetThatPointAtTheSourceAreNotWrittenThrough) {
  const Files source = {{"a.txt", "ab1"}, {"b.bin", "ab2"}, {"sub/c.txt", "ab3"}};
  Put(source);
  Link("../src/a.txt", "out/a.txt");
  Link("../src/b.bin", "out/b.bin");
  Link("../src/sub", "out/sub");
  Link("../src/a.txt", "out/d.bin");
  Put({{"d.bin", "ab4"}});
  const ProgramResult result = Run();
  EXPECT_EQ(Source(),
            (Files{{"a.txt", "ab1"}, {"b.bin", "ab2"}, {"d.bin", "ab4"}, {"sub/c.txt", "ab3"}}));
  EXPECT_EQ(Target(), (Files{{"d.bin", "ab4"}})) << "a link that leads elsewhere gives way";
  EXPECT_EQ(result.status, 3);
  ExpectTold(result, "3 files or folders could not be copied");
  ExpectTold(result, "Error 75: Path/File access error");
}

TEST_F(HostileTree, HardLinksBetweenSourceAndTargetLeaveTheSourceAlone) {
  const Files source = {{"a.txt", "ab1"}, {"b.bin", "ab2"}, {"same.txt", "ab1"}};
  Put(source);
  fs::create_hard_link(scene_.At("src/a.txt"), scene_.At("out/a.txt"));
  fs::create_hard_link(scene_.At("src/b.bin"), scene_.At("out/b.bin"));
  fs::create_hard_link(scene_.At("src/a.txt"), scene_.At("out/same.txt"));
  const ProgramResult result = Run();
  EXPECT_TRUE(Source() == source);
  EXPECT_EQ(Target(), (Files{{"a.txt", "ab1"}, {"b.bin", "ab2"}, {"same.txt", "X1"}}));
  EXPECT_EQ(result.status, 3);
  ExpectTold(result, "2 files or folders could not be copied");
  ExpectTold(result, "Error 75: Path/File access error");
}

TEST_F(HostileTree, ASourceThatIsTheTargetChangesNothing) {
  const Files source = {{"a.txt", "ab1"}, {"b.bin", "ab2"}, {"sub/c.txt", "ab3"}};
  Put(source);
  Job("src", "src");
  const ProgramResult result = Run();
  EXPECT_TRUE(Source() == source);
  EXPECT_EQ(result.status, 3);
  ExpectTold(result, "3 files or folders could not be copied");
  ExpectTold(result, "Error 75: Path/File access error");
}

TEST_F(HostileTree, ATargetThatIsALinkToTheSourceChangesNothing) {
  const Files source = {{"a.txt", "ab1"}, {"b.bin", "ab2"}, {"sub/c.txt", "ab3"}};
  Put(source);
  Link("src", "alias");
  Job("src", "alias");
  const ProgramResult result = Run();
  EXPECT_TRUE(Source() == source);
  EXPECT_EQ(result.status, 3);
  ExpectTold(result, "Error 75: Path/File access error");
}

TEST_F(HostileTree, ATargetInsideTheSourceIsNotWalkedIntoAndTold) {
  const Files source = {{"a.txt", "ab1"}, {"sub/c.txt", "ab3"}};
  Put(source);
  scene_.MakeFolder("src/sub/out");
  Job("src", "src/sub/out");
  for (int run = 0; run < 2; ++run) {
    ExpectOnly(Run(), 0, "1 folder was left out: the target folder.\n");
  }
  EXPECT_EQ(FilesBelow(scene_.At("src/sub/out")), (Files{{"a.txt", "X1"}, {"sub/c.txt", "X3"}}));
}

TEST_F(HostileTree, ASourceInsideTheTargetStaysAsItIs) {
  scene_.Write("all/src/a.txt", "ab1");
  scene_.Write("all/src/src/b.txt", "ab2");
  Job("all/src", "all");
  Run();
  EXPECT_EQ(scene_.Read("all/src/a.txt"), "ab1");
  EXPECT_EQ(scene_.Read("all/src/src/b.txt"), "ab2");
  EXPECT_EQ(FilesBelow(scene_.At("all")),
            (Files{{"a.txt", "X1"}, {"src/a.txt", "ab1"}, {"src/src/b.txt", "ab2"}}));
}

TEST_F(HostileTree, PipesAndSocketsAreNoFilesAndCounted) {
  Put({{"a.txt", "ab1"}});
  ASSERT_EQ(mkfifo(scene_.At("src/pipe.txt").c_str(), 0600), 0);
  ASSERT_EQ(mkfifo(scene_.At("src/pipe.bin").c_str(), 0600), 0);
  const int listening = socket(AF_UNIX, SOCK_STREAM, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const std::string path = scene_.At("src/socket.txt");
  ASSERT_LT(path.size(), sizeof(address.sun_path));
  path.copy(address.sun_path, path.size());
  ASSERT_EQ(bind(listening, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  ExpectOnly(Run(), 3, "3 files were passed over and not copied: a pipe, socket or device.\n");
  close(listening);
  EXPECT_EQ(Target(), (Files{{"a.txt", "X1"}}));
}

TEST_F(HostileTree, DevicesAreNoFilesAndCounted) {
  Put({{"a.txt", "ab1"}});
  if (mknod(scene_.At("src/zero.txt").c_str(), S_IFCHR | 0666, makedev(1, 5)) != 0) {
    GTEST_SKIP() << "this user may not make devices";
  }
  Link("/dev/zero", "src/link.txt");
  ExpectOnly(Run(), 3, "2 files were passed over and not copied: a pipe, socket or device.\n");
  EXPECT_EQ(Target(), (Files{{"a.txt", "X1"}}));
}

TEST_F(HostileTree, APipeWhereACopyBelongsStaysAndIsNamed) {
  Put({{"a.txt", "ab1"}, {"b.txt", "ab2"}});
  ASSERT_EQ(mkfifo(scene_.At("out/a.txt").c_str(), 0600), 0);
  const ProgramResult result = Run();
  EXPECT_EQ(Target(), (Files{{"b.txt", "X2"}}));
  EXPECT_TRUE(fs::is_fifo(scene_.At("out/a.txt")));
  EXPECT_EQ(result.status, 3);
  ExpectTold(result, "src/a.txt: Error 75: Path/File access error: no copy could be made at: ");
}

TEST_F(HostileTree, AFileOfTheWorkFileNameIsAStaleWorkFileAndNeverCopied) {
  Put({{"tijdel.enc", "somebody's ab"}, {"a.txt", "ab1"}, {"sub/tijdel.enc", "ab"}});
  ExpectOnly(
      Run(), 0,
      "2 files were passed over and not copied: the temporary file of an earlier run, by its "
      "name.\n");
  EXPECT_EQ(Target(), (Files{{"a.txt", "X1"}}));
  EXPECT_FALSE(scene_.Exists("src/tijdel.enc"));
  EXPECT_EQ(scene_.Read("src/sub/tijdel.enc"), "ab") << "no file needed the name there";
}

TEST_F(HostileTree, AFolderOfTheWorkFileNameIsWalkedAndFailsTheFilesBesideIt) {
  const Files source = {{"tijdel.enc/in.txt", "ab1"}, {"a.txt", "ab2"}, {"b.bin", "ab3"}};
  Put(source);
  const ProgramResult result = Run();
  EXPECT_TRUE(Source() == source);
  EXPECT_EQ(Target(), (Files{{"tijdel.enc/in.txt", "X1"}, {"b.bin", "ab3"}}));
  EXPECT_EQ(result.status, 3);
  ExpectTold(result, "src/a.txt: Error 75: Path/File access error: the temporary file beside it: ");
}

TEST_F(HostileTree, ALinkOfTheWorkFileNameIsNotWrittenThrough) {
  Put({{"a.txt", "ab1"}});
  scene_.Write("elsewhere", "kept");
  Link("../elsewhere", "src/tijdel.enc");
  ExpectOnly(Run(), 0,
             "1 file was passed over and not copied: the temporary file of an earlier run, by its "
             "name.\n");
  EXPECT_EQ(scene_.Read("elsewhere"), "kept");
  EXPECT_EQ(Target(), (Files{{"a.txt", "X1"}}));
}

// Names with bytes that careless programs mishandle.
const std::string kStrange[] = {"line\nbreak.txt",
                                "carriage\rreturn.txt",
                                "quote\"and'.txt",
                                "esc\x1B[31mred.txt",
                                "bad\xFF\xFEutf8.txt",
                                "c1\x9B.txt",
                                " blanks .txt",
                                "-if x.txt",
                                "back\\slash.txt",
                                "*?$(x)`y`;|&.txt",
                                "\x01\x02\x7F.txt",
                                std::string(251, 'n') + ".txt",
                                std::string(251, '\xE9') + ".txt"};

TEST_F(HostileTree, StrangeNamesOfFilesAndFoldersAreKeptByteForByte) {
  Files source;
  for (const std::string& name : kStrange) {
    source[name] = "ab";
    std::string folder = name;
    folder.front() = 'f';
    source[folder + "/" + name] = "ab";
  }
  Put(source);
  ExpectSilent(Run());
  ExpectAllRight(source);
}

TEST_F(HostileTree, StrangeNamesReachTheLogAsTheyAre) {
  for (const std::string& name : kStrange) Put({{name, "ab"}});
  ExpectSilent(Run());
  for (const std::string& name : kStrange) {
    const std::string line = scene_.At("src/" + name) + "  ----  Hits: 1\"\r\n";
    EXPECT_NE(scene_.RunLog().find(line), std::string::npos) << whole_run::Escaped(name);
  }
}

TEST_F(HostileTree, ControlCharactersOfANameReachTheTerminalEscaped) {
  for (const std::string name : {"line\nbreak.txt", "esc\x1B[31m.txt",
                                 "c1\x9B"
                                 "31m.txt"}) {
    Put({{name, "ab"}});
    fs::create_directories(scene_.At("out/" + name));
    const ProgramResult result = Run();
    EXPECT_TRUE(std::none_of(result.errors.begin(), result.errors.end(), [](char byte) {
      const auto code = static_cast<unsigned char>(byte);
      return (code < 0x20 && byte != '\n') || code == 0x9B;
    })) << whole_run::Escaped(result.errors);
    const std::string notes = whole_run::WithoutWarnings(result.errors);
    EXPECT_EQ(std::count(notes.begin(), notes.end(), '\n'), 1) << whole_run::Escaped(notes);
    ExpectTold(result, "\\x");
    fs::remove_all(scene_.At("src"));
    fs::remove_all(scene_.At("out"));
    scene_.MakeFolder("src");
    scene_.MakeFolder("out");
  }
}

// Creates or reads folders inside each other, with two files in the innermost one. The path to
// these files is longer than the system accepts.
class Depth {
 public:
  Depth(const std::string& start, const std::string& name, int levels)
      : folder_(open(start.c_str(), O_RDONLY | O_DIRECTORY)), name_(name), levels_(levels) {}
  ~Depth() { close(folder_); }
  Depth(const Depth&) = delete;
  Depth& operator=(const Depth&) = delete;

  void Make(const std::string& bytes) {
    for (int level = 0; level < levels_; ++level) {
      ASSERT_EQ(mkdirat(folder_, name_.c_str(), 0755), 0);
      ASSERT_TRUE(GoDown());
    }
    for (const char* file : {"end.txt", "end.bin"}) {
      const int opened = openat(folder_, file, O_WRONLY | O_CREAT, 0644);
      ASSERT_EQ(write(opened, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
      const timespec times[2] = {{1'000'000'000, 0}, {1'000'000'000, 0}};
      ASSERT_EQ(futimens(opened, times), 0);
      close(opened);
    }
  }
  std::string Read(const char* file) {
    for (int level = 0; level < levels_; ++level) {
      if (!GoDown()) return "level " + std::to_string(level) + " is not there";
    }
    const int opened = openat(folder_, file, O_RDONLY);
    std::string bytes(100, '\0');
    const ssize_t size = read(opened, bytes.data(), bytes.size());
    close(opened);
    if (size < 0) return "(cannot be read)";
    bytes.resize(static_cast<std::size_t>(size));
    return bytes;
  }

 private:
  bool GoDown() {
    const int next = openat(folder_, name_.c_str(), O_RDONLY | O_DIRECTORY);
    if (next < 0) return false;
    close(folder_);
    folder_ = next;
    return true;
  }

  int folder_;
  std::string name_;
  int levels_;
};

struct DepthCase {
  const char* name;
  std::string folder;
  int levels;
};

class DeepTree : public HostileTree, public ::testing::WithParamInterface<DepthCase> {};

TEST_P(DeepTree, IsCopiedToItsEnd) {
  const auto& [name, folder, levels] = GetParam();
  Depth(scene_.At("src"), folder, levels).Make("ab");
  ExpectSilent(Run());
  EXPECT_EQ(Depth(scene_.At("out"), folder, levels).Read("end.txt"), "X");
  EXPECT_EQ(Depth(scene_.At("out"), folder, levels).Read("end.bin"), "ab");
  EXPECT_EQ(Depth(scene_.At("src"), folder, levels).Read("end.txt"), "ab");
}

TEST_P(DeepTree, IsCheckedToItsEnd) {
  const auto& [name, folder, levels] = GetParam();
  Depth(scene_.At("src"), folder, levels).Make("ab");
  const ProgramResult result =
      scene_.Run({"check", scene_.At("src"), "--list", scene_.At("list"), "--quiet"});
  EXPECT_EQ(result.status, 3) << result.errors.substr(0, 1000);
  for (const char* file : {"/end.txt:1: byte 0: ", "/end.bin:1: byte 0: "}) {
    EXPECT_NE(result.output.find(folder + file), std::string::npos) << file;
  }
}

INSTANTIATE_TEST_SUITE_P(Of, DeepTree,
                         ::testing::Values(DepthCase{"a_thousand_levels", "d", 1000},
                                           DepthCase{"a_thousand_long_names", std::string(255, 'n'),
                                                     100},
                                           DepthCase{"two_thousand_levels", "dddd", 2000}),
                         [](const auto& depth) { return std::string(depth.param.name); });

TEST_F(HostileTree, VeryManyFilesInOneFolder) {
  Files source;
  for (int i = 0; i < 5000; ++i) {
    source["file" + std::to_string(i) + (i % 2 == 0 ? ".txt" : ".bin")] = "ab" + std::to_string(i);
  }
  Put(source);
  ExpectSilent(Run());
  ExpectAllRight(source);
}

TEST_F(HostileTree, AVeryLargeFileThatIsMostlyAHoleIsCopiedWithItsHole) {
  Put({{"big.bin", "ab"}, {"a.txt", "ab"}});
  constexpr off_t kSize = off_t{20} << 30;
  if (truncate(scene_.At("src/big.bin").c_str(), kSize) != 0) {
    GTEST_SKIP() << "the file system of the temporary folder has no files of 20 GiB";
  }
  whole_run::SetModified(scene_.At("src/big.bin"), 1'000'000'000'000'000'000);
  ExpectSilent(Run());
  struct stat status {};
  ASSERT_EQ(stat(scene_.At("out/big.bin").c_str(), &status), 0);
  EXPECT_EQ(status.st_size, kSize);
  EXPECT_LT(status.st_blocks, 1000);
}

TEST_F(HostileTree, ALargeFileThatIsMostlyAHoleIsProcessed) {
  Put({{"big.txt", "ab"}});
  constexpr off_t kSize = off_t{256} << 20;
  ASSERT_EQ(truncate(scene_.At("src/big.txt").c_str(), kSize), 0);
  whole_run::SetModified(scene_.At("src/big.txt"), 1'000'000'000'000'000'000);
  ExpectSilent(Run());
  EXPECT_EQ(fs::file_size(scene_.At("out/big.txt")), static_cast<std::uintmax_t>(kSize - 1));
  EXPECT_EQ(Log().at(1), scene_.At("src/big.txt") + "  ----  Hits: 1");
}

}  // namespace
}  // namespace morvex::system_test
