// Source files are read, and work files are written, at an explicit offset. Neither keeps a
// position, so blocks may come in any order.
#include "host/windows/windows_streams.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "host/windows/windows_claim.h"
#include "host/windows/windows_copy.h"
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

// One handle is used for writing and is also the claim.
class WindowsWorkFile : public WorkFile {
 public:
  WindowsWorkFile(const std::string& path, Handle file) : WorkFile(path), file_(std::move(file)) {}

  ErrorNumber WriteAt(std::uint64_t offset, std::string_view bytes) override {
    if (is_closed_) return ErrorNumber::kBadFileName;
    return ErrorFromCode(WriteAllAt(file_.Get(), offset, bytes), Missing::kFile);
  }

  // Writes are never delayed, so there is no error left to report here.
  ErrorNumber Close() override {
    is_closed_ = true;
    return ErrorNumber::kNone;
  }

  ErrorNumber CopyTo(const std::string& to) override {
    return Guarded([&] { return CopyWholeFile(path(), to, {}, &file_); });
  }

  ErrorNumber MoveTo(const std::string& to, const KeepGoing& keep_going) override {
    return EndClaimAfter([&] { return MoveWholeFile(path(), to, keep_going, &file_); });
  }

  ErrorNumber MoveToFreeName(const std::string& to) override {
    return EndClaimAfter([&] { return MoveFileToFreeName(path(), to, &file_); });
  }

  ErrorNumber Discard() override {
    return EndClaimAfter([&] { return DeleteOneFile(path(), &file_); });
  }

 private:
  // Runs `call` and returns its result. If the call succeeds, the claim ends.
  template <class Call>
  ErrorNumber EndClaimAfter(Call call) {
    const ErrorNumber error = Guarded(call);
    if (error == ErrorNumber::kNone) file_.Close();
    return error;
  }

  Handle file_;
  bool is_closed_ = false;
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

Result<std::unique_ptr<WorkFile>> CreateWorkFile(const std::string& path,
                                                 std::uint32_t permissions) {
  const Result<std::wstring> place = SystemPath(path, Missing::kFile);
  if (!place) return place.error;
  Handle file = CreateClaimed(place.value, permissions);
  if (!file.IsOpen()) return LastError(Missing::kPath);
  return std::unique_ptr<WorkFile>(std::make_unique<WindowsWorkFile>(path, std::move(file)));
}

}  // namespace morvex::windows
