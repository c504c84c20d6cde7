// Reading and writing at a given place of a file. Neither kind keeps a position, so the core's
// blocks can be taken in any order.
#include "host/windows/windows_streams.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "host/windows/windows_claim.h"
#include "host/windows/windows_paths.h"

namespace morvex::windows {
namespace {

class WindowsInputFile : public InputFile {
 public:
  WindowsInputFile(Handle file, const Status& opened) : file_(std::move(file)), opened_(opened) {}

  Result<std::size_t> ReadAt(std::uint64_t offset, char* into, std::size_t size) override {
    const Transfer read = ReadAllAt(file_.Get(), offset, into, size);
    if (read.code != 0) return ErrorFromCode(read.code, Missing::kFile);
    return read.done;
  }

  Result<bool> HasChanged() override {
    Status now;
    if (!StatusOf(file_, now)) return LastError(Missing::kFile);
    return !IsUnchanged(opened_, now);
  }

 private:
  Handle file_;
  Status opened_;
};

class WindowsOutputFile : public OutputFile {
 public:
  explicit WindowsOutputFile(std::shared_ptr<Handle> file) : file_(std::move(file)) {}

  ErrorNumber WriteAt(std::uint64_t offset, std::string_view bytes) override {
    if (file_ == nullptr) return ErrorNumber::kBadFileName;
    return ErrorFromCode(WriteAllAt(file_->Get(), offset, bytes), Missing::kFile);
  }

  // Writes are never delayed, so there is no error left to tell.
  ErrorNumber Close() override {
    file_ = nullptr;
    return ErrorNumber::kNone;
  }

 private:
  std::shared_ptr<Handle> file_;
};

}  // namespace

Result<std::unique_ptr<InputFile>> OpenInput(const std::string& path) {
  const Result<std::wstring> file = SystemPath(path, Missing::kFile);
  if (!file) return file.error;
  Status opened;
  Result<Handle> handle =
      OpenOrdinary(file.value, GENERIC_READ, ErrorNumber::kFileNotFound, &opened);
  if (!handle) return handle.error;
  return std::unique_ptr<InputFile>(
      std::make_unique<WindowsInputFile>(std::move(handle.value), opened));
}

Result<std::unique_ptr<OutputFile>> CreateOutput(const std::string& path, std::uint32_t permissions,
                                                 std::shared_ptr<Handle>& claim) {
  const Result<std::wstring> file = SystemPath(path, Missing::kFile);
  if (!file) return file.error;
  Handle made = CreateClaimed(file.value, permissions);
  if (!made.IsOpen()) return LastError(Missing::kPath);
  claim = std::make_shared<Handle>(std::move(made));
  return std::unique_ptr<OutputFile>(std::make_unique<WindowsOutputFile>(claim));
}

}  // namespace morvex::windows
