// Processes and temporary folders. The program's output goes to two files, because a full pipe
// would stop the program.

#include "program_run.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <thread>
#include <utility>

namespace morvex::whole_run {
namespace {

constexpr int kLimitSeconds = 120;
constexpr int kSignalBase = 128;
// The age that Scene::Write gives a file: its modification time is so many seconds before now.
constexpr std::int64_t kUsualAgeSeconds = 3600;
constexpr std::int64_t kNanoseconds = 1'000'000'000;

std::int64_t NowNs() {
  return std::chrono::duration_cast<std::chrono::nanoseconds>(
             std::chrono::system_clock::now().time_since_epoch())
      .count();
}

// Returns pointers to the texts, followed by a null pointer.
std::vector<char*> Pointers(std::vector<std::string>* texts) {
  std::vector<char*> pointers;
  for (std::string& text : *texts) {
    pointers.push_back(text.data());
  }
  pointers.push_back(nullptr);
  return pointers;
}

// Returns the environment of this process with LC_ALL set to C, as pointers into `texts`.
std::vector<char*> PlainEnvironment(std::vector<std::string>* texts) {
  const std::string locale = "LC_ALL=";
  texts->push_back(locale + "C");
  for (char** entry = environ; *entry != nullptr; ++entry) {
    if (std::string(*entry).compare(0, locale.size(), locale) != 0) {
      texts->emplace_back(*entry);
    }
  }
  return Pointers(texts);
}

pid_t Start(std::vector<std::string> words, const std::string& current_folder,
            const std::string& output, const std::string& errors) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  const int flags = O_WRONLY | O_CREAT | O_TRUNC;
  posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, output.c_str(), flags, 0600);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, errors.c_str(), flags, 0600);
  posix_spawn_file_actions_addchdir_np(&actions, current_folder.c_str());
  std::vector<std::string> environment;
  const std::vector<char*> entries = PlainEnvironment(&environment);
  const std::vector<char*> arguments = Pointers(&words);
  pid_t process = -1;
  const int failed =
      posix_spawnp(&process, arguments[0], &actions, nullptr, arguments.data(), entries.data());
  posix_spawn_file_actions_destroy(&actions);
  if (failed != 0) {
    throw std::runtime_error("test set-up: cannot start " + words[0]);
  }
  return process;
}

int WaitForEnd(pid_t process, int limit_seconds) {
  const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(limit_seconds);
  for (;;) {
    int status = 0;
    const pid_t ended = waitpid(process, &status, WNOHANG);
    if (ended == process) {
      return WIFEXITED(status) ? WEXITSTATUS(status) : kSignalBase + WTERMSIG(status);
    }
    if (ended < 0 && errno != EINTR) {
      throw std::runtime_error("test set-up: cannot wait for the program");
    }
    if (std::chrono::steady_clock::now() > limit) {
      kill(process, SIGKILL);
      waitpid(process, &status, 0);
      return -1;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
}

// Returns the program to test: the one that MORVEX_CLI names, or the one built with these tests.
std::string BuiltProgram() {
  const char* named = std::getenv("MORVEX_CLI");
  return named == nullptr ? MORVEX_CLI : named;
}

// Returns the command line in MORVEX_UNDER, split at blanks: a program that runs the tested program
// (such as valgrind) and its options.
std::vector<std::string> Under() {
  const char* words = std::getenv("MORVEX_UNDER");
  std::istringstream text(words == nullptr ? "" : words);
  return {std::istream_iterator<std::string>(text), std::istream_iterator<std::string>()};
}

std::string MakeTemporaryFolder() {
  const std::string base = std::filesystem::canonical(std::filesystem::temp_directory_path());
  std::string pattern = base + "/whole_run_XXXXXX";
  if (mkdtemp(pattern.data()) == nullptr) {
    throw std::runtime_error("test set-up: cannot make a folder in " + base);
  }
  return pattern;
}

}  // namespace

ProgramResult RunProgram(const std::string& executable, const std::vector<std::string>& arguments,
                         const std::string& current_folder, int limit_seconds) {
  const std::string place = MakeTemporaryFolder();
  const std::string output = place + "/output";
  const std::string errors = place + "/errors";
  std::vector<std::string> words = Under();
  words.push_back(executable);
  words.insert(words.end(), arguments.begin(), arguments.end());
  const pid_t process = Start(std::move(words), current_folder, output, errors);
  ProgramResult result;
  result.status = WaitForEnd(process, limit_seconds);
  result.output = ReadWholeFile(output);
  result.errors = ReadWholeFile(errors);
  std::filesystem::remove_all(place);
  return result;
}

Scene::Scene(const std::string& executable_name)
    : executable_name_(executable_name), root_(MakeTemporaryFolder()) {
  MakeFolders(program_folder());
  MakeFolders(work());
  std::filesystem::copy_file(BuiltProgram(), program_folder() + "/" + executable_name_);
}

Scene::~Scene() {
  if (!keep_) {
    std::error_code ignored;
    std::filesystem::remove_all(root_, ignored);
  }
}

void Scene::Write(const std::string& name, std::string_view bytes) const {
  MakeFolders(ParentPath(At(name)));
  WriteWholeFile(At(name), bytes);
  SetModified(At(name), NowNs() - kUsualAgeSeconds * kNanoseconds);
}

bool Scene::Exists(const std::string& name) const {
  return std::filesystem::exists(std::filesystem::symlink_status(At(name)));
}

std::vector<std::string> Scene::ProgramFolderNames() const {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(program_folder())) {
    if (entry.path().filename() != executable_name_) {
      names.push_back(entry.path().filename());
    }
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::string Scene::RunLog() const {
  const std::string path = program_folder() + "/Morvex.log";
  return std::filesystem::exists(path) ? ReadWholeFile(path) : std::string();
}

ProgramResult Scene::Run(const std::vector<std::string>& arguments) const {
  return RunProgram(program_folder() + "/" + executable_name_, arguments, work(), kLimitSeconds);
}

RunInput Scene::Input(const std::string& settings_name) const {
  RunInput input;
  input.disk = Disk::Snapshot(work());
  input.current_folder = work();
  input.settings_bytes = Read(settings_name);
  input.settings_path = At(settings_name);
  input.executable_name = executable_name_;
  input.armed_ns = NowNs();
  return input;
}

std::string UsualSettings(const std::string& source, const std::string& target,
                          const std::string& list) {
  return source + "\r\n" + target + "\r\n" + list + "\r\nlog=1\r\nsep=|\r\njok=*\r\n1.txt\r\n";
}

std::string WithoutWarnings(const std::string& errors) {
  std::istringstream lines(errors);
  std::string rest;
  for (std::string line; std::getline(lines, line);) {
    const std::size_t mark = line.find(": warning: ");
    const bool of_the_list = line.find(": warning: no left text holds the wildcard") == mark;
    const bool is_warning = mark != std::string::npos && mark > 0 &&
                            (line.starts_with("morvex-cli: ") || of_the_list ||
                             std::isdigit(static_cast<unsigned char>(line[mark - 1])) != 0);
    if (!is_warning) rest += line + "\n";
  }
  return rest;
}

}  // namespace morvex::whole_run
