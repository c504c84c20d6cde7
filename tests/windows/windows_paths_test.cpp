// Paths as Windows users write them, and names that only Windows has trouble with: drives, network
// paths, long paths, other spellings of one name, devices.

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/windows/windows_scene.h"

namespace morvex::whole_run {
namespace {

namespace fs = std::filesystem;

// A drive letter in Wine that shows a folder of this machine. Tests run at the same time in one
// Wine prefix, so each test has a letter of its own.
class Drive {
 public:
  Drive(char letter, const std::string& folder) {
    const char* prefix = std::getenv("WINEPREFIX");
    link_ = std::string(prefix != nullptr ? prefix : "/nowhere") + "/dosdevices/" + letter + ":";
    std::error_code ignored;
    fs::remove(link_, ignored);
    fs::create_directory_symlink(folder, link_);
  }
  Drive(const Drive&) = delete;
  Drive& operator=(const Drive&) = delete;
  ~Drive() {
    std::error_code ignored;
    fs::remove(link_, ignored);
  }

 private:
  std::string link_;
};

// A network server in Wine whose only share shows a folder of this machine. The server's name
// contains the process ID, because tests run at the same time in one Wine prefix.
class Share {
 public:
  explicit Share(const std::string& folder) : name_("server" + std::to_string(getpid())) {
    const char* prefix = std::getenv("WINEPREFIX");
    server_ = std::string(prefix != nullptr ? prefix : "/nowhere") + "/dosdevices/unc/" + name_;
    fs::create_directories(server_);
    fs::remove(server_ + "/share");
    fs::create_directory_symlink(folder, server_ + "/share");
  }
  Share(const Share&) = delete;
  Share& operator=(const Share&) = delete;
  ~Share() {
    std::error_code ignored;
    fs::remove(server_ + "/share", ignored);
    fs::remove(server_, ignored);
  }

  // The network path of the share, without a backslash at its end.
  std::string path() const { return "\\\\" + name_ + "\\share"; }

 private:
  std::string name_;
  std::string server_;
};

// During its lifetime, the tested programs read the names of files on this machine as UTF-8.
class Utf8Names {
 public:
  Utf8Names() { setenv("MORVEX_UNDER", ("env LC_ALL=C.UTF-8 " + before_).c_str(), 1); }
  Utf8Names(const Utf8Names&) = delete;
  Utf8Names& operator=(const Utf8Names&) = delete;
  ~Utf8Names() { setenv("MORVEX_UNDER", before_.c_str(), 1); }

 private:
  const std::string before_ = std::getenv("MORVEX_UNDER");
};

std::vector<std::string> NamesIn(const std::string& folder) {
  std::vector<std::string> names;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
    names.push_back(entry.path().filename());
  }
  std::sort(names.begin(), names.end());
  return names;
}

class WindowsPaths : public testing::Test {
 protected:
  WindowsPaths() { scene_.Write("list.txt", "Jan|Piet\r\n"); }

  // Runs with `source` and `target` exactly as they are given, and with the usual other settings.
  ProgramResult Run(const std::string& source, const std::string& target) {
    const std::string list = WindowsPath(scene_.At("list.txt"));
    scene_.Write("job.dat", UsualSettings(source, target, list));
    return scene_.Run({"-if", WindowsPath(scene_.At("job.dat"))});
  }

  // Returns the log's messages between the header and the blank message in front of the summary.
  std::vector<std::string> FileLines() const {
    std::vector<std::string> lines = LogMessages(scene_.RunLog());
    std::vector<std::string> result;
    for (std::size_t at = 1; at < lines.size() && lines[at] != "  "; ++at) {
      result.push_back(lines[at]);
    }
    return result;
  }

