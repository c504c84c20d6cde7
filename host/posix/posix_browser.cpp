// A child process in a session of its own starts the file browser and ends at once. So this process
// need not wait for the browser, an interrupt typed at the terminal does not reach the browser, and
// the browser outlives this process.
#include "host/posix/posix_browser.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "host/posix/posix_paths.h"

extern char** environ;

namespace morvex::posix {
namespace {

constexpr const char* kOpener = "xdg-open";

// How kOpener is started: its standard streams are /dev/null, no signal is blocked, and the signals
// that this program handles or ignores have their default effect.
class StartSettings {
 public:
  StartSettings();
  StartSettings(const StartSettings&) = delete;
  StartSettings& operator=(const StartSettings&) = delete;
  ~StartSettings();

  bool AreReady() const { return ready_; }
  const posix_spawn_file_actions_t* Files() const { return &files_; }
  const posix_spawnattr_t* Attributes() const { return &attributes_; }

 private:
  bool SetUp();

  posix_spawn_file_actions_t files_;
  posix_spawnattr_t attributes_;
  bool has_files_;
  bool has_attributes_;
  bool ready_;
};

StartSettings::StartSettings()
    : has_files_(posix_spawn_file_actions_init(&files_) == 0),
      has_attributes_(posix_spawnattr_init(&attributes_) == 0),
      ready_(has_files_ && has_attributes_ && SetUp()) {}

StartSettings::~StartSettings() {
  if (has_files_) posix_spawn_file_actions_destroy(&files_);
  if (has_attributes_) posix_spawnattr_destroy(&attributes_);
}

bool StartSettings::SetUp() {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    const int code = posix_spawn_file_actions_addopen(&files_, stream, "/dev/null", O_RDWR, 0);
    if (code != 0) return false;
  }
  sigset_t usual;
  sigemptyset(&usual);
  for (const int number : {SIGXFSZ, SIGINT, SIGTERM, SIGHUP, SIGPIPE}) sigaddset(&usual, number);
  sigset_t none;
  sigemptyset(&none);
  return posix_spawnattr_setsigdefault(&attributes_, &usual) == 0 &&
         posix_spawnattr_setsigmask(&attributes_, &none) == 0 &&
         posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK) ==
             0;
}

// Returns the folder of `file` as an absolute path, which kOpener cannot take for an option.
Result<std::string> FolderOf(const std::string& file) {
  const ErrorNumber error = CheckPath(file, Missing::kPath);
  if (error != ErrorNumber::kNone) return error;
  return AbsolutePath(SplitPath(file).folder);
}

}  // namespace

void OpenFolderOf(const std::string& file) {
  Result<std::string> folder = FolderOf(file);
  const StartSettings settings;
  if (!folder || !settings.AreReady()) return;
  std::string opener = kOpener;
  const std::array<char*, 3> arguments = {opener.data(), folder.value.data(), nullptr};

  const pid_t child = fork();
  if (child < 0) return;
  if (child == 0) {
    setsid();
    pid_t browser = 0;
    posix_spawnp(&browser, kOpener, settings.Files(), settings.Attributes(), arguments.data(),
                 environ);
    _exit(0);
  }
  while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
  }
}

}  // namespace morvex::posix
