#include "tests/system/system_run.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <thread>

namespace morvex::system_test {
namespace {

namespace fs = std::filesystem;

constexpr int kSignalBase = 128;
constexpr int kNotStarted = 127;
// The limits are generous: these tests do not measure speed, and the machine may be busy.
constexpr auto kLimit = std::chrono::seconds(550);
constexpr auto kAwaitLimit = std::chrono::seconds(300);
constexpr auto kLook = std::chrono::microseconds(200);
constexpr uid_t kNobody = 65534;

void Redirect(int stream, const std::string& path, int flags) {
  const int file = open(path.c_str(), flags, 0600);
  if (file < 0 || dup2(file, stream) < 0) _exit(kNotStarted);
  close(file);
}

int WaitFor(pid_t process) {
  const auto limit = std::chrono::steady_clock::now() + kLimit;
  int status = 0;
  while (waitpid(process, &status, WNOHANG) == 0) {
    if (std::chrono::steady_clock::now() > limit) {
      kill(process, SIGKILL);
      waitpid(process, &status, 0);
      ADD_FAILURE() << "the program did not end";
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : kSignalBase + WTERMSIG(status);
}

// Returns the signals that the process handles, one bit each; the lowest bit is signal 1.
std::uint64_t HandledSignals(pid_t process) {
  std::ifstream status("/proc/" + std::to_string(process) + "/status");
  for (std::string word; status >> word;) {
    std::uint64_t signals = 0;
    if (word == "SigCgt:" && status >> std::hex >> signals) return signals;
  }
  return 0;
}

}  // namespace

SystemTest::SystemTest() {
  scene_.Write("list", "ab|X||\r\n");
  scene_.MakeFolder("src");
  scene_.MakeFolder("out");
  scene_.Write("job.dat",
               whole_run::UsualSettings(scene_.At("src"), scene_.At("out"), scene_.At("list")));
}

ProgramResult SystemTest::Run(const Start& start) const { return RunJob("job.dat", start); }

ProgramResult SystemTest::RunJob(const std::string& settings, const Start& start) const {
  const std::string output = scene_.root() + "/output." + settings;
  const std::string errors = scene_.root() + "/errors." + settings;
  const std::string program = scene_.program_folder() + "/morvex-cli";
  const std::string job = scene_.At(settings);
  std::vector<const char*> words = {program.c_str(), "-if", job.c_str()};
  for (const std::string& word : start.arguments) words.push_back(word.c_str());
  words.push_back(nullptr);
  fflush(nullptr);
  const pid_t process = fork();
  if (process == 0) {
    Redirect(STDIN_FILENO, "/dev/null", O_RDONLY);
    Redirect(STDOUT_FILENO, output, O_WRONLY | O_CREAT | O_TRUNC);
    Redirect(STDERR_FILENO, errors, O_WRONLY | O_CREAT | O_TRUNC);
    if (chdir(scene_.work().c_str()) != 0) _exit(kNotStarted);
    setenv("LC_ALL", "C", 1);
    // If the tests were started with these signals ignored, the program would ignore them too.
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) signal(number, SIG_DFL);
    if (start.prepare) start.prepare();
    execv(program.c_str(), const_cast<char* const*>(words.data()));
    _exit(kNotStarted);
  }
  if (process < 0) throw std::runtime_error("test set-up: cannot start the program");
  if (start.meanwhile) start.meanwhile(process);
  ProgramResult result;
  result.status = WaitFor(process);
  EXPECT_NE(result.status, kNotStarted) << "the program could not be started";
  result.output = whole_run::ReadWholeFile(output);
  result.errors = whole_run::ReadWholeFile(errors);
  EXPECT_EQ(result.errors.find("Sanitizer"), std::string::npos) << result.errors;
  EXPECT_EQ(result.errors.find("runtime error"), std::string::npos) << result.errors;
  return result;
}

void SystemTest::Put(const Files& files) const {
  for (const auto& [name, bytes] : files) scene_.Write("src/" + name, bytes);
}

Files SystemTest::Target() const { return FilesBelow(scene_.At("out")); }

Files SystemTest::Source() const { return FilesBelow(scene_.At("src")); }

std::string WithoutRemarks(const std::string& errors) {
  std::istringstream lines(whole_run::WithoutWarnings(errors));
  std::string others;
  for (std::string line; std::getline(lines, line);) {
    const bool is_remark =
        line.ends_with("not copied: the temporary file of an earlier run, by its name.") ||
        line.starts_with("The target held files before, ");
    if (!is_remark) others += line + "\n";
  }
  return others;
}

std::string Replaced(const std::string& text, const std::string& right) {
  std::string replaced;
  std::size_t from = 0;
  for (std::size_t at = text.find("ab"); at != std::string::npos; at = text.find("ab", from)) {
    replaced.append(text, from, at - from).append(right);
    from = at + 2;
  }
  return replaced.append(text, from);
}

Files SystemTest::Copied(const Files& files, const std::string& right) {
  Files copies;
  for (const auto& [name, bytes] : files) {
    copies[name] = name.ends_with(".txt") ? Replaced(bytes, right) : bytes;
  }
  return copies;
}

void SystemTest::ExpectNothingWrong(const Files& source) const {
  EXPECT_TRUE(Source() == source) << "the source has changed, or holds a temporary file";
  const Files right = Copied(source);
  for (const auto& [name, bytes] : Target()) {
    const auto found = right.find(name);
    ASSERT_NE(found, right.end()) << whole_run::Escaped(name);
    EXPECT_TRUE(bytes == found->second) << whole_run::Escaped(name) << " has " << bytes.size()
                                        << " bytes instead of " << found->second.size();
  }
}

void SystemTest::ExpectAllRight(const Files& source) const {
  ExpectNothingWrong(source);
  EXPECT_EQ(Target().size(), source.size());
}

std::vector<std::string> SystemTest::Log() const { return whole_run::LogMessages(scene_.RunLog()); }

Files FilesBelow(const std::string& folder) {
  Files files;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    if (entry.is_symlink() || !entry.is_regular_file()) continue;
    files[entry.path().string().substr(folder.size() + 1)] = whole_run::ReadWholeFile(entry.path());
  }
  return files;
}

void Await(const std::string& what, const std::function<bool()>& holds) {
  const auto limit = std::chrono::steady_clock::now() + kAwaitLimit;
  while (!holds()) {
    if (std::chrono::steady_clock::now() > limit) {
      ADD_FAILURE() << "waited in vain for " << what;
      return;
    }
    std::this_thread::sleep_for(kLook);
  }
}

void AwaitHandler(pid_t process, int number) {
  const std::uint64_t bit = std::uint64_t{1} << (number - 1);
  Await("a handler for signal " + std::to_string(number),
        [&] { return (HandledSignals(process) & bit) != 0; });
}

void BecomeNobody() {
  if (geteuid() != 0) return;
  if (setgid(kNobody) != 0 || setuid(kNobody) != 0) _exit(kNotStarted);
}

void HandOver(const Scene& scene) {
  if (geteuid() != 0) return;
  ASSERT_EQ(lchown(scene.root().c_str(), kNobody, kNobody), 0);
  for (const auto& entry : fs::recursive_directory_iterator(scene.root())) {
    ASSERT_EQ(lchown(entry.path().c_str(), kNobody, kNobody), 0) << entry.path();
  }
}

std::string Text(std::size_t size) {
  std::string text;
  for (unsigned number = 0; text.size() < size; number += 7919) {
    text += (number % 3 == 0 ? "ab" : "cd") + std::to_string(number);
  }
  text.resize(size);
  return text;
}

}  // namespace morvex::system_test