  WindowsScene scene_;
};

using Lines = std::vector<std::string>;

TEST_F(WindowsPaths, ASourceAtADrivesRootIsWalkedWithoutDoubledBackslashes) {
  const Drive drive('x', scene_.At("drive_x"));
  scene_.Write("drive_x/a.txt", "Jan");
  scene_.Write("drive_x/sub/b.txt", "Jan Jan");
  const ProgramResult result = Run("X:\\", WindowsPath(scene_.At("out")));
  scene_.MakeFolder("out");
  const ProgramResult again = Run("X:\\", WindowsPath(scene_.At("out")));
  EXPECT_EQ(result.status, 1) << "a target that is missing";
  EXPECT_EQ(again.status, 0) << again.errors;
  EXPECT_EQ(scene_.Read("out/a.txt"), "Piet");
  EXPECT_EQ(scene_.Read("out/sub/b.txt"), "Piet Piet");
  EXPECT_NE(scene_.RunLog().find("\"\r\n"), std::string::npos);
  EXPECT_EQ(scene_.RunLog().find("X:\\\\"), std::string::npos) << scene_.RunLog();
  EXPECT_NE(scene_.RunLog().find(" X:\\a.txt  ----  Hits: 1"), std::string::npos)
      << scene_.RunLog();
  EXPECT_NE(scene_.RunLog().find(" X:\\sub\\b.txt  ----  Hits: 2"), std::string::npos)
      << scene_.RunLog();
}

TEST_F(WindowsPaths, ATargetAtADrivesRootGetsTheCopies) {
  const Drive drive('y', scene_.At("drive_y"));
  scene_.MakeFolder("drive_y");
  scene_.Write("src/a.txt", "Jan");
  scene_.Write("src/sub/b.txt", "Jan");
  EXPECT_EQ(Run(WindowsPath(scene_.At("src")), "Y:\\").status, 0);
  EXPECT_EQ(scene_.Read("drive_y/a.txt"), "Piet");
  EXPECT_EQ(scene_.Read("drive_y/sub/b.txt"), "Piet");
}

TEST_F(WindowsPaths, AProgramAtADrivesRootKeepsItsFilesBesideItself) {
  scene_.Write("src/a.txt", "Jan");
  scene_.MakeFolder("out");
  const Drive drive('w', scene_.program_folder());
  scene_.Write("job.dat",
               UsualSettings(WindowsPath(scene_.At("src")), WindowsPath(scene_.At("out")),
                             WindowsPath(scene_.At("list.txt"))));
  const ProgramResult result = RunProgram(
      "W:\\morvex-cli.exe", {"-if", WindowsPath(scene_.At("job.dat"))}, scene_.work(), 120);
  EXPECT_EQ(result.status, 0) << result.errors;
  EXPECT_EQ(scene_.ProgramFolderNames(), (Lines{"Init.dat", "Morvex.log"}));
  EXPECT_EQ(scene_.Read("out/a.txt"), "Piet");
}

TEST_F(WindowsPaths, AProgramInAFolderThatThePageCannotSpellKeepsItsFilesBesideItself) {
  scene_.Write("src/a.txt", "Jan");
  scene_.MakeFolder("out");
  scene_.MakeFolder("\u0141ukasz");
  const std::string folder = scene_.At("\u0141ukasz");
  fs::copy(scene_.program_folder() + "/morvex-cli.exe", folder);
  const Utf8Names names;
  scene_.Write("job.dat",
               UsualSettings(WindowsPath(scene_.At("src")), WindowsPath(scene_.At("out")),
                             WindowsPath(scene_.At("list.txt"))));
  const ProgramResult result = RunProgram(
      folder + "/morvex-cli.exe", {"-if", WindowsPath(scene_.At("job.dat"))}, scene_.work(), 120);
  EXPECT_EQ(result.status, 0) << result.errors;
  EXPECT_TRUE(fs::exists(folder + "/Init.dat"));
  EXPECT_TRUE(fs::exists(folder + "/Morvex.log"));
  EXPECT_EQ(scene_.Read("out/a.txt"), "Piet");
}

TEST_F(WindowsPaths, SettingsInTheProgramsFolderAreFoundByTheirName) {
  scene_.Write("src/a.txt", "Jan");
  scene_.MakeFolder("out");
  WriteWholeFile(scene_.program_folder() + "/nightly.dat",
                 UsualSettings(WindowsPath(scene_.At("src")), WindowsPath(scene_.At("out")),
                               WindowsPath(scene_.At("list.txt"))));
  EXPECT_EQ(scene_.Run({"-if", "nightly.dat"}).status, 0);
  EXPECT_EQ(scene_.Read("out/a.txt"), "Piet");
  EXPECT_EQ(scene_.Run({"-if", "Z:\\no\\such.dat"}).status, 1);
}

TEST_F(WindowsPaths, WhatCannotBeHadAtADrivesRootIsNamedWithoutDoubledBackslashes) {
  const Drive drive('v', scene_.At("drive_v"));
  scene_.Write("drive_v/nul.txt", "Jan");
  scene_.MakeFolder("drive_v/con");
  scene_.MakeFolder("out");
  const ProgramResult result = Run("V:\\", WindowsPath(scene_.At("out")));
  EXPECT_EQ(result.status, 3) << result.errors;
  EXPECT_EQ(FileLines(), (Lines{"V:\\nul.txt", "Error 52: Bad file name or number"}));
  EXPECT_EQ(result.errors.find("V:\\\\"), std::string::npos) << result.errors;
}

TEST_F(WindowsPaths, ANetworkPathKeepsItsPairOfBackslashes) {
  scene_.Write("shared/src/a.txt", "Jan");
  scene_.Write("shared/src/sub/deep/b.txt", "Jan Jan");
  scene_.MakeFolder("shared/out");
  scene_.MakeFolder("shared/again");
  const Share share(scene_.At("shared"));
  const std::string root = share.path() + "\\";
  const Lines lines = {root + "src\\a.txt  ----  Hits: 1",
                       root + "src\\sub\\deep\\b.txt  ----  Hits: 2"};
  const ProgramResult result = Run(root + "src", root + "out");
  EXPECT_EQ(result.status, 0) << result.errors;
  EXPECT_EQ(FileLines(), lines);
  EXPECT_EQ(scene_.Read("shared/out/a.txt"), "Piet");
  EXPECT_EQ(scene_.Read("shared/out/sub/deep/b.txt"), "Piet Piet");
  fs::remove(scene_.program_folder() + "/Morvex.log");
  EXPECT_EQ(Run(root + "\\src\\", root + "again\\\\").status, 0);
  EXPECT_EQ(FileLines(), lines);
  EXPECT_EQ(scene_.Read("shared/again/sub/deep/b.txt"), "Piet Piet");
}

TEST_F(WindowsPaths, ASharesRootIsASourceAndATarget) {
  scene_.Write("shared/a.txt", "Jan");
  scene_.Write("shared/sub/b.txt", "Jan");
  scene_.MakeFolder("out");
  const Share share(scene_.At("shared"));
  EXPECT_EQ(Run(share.path(), WindowsPath(scene_.At("out"))).status, 0);
  EXPECT_EQ(scene_.Read("out/sub/b.txt"), "Piet");
  EXPECT_EQ(FileLines(), (Lines{share.path() + "\\a.txt  ----  Hits: 1",
                                share.path() + "\\sub\\b.txt  ----  Hits: 1"}));
  scene_.Write("src/c.txt", "Jan");
  EXPECT_EQ(Run(WindowsPath(scene_.At("src")), share.path()).status, 0);
  EXPECT_EQ(scene_.Read("shared/c.txt"), "Piet");
}

TEST_F(WindowsPaths, WhatOnlyThePrefixLeadsToIsNoFolderOfTheCurrentOne) {
  scene_.Write("src/a.txt", "Jan");
  scene_.MakeFolder("Volume{12}/out");
  const ProgramResult result = Run(WindowsPath(scene_.At("src")), "\\\\?\\Volume{12}\\out");
  EXPECT_EQ(result.status, 1) << result.errors;
  EXPECT_TRUE(fs::is_empty(scene_.At("Volume{12}/out")));
}

TEST_F(WindowsPaths, NetworkPathsThatLeadNowhereEndTheRunCleanly) {
  scene_.Write("src/a.txt", "Jan");
  scene_.MakeFolder("out");
  for (const char* path : {"\\\\no.such.server.invalid\\share\\src", "\\\\?\\Q:\\src",
                           "\\\\.\\pipe\\x", "Q:\\src", "\\\\"}) {
    const ProgramResult result = Run(path, WindowsPath(scene_.At("out")));
    EXPECT_EQ(result.status, 1) << path << "\n" << result.errors;
    EXPECT_TRUE(fs::is_empty(scene_.At("out"))) << path;
    EXPECT_EQ(Run(WindowsPath(scene_.At("src")), path).status, 1) << path;
  }
}

TEST_F(WindowsPaths, ThePrefixOfLongPathsLeadsToTheSameFolder) {
  scene_.Write("src/a.txt", "Jan");
  scene_.Write("src/sub/b.txt", "Jan");
  scene_.MakeFolder("out");
  const std::string prefix = "\\\\?\\";
  const ProgramResult result =
      Run(prefix + WindowsPath(scene_.At("src")), prefix + WindowsPath(scene_.At("out")));
  EXPECT_EQ(result.status, 0) << result.errors;
  EXPECT_EQ(scene_.Read("out/sub/b.txt"), "Piet");
  EXPECT_EQ(FileLines(), (Lines{WindowsPath(scene_.At("src/a.txt")) + "  ----  Hits: 1",
                                WindowsPath(scene_.At("src/sub/b.txt")) + "  ----  Hits: 1"}));
}

TEST_F(WindowsPaths, APathOfMoreThan260CharactersIsCopied) {
  std::string folder = "src";
  while (scene_.At(folder).size() < 500) folder += "/" + std::string(50, 'd');
  const std::string file = folder + "/" + std::string(200, 'f') + ".txt";
  scene_.Write(file, "Jan");
  scene_.MakeFolder("out");
  const ProgramResult result = Run(WindowsPath(scene_.At("src")), WindowsPath(scene_.At("out")));
  EXPECT_EQ(result.status, 0) << result.errors;
  EXPECT_EQ(scene_.Read("out" + file.substr(3)), "Piet");
  EXPECT_EQ(FileLines(), Lines{WindowsPath(scene_.At(file)) + "  ----  Hits: 1"});
}

TEST_F(WindowsPaths, OtherSpellingsOfAFolderLeadToItAndExtensionsAreExact) {
  scene_.Write("Src/a.txt", "Jan");
  scene_.Write("Src/b.TXT", "Jan");
  scene_.Write("Src/Sub/c.txt", "Jan");
  scene_.Write("Src/Sub/D.Txt", "Jan");
  scene_.MakeFolder("Out");
  const ProgramResult result = Run(WindowsPath(scene_.At("sRC")), WindowsPath(scene_.At("OUT")));
  EXPECT_EQ(result.status, 0) << result.errors;
  EXPECT_EQ(scene_.Read("Out/a.txt"), "Piet");
  EXPECT_EQ(scene_.Read("Out/b.TXT"), "Jan");
  EXPECT_EQ(scene_.Read("Out/Sub/c.txt"), "Piet");
  EXPECT_EQ(scene_.Read("Out/Sub/D.Txt"), "Jan");
}

TEST_F(WindowsPaths, ASourceIsNeverOverwrittenByAnotherSpellingOfItself) {
  scene_.Write("src/a.txt", "Jan");
  const ProgramResult result =
      Run(WindowsPath(scene_.At("src/a.txt")), WindowsPath(scene_.At("SRC/A.TXT")));
  EXPECT_NE(result.status, 0);
  EXPECT_EQ(scene_.Read("src/a.txt"), "Jan");
}

TEST_F(WindowsPaths, FilesThatWindowsCannotNameAreCountedAsFailed) {
  scene_.Write("src/a.txt", "Jan");
  scene_.Write("src/nul.txt", "Jan");
  scene_.Write("src/sub/con.txt", "Jan");
  scene_.MakeFolder("out");
  const ProgramResult result = Run(WindowsPath(scene_.At("src")), WindowsPath(scene_.At("out")));
  EXPECT_EQ(result.status, 3) << result.errors;
  EXPECT_EQ(scene_.Read("out/a.txt"), "Piet");
  EXPECT_FALSE(scene_.Exists("out/nul.txt"));
  EXPECT_FALSE(scene_.Exists("out/sub/con.txt"));
  EXPECT_NE(scene_.RunLog().find("Error 52: Bad file name or number"), std::string::npos)
      << scene_.RunLog();
}

// A file in the source that has the work file's name, in any letter case, counts as a stale work
// file and gets no copy.
TEST_F(WindowsPaths, TheTemporaryFilesNameIsThatInAnyLetterCase) {
  scene_.Write("src/a.txt", "Jan");
  scene_.Write("src/sub/Tijdel.Enc", "Jan");
  scene_.Write("src/sub/z.doc", "Jan");
  scene_.MakeFolder("out");
  const ProgramResult result = Run(WindowsPath(scene_.At("src")), WindowsPath(scene_.At("out")));
  EXPECT_EQ(result.status, 0) << result.errors;
  EXPECT_EQ(NamesIn(scene_.At("out/sub")), Lines{"z.doc"});
  EXPECT_EQ(scene_.Read("src/sub/Tijdel.Enc"), "Jan");
  EXPECT_NE(scene_.RunLog().find("Overgeslagen: 1 bestanden"), std::string::npos)
      << scene_.RunLog();
}

// On the disk, names are Unicode; in the program, they are bytes of the code page.
TEST_F(WindowsPaths, NamesThatTheCodePageCannotSpellAreCountedAsFailed) {
  const Utf8Names names;
  scene_.Write("src/a.txt", "Jan");
  scene_.Write("src/caf\xC3\xA9.txt", "Jan");
  scene_.Write("src/\xD0\x96.txt", "Jan");
  scene_.Write("src/\xEF\xBC\xA1.doc", "Jan");
  scene_.Write("src/\xD0\x96 folder/b.txt", "Jan");
  scene_.MakeFolder("out");
  const ProgramResult result = Run(WindowsPath(scene_.At("src")), WindowsPath(scene_.At("out")));
  EXPECT_EQ(result.status, 3) << result.errors;
  EXPECT_EQ(NamesIn(scene_.At("out")), (Lines{"a.txt", "caf\xC3\xA9.txt"}));
  EXPECT_EQ(scene_.Read("out/a.txt"), "Piet");
  EXPECT_EQ(scene_.Read("out/caf\xC3\xA9.txt"), "Piet");
  EXPECT_NE(scene_.RunLog().find("Error 52: Bad file name or number"), std::string::npos)
      << scene_.RunLog();
  EXPECT_EQ(NamesIn(scene_.At("src")).size(), 5U) << "nothing is left in the source";
}

TEST_F(WindowsPaths, ReadOnlyFilesAreCopiedTwice) {
  scene_.Write("src/a.txt", "Jan");
  scene_.Write("src/b.doc", "Jan");
  SetPermissions(scene_.At("src/a.txt"), 0444);
  SetPermissions(scene_.At("src/b.doc"), 0444);
  scene_.MakeFolder("out");
  for (int run = 0; run < 2; ++run) {
    EXPECT_EQ(Run(WindowsPath(scene_.At("src")), WindowsPath(scene_.At("out"))).status, 0) << run;
    EXPECT_EQ(scene_.Read("out/a.txt"), "Piet");
    EXPECT_EQ(scene_.Read("out/b.doc"), "Jan");
  }
  EXPECT_FALSE(scene_.Exists("src/tijdel.enc"));
  EXPECT_FALSE(scene_.Exists("out/tijdel.enc"));
}

TEST_F(WindowsPaths, FilterPassesEveryByteUnchanged) {
  std::string bytes;
  for (int code = 0; code < 512; ++code) bytes.push_back(static_cast<char>(code));
  scene_.Write("in", "\r\n\x1a" + bytes + "\n\r\x1a Jan\n");
  const std::string command = "cd '" + scene_.work() + "' && $MORVEX_UNDER '" +
                              scene_.program_folder() +
                              "/morvex-cli.exe' filter --list list.txt <in >out 2>errors";
  EXPECT_EQ(std::system(command.c_str()), 0) << scene_.Read("errors");
  EXPECT_EQ(scene_.Read("out"), "\r\n\x1a" + bytes + "\n\r\x1a Piet\n");
}

TEST_F(WindowsPaths, TheCommandsTakeWindowsPaths) {
  scene_.Write("src/a.txt", "Jan");
  scene_.Write("src/sub/b.txt", "Jan");
  scene_.MakeFolder("made");
  const std::string source = WindowsPath(scene_.At("src"));
  const std::string target = WindowsPath(scene_.At("made"));
  const std::string list = WindowsPath(scene_.At("list.txt"));
  const ProgramResult run = scene_.Run({"run", source, target, "--list", list, "--ext", ".txt"});
  EXPECT_EQ(run.status, 0) << run.errors;
  EXPECT_EQ(scene_.Read("made/sub/b.txt"), "Piet");
  EXPECT_EQ(scene_.Run({"check", target, "--list", list}).status, 0);
  EXPECT_NE(scene_.Run({"check", source, "--list", list}).status, 0);
}

}  // namespace
}  // namespace morvex::whole_run
