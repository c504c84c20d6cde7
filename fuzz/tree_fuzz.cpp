// Fuzz target: a small tree with its list and its settings, made of the fuzzer's bytes, goes
// through a whole run. Without faults, all files outside the program's folder and the exit status
// must be those that a model of a run predicts; the model shares no code with the program. If a
// call fails, every file must have its predicted or its old contents, and no file may be gone, work
// files excepted.
#include <map>

#include "core/run/start_up.h"
#include "fuzz/fuzz_bytes.h"
#include "tests/support/failing_files.h"
#include "tests/support/test_program.h"
#include "tests/whole_run/run_model.h"

namespace morvex::test {
namespace {

constexpr std::int64_t kArmed = 1'000'000'000;
constexpr const char* kJob = "/job.dat";
constexpr const char* kListPath = "/list";

using Contents = std::map<std::string, std::string>;

// Returns a name, mostly one that a run treats in a special way in some folder.
std::string Name(FuzzBytes& bytes) {
  static const char* const kNames[] = {"a.txt",     "b.txt",      "c.bin",      "x.cle",
                                       "article",   "Morvex.txt", "tijdel.enc", "d.tar.txt",
                                       "page.html", "Morvex",     "RECYCLED",   "_restore",
                                       "sub",       "deep",       ".txt",       "morvex-cli.exe"};
  const std::uint8_t which = bytes.Next();
  if (which < 0xE0) return kNames[which % 16];
  std::string name = bytes.Take(1 + which % 8);
  for (char& byte : name) {
    if (byte == '/' || byte == '\0') byte = '_';
  }
  return name.empty() || name == "." || name == ".." ? "n" : name;
}

std::string Content(FuzzBytes& bytes) {
  static const std::string kLetters = "aab*cX|";
  std::string content = bytes.Take(bytes.Next() % 48);
  for (char& byte : content) byte = kLetters[static_cast<std::uint8_t>(byte) % kLetters.size()];
  return content;
}

// The same tree in two forms: files in memory for the program, and a disk for the model.
class Scene {
 public:
  explicit Scene(FuzzBytes& bytes) {
    input_.disk.MakeFolder("");
    AddFolder("/program");
    AddFolder("/s");
    AddFolder("/t");
    const std::uint8_t shape = bytes.Next();
    const std::string target = shape % 8 == 0 ? "/s/sub" : "/t";
    if (shape % 8 == 0) AddFolder("/s/sub");
    std::string list;
    for (int rows = 1 + bytes.Next() % 4; rows > 0; --rows) {
      list += Content(bytes) + "|" + Content(bytes) + "\r\n";
    }
    AddFile(kListPath, list + "|||\r\n", 0);
    std::string settings = "/s\r\n" + target + "\r\n/list\r\nlog=1\r\nsep=|\r\njok=";
    settings += shape % 4 == 1 ? "" : "*";
    settings += "\r\n1.txt\r\n";
    if (shape % 2 == 0) settings += "1.cle\r\n0.bin\r\n1.html\r\n";
    AddFile(kJob, settings, 0);
    std::string folder = "/s";
    for (int left = 12; left > 0 && bytes.left() > 0; --left) {
      const std::uint8_t what = bytes.Next();
      if (what % 8 == 7) folder = "/s";
      const std::string path = folder + "/" + Name(bytes);
      if (input_.disk.Find(path) != nullptr) continue;
      if (what % 4 == 0) {
        AddFolder(path);
        folder = path;
      } else {
        AddFile(path, Content(bytes), what % 32 == 5 ? kArmed : what);
      }
    }
    input_.current_folder = "/";
    input_.settings_bytes = settings;
    input_.settings_path = kJob;
    input_.armed_ns = kArmed;
  }

  MemoryFiles& files() { return files_; }
  const whole_run::RunInput& input() const { return input_; }

 private:
  void AddFolder(const std::string& path) {
    files_.AddFolder(path);
    input_.disk.MakeFolder(path);
  }
  void AddFile(const std::string& path, const std::string& bytes, std::int64_t modified) {
    files_.AddFile(path, bytes, WallTime(std::chrono::nanoseconds(modified)));
    whole_run::Node node;
    node.bytes = bytes;
    node.modified_ns = modified;
    node.permissions = 0644;
    input_.disk.PutFile(path, node);
  }

  MemoryFiles files_;
  whole_run::RunInput input_;
};

Contents FilesOf(const whole_run::Disk& disk) {
  Contents contents;
  for (const auto& [path, node] : disk.nodes()) {
    if (node.kind == whole_run::NodeKind::kFile) contents[path] = node.bytes;
  }
  return contents;
}

Contents FilesOf(const MemoryFiles& files) {
  Contents contents;
  for (const std::string& path : files.Below("/")) {
    if (!path.ends_with('/') && !path.starts_with("/program/")) contents[path] = files.Bytes(path);
  }
  return contents;
}

std::string Shown(const Contents& contents) {
  std::string text;
  for (const auto& [path, bytes] : contents) {
    text += "  " + test::Shown(path) + " = " + test::Shown(bytes) + "\n";
  }
  return text;
}

}  // namespace

void FuzzTree(const std::uint8_t* data, std::size_t size) {
  FuzzBytes bytes(data, size);
  const int failing_call = bytes.Next();
  static constexpr ErrorNumber kErrors[] = {ErrorNumber::kDiskFull, ErrorNumber::kDeviceIo,
                                            ErrorNumber::kPermissionDenied,
                                            ErrorNumber::kPathFileAccess};
  const std::uint8_t how = bytes.Next();
  Scene scene(bytes);
  const Contents before = FilesOf(scene.input().disk);
  const whole_run::RunOutcome outcome = whole_run::PredictRun(scene.input());
  const Contents predicted = FilesOf(outcome.disk);

  FailingFiles failing(scene.files());
  FakeSystem system;
  system.now = WallTime(std::chrono::nanoseconds(kArmed));
  system.command_line = std::string("-if ") + kJob;
  ScriptedUser user;
  Program program(Host{failing, system, user});
  if (how % 2 == 1)
    failing.Set({FaultKind::kError, 1 + failing_call, kErrors[how / 2 % 4], how >= 0x80});
  Require(StartUp(program) == ErrorNumber::kNone, "start-up failed");

  const Contents after = FilesOf(scene.files());
  if (failing.failed().empty()) {
    Require(after == predicted, "found:\n" + Shown(after) + "instead of:\n" + Shown(predicted));
    Require(ExitStatus(program) == outcome.exit_status, "another exit status");
    return;
  }
  for (const auto& [path, content] : after) {
    if (path.ends_with("/tijdel.enc")) continue;
    const auto right = predicted.find(path);
    const auto old = before.find(path);
    const bool is_right = right != predicted.end() && content == right->second;
    const bool is_old = old != before.end() && content == old->second;
    Require(is_right || is_old, "wrong: " + test::Shown(path) + " = " + test::Shown(content) +
                                    "\nafter " + failing.Description());
  }
  for (const auto& [path, content] : before) {
    Require(after.contains(path) || path.ends_with("/tijdel.enc"),
            "gone: " + test::Shown(path) + "\nafter " + failing.Description());
  }
}

}  // namespace morvex::test

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  morvex::test::FuzzTree(data, size);
  return 0;
}
