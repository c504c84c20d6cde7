// The program's path, arguments and environment, the clock and the locale.
#include "host/posix/posix_system.h"

#include <sys/wait.h>

#include <chrono>
#include <clocale>
#include <ctime>
#include <filesystem>
#include <limits>
#include <memory>

#include "tests/host/posix/posix_test.h"

extern char** environ;

namespace morvex {
namespace {

namespace fs = std::filesystem;
using namespace posix_test;

// Sets or unsets an environment variable during its lifetime.
class Variable {
 public:
  Variable(const char* name, const char* value) : name_(name) {
    const char* before = getenv(name);
    if (before != nullptr) before_ = before;
    Set(value);
  }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;
  ~Variable() { Set(before_ ? before_->c_str() : nullptr); }

 private:
  void Set(const char* value) {
    if (value != nullptr) {
      setenv(name_, value, 1);
    } else {
      unsetenv(name_);
    }
  }

  const char* const name_;
  std::optional<std::string> before_;
};

// The system service of a program that was started with `words`.
class Started {
 public:
  explicit Started(std::vector<std::string> words) : words_(std::move(words)) {
    for (std::string& word : words_) pointers_.push_back(word.data());
    pointers_.push_back(nullptr);
    service_ =
        std::make_unique<PosixSystemService>(static_cast<int>(words_.size()), pointers_.data());
  }
  PosixSystemService* operator->() { return service_.get(); }

 private:
  std::vector<std::string> words_;
  std::vector<char*> pointers_;
  std::unique_ptr<PosixSystemService> service_;
};

TEST(PosixSystemTest, TheProgramsPlaceIsThatOfTheExecutable) {
  Started system({"another name"});
  const fs::path own = fs::canonical("/proc/self/exe");
  EXPECT_EQ(system->ProgramFolder(), own.parent_path());
  EXPECT_EQ(system->ExecutableName(), own.filename());
}

TEST(PosixSystemTest, ArgumentsAreJoinedByOneBlank) {
  EXPECT_EQ(Started({})->CommandLineText(), "");
  EXPECT_EQ(Started({"morvex"})->CommandLineText(), "");
  EXPECT_EQ(Started({"morvex", "-dy"})->CommandLineText(), "-dy");
  EXPECT_EQ(Started({"morvex", "-if", "a  b", "", "\xff"})->CommandLineText(), "-if a  b  \xff");
}

TEST(PosixSystemTest, TheEnvironmentIsCountedFromOne) {
  const Variable last("MORVEX_TEST_ENTRY", "a=b");
  Started system({"morvex"});
  int count = 0;
  bool seen = false;
  for (char** entry = environ; *entry != nullptr; ++entry) {
    ++count;
    EXPECT_EQ(system->EnvironmentEntry(count), *entry);
    seen = seen || std::string(*entry) == "MORVEX_TEST_ENTRY=a=b";
  }
  EXPECT_TRUE(seen);
  for (const int index : {0, -1, count + 1, count + 1000, std::numeric_limits<int>::max()}) {
    EXPECT_EQ(system->EnvironmentEntry(index), "") << index;
  }
}

TEST(PosixSystemTest, TheClockIsTheSystems) {
  Started system({"morvex"});
  const WallTime before = std::chrono::system_clock::now();
  const WallTime now = system->Now();
  EXPECT_LE(before, now);
  EXPECT_LE(now, WallTime(std::chrono::system_clock::now()));
}

TEST(PosixSystemTest, SteadyTimeMovesForward) {
  Started system({"morvex"});
  const auto before = system->SteadyTime();
  usleep(20'000);
  const auto after = system->SteadyTime();
  EXPECT_GE(after - before, std::chrono::milliseconds(19));
  EXPECT_LT(after - before, std::chrono::minutes(1));
}

TEST(PosixSystemTest, TheTimeOfDayIsThatOfTheTimeZone) {
  Started system({"morvex"});
  const auto hours_in = [&](const char* zone) {
    const Variable passing("TZ", zone);
    for (;;) {
      const time_t before = time(nullptr);
      const TimeOfDay now = system->LocalTimeOfDay();
      if (before / 60 != time(nullptr) / 60) continue;  // the minute changed meanwhile
      EXPECT_EQ(now.minute, before / 60 % 60) << zone;
      EXPECT_GE(now.second, 0);
      EXPECT_LE(now.second, 60);
      return std::pair(now.hour, static_cast<int>(before / 3600 % 24));
    }
  };
  const auto [here, utc] = hours_in("UTC0");
  EXPECT_EQ(here, utc);
  const auto [east, again] = hours_in("EAST-5");
  EXPECT_EQ(east, (again + 5) % 24);
  tzset();
}

TEST(PosixSystemTest, DateAndTimeFollowTheLocale) {
  const Variable locale("LC_ALL", "C");
  const Variable zone("TZ", "UTC0");
  Started system({"morvex"});
  const auto formatted = [](const char* format, time_t moment) {
    char text[64] = {};
    tm parts{};
    gmtime_r(&moment, &parts);
    return std::string(text, strftime(text, sizeof text, format, &parts));
  };
  const time_t before = time(nullptr);
  const std::string date = system->ShortDate();
  const std::string hour = system->TimeText();
  const time_t after = time(nullptr);
  EXPECT_TRUE(date == formatted("%m/%d/%y", before) || date == formatted("%m/%d/%y", after))
      << date;
  bool among = false;
  // TimeText uses an exact clock. At the turn of a second, the clock of time() may lag behind the
  // exact clock, so one more second is allowed.
  for (time_t moment = before; moment <= after + 1; ++moment) {
    among = among || hour == formatted("%H:%M:%S", moment);
  }
  EXPECT_TRUE(among) << hour;
}

TextCodec CodecUnder(const char* all, const char* characters, const char* language) {
  const Variable first("LC_ALL", all);
  const Variable second("LC_CTYPE", characters);
  const Variable third("LANG", language);
  return Started({"morvex"})->Codec();
}

TEST(PosixSystemTest, TheCodecIsThatOfTheLocalesCharacters) {
  EXPECT_EQ(CodecUnder(nullptr, nullptr, nullptr), TextCodec::kSingleByte);
  EXPECT_EQ(CodecUnder("C", "C.UTF-8", "C.UTF-8"), TextCodec::kSingleByte);
  EXPECT_EQ(CodecUnder("none_NONE.UTF-8", nullptr, nullptr), TextCodec::kSingleByte);
  const locale_t utf8 = newlocale(LC_ALL_MASK, "C.UTF-8", nullptr);
  if (utf8 == nullptr) GTEST_SKIP() << "C.UTF-8 is not installed";
  freelocale(utf8);
  EXPECT_EQ(CodecUnder("C.UTF-8", "C", "C"), TextCodec::kUtf8);
  EXPECT_EQ(CodecUnder(nullptr, "C.UTF-8", "C"), TextCodec::kUtf8);
  EXPECT_EQ(CodecUnder(nullptr, nullptr, "C.UTF-8"), TextCodec::kUtf8);
  const Variable dates("LC_TIME", "none_NONE");
  EXPECT_EQ(CodecUnder(nullptr, "C.UTF-8", "C"), TextCodec::kUtf8);
}

TEST(PosixSystemTest, TheLibrarysLocaleIsLeftAlone) {
  const Variable locale("LC_ALL", "C.UTF-8");
  const std::string before = setlocale(LC_ALL, nullptr);
  Started system({"morvex"});
  system->ShortDate();
  EXPECT_EQ(setlocale(LC_ALL, nullptr), before);
}

TEST(PosixSystemTest, ThereIsNoRedirectedStore) {
  EXPECT_FALSE(Started({"morvex"})->HasRedirectedStore());
}

TEST(PosixSystemTest, AFileTooLongDoesNotEndTheProcess) {
  TempFolder folder;
  const pid_t child = fork();
  if (child == 0) {
    signal(SIGXFSZ, SIG_DFL);
    Started system({"morvex"});
    rlimit limit{10, RLIM_INFINITY};
    getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = 10;
    setrlimit(RLIMIT_FSIZE, &limit);
    PosixFileService files;
    const ErrorNumber error = files.AppendToFile(folder / "file", std::string(20, 'x'));
    _exit(error == ErrorNumber::kDiskFull ? 0 : 1);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 0);
}

class PosixProgramPathTest : public PosixTest {};

TEST_F(PosixProgramPathTest, ANameIsLookedForInThePath) {
  fs::create_directory(folder_ / "first");
  fs::create_directory(folder_ / "second");
  Put(folder_ / "first/program", "");
  Put(folder_ / "second/program", "");
  ASSERT_EQ(chmod((folder_ / "first/program").c_str(), 0644), 0);
  ASSERT_EQ(chmod((folder_ / "second/program").c_str(), 0755), 0);
  const std::string folders = (folder_ / "none:") + (folder_ / "first:") + (folder_ / "second");
  const Variable path("PATH", folders.c_str());
  EXPECT_EQ(posix::ProgramPathFromName("program"), folder_ / "second/program");
  EXPECT_EQ(posix::ProgramPathFromName(folder_ / "first/./program"), folder_ / "first/program");
  const fs::path current = fs::current_path();
  EXPECT_EQ(posix::ProgramPathFromName("none"), (current / "none").string());
  EXPECT_EQ(posix::ProgramPathFromName("./program"), (current / "program").string());
  EXPECT_EQ(posix::ProgramPathFromName(""), "/");
}

TEST_F(PosixProgramPathTest, TheMarkOfADeletedProgramIsNoPartOfItsName) {
  EXPECT_EQ(posix::ProgramPathFromLink("/bin/gone"), "/bin/gone");
  EXPECT_EQ(posix::ProgramPathFromLink(folder_ / "gone (deleted)"), folder_ / "gone");
  Put(folder_ / "odd (deleted)", "");
  EXPECT_EQ(posix::ProgramPathFromLink(folder_ / "odd (deleted)"), folder_ / "odd (deleted)");
}

TEST_F(PosixProgramPathTest, AnEmptyFolderOfThePathIsTheCurrentOne) {
  Put(folder_ / "program", "");
  ASSERT_EQ(chmod((folder_ / "program").c_str(), 0755), 0);
  const fs::path before = fs::current_path();
  fs::current_path(folder_.Path());
  const Variable path("PATH", "/nonexistent:");
  const std::string found = posix::ProgramPathFromName("program");
  fs::current_path(before);
  EXPECT_EQ(found, folder_ / "program");
}

}  // namespace
}  // namespace morvex
