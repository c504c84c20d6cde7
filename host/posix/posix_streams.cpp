// Source files are read, and work files are written, at an explicit offset. Neither keeps a
// position, so blocks may come in any order.
#include "host/posix/posix_streams.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "host/posix/posix_calls.h"
#include "host/posix/posix_claim.h"
#include "host/posix/posix_copy.h"
#include "host/posix/posix_descriptor.h"

namespace morvex::posix {
namespace {

// Files of at most this size are read in one call, so advice on reading ahead is useless.
constexpr off_t kWorthAdvice = off_t{128} << 10;

// After this many bytes of a file the write-behind thread writes the rest.
constexpr std::uint64_t kWorthWriteBehind = std::uint64_t{512} << 10;

class PosixInputFile : public InputFile {
 public:
  // `opened` is the file's status when it was opened. The size in `opened` is 0 for files whose
  // contents the system makes up as they are read.
  PosixInputFile(Descriptor file, const struct stat& opened)
      : file_(std::move(file)), opened_(opened) {}

  Result<std::size_t> ReadAt(std::uint64_t offset, char* into, std::size_t size) override {
    // The size is known, so no read call is needed to find the end of the file.
    const auto known_size = static_cast<std::uint64_t>(opened_.st_size);
    if (known_size > 0) {
      if (offset >= known_size) return std::size_t{0};
      size = static_cast<std::size_t>(std::min<std::uint64_t>(size, known_size - offset));
    }
    const Transfer read = ReadAllAt(file_.Get(), offset, into, size);
    if (read.code != 0) return ErrorFromCode(read.code, Missing::kFile);
    return read.done;
  }

  Result<bool> HasChanged() override {
    struct stat now {};
    if (fstat(file_.Get(), &now) != 0) return LastError(Missing::kFile);
    return !IsUnchanged(opened_, now);
  }

 private:
  Descriptor file_;
  struct stat opened_;
};

// The first kWorthWriteBehind bytes are written directly, later ones by the write-behind thread.
class PosixWorkFile : public WorkFile {
 public:
  PosixWorkFile(const std::string& path, std::shared_ptr<WriteBehind> behind)
      : WorkFile(path), behind_(std::move(behind)) {}
  ~PosixWorkFile() override { EndWriteBehind(); }

  // Creates and claims the file. Call it once, before the other functions.
  ErrorNumber Create(mode_t permissions);

  ErrorNumber WriteAt(std::uint64_t offset, std::string_view bytes) override {
    return ErrorFromCode(Write(offset, bytes), Missing::kFile);
  }

  ErrorNumber Close() override {
    const int code = EndWriteBehind();
    const int close_code = file_.Close();
    return ErrorFromCode(code != 0 ? code : close_code, Missing::kFile);
  }

  ErrorNumber CopyTo(const std::string& to) override {
    return Guarded([&] { return CopyWholeFile(path(), to, {}, {}, KeepClaim(claim_)); });
  }

  ErrorNumber MoveTo(const std::string& to, const KeepGoing& keep_going) override {
    return EndClaimAfter([&] { return MoveWholeFile(path(), to, keep_going, KeepClaim(claim_)); });
  }

  ErrorNumber MoveToFreeName(const std::string& to) override {
    return EndClaimAfter([&] { return MoveFileToFreeName(path(), to); });
  }

  ErrorNumber Discard() override {
    return EndClaimAfter([&] { return DeleteClaimed(path()); });
  }

 private:
  int Write(std::uint64_t offset, std::string_view bytes);
  int EndWriteBehind();
  // Runs `call` and returns its result. If the call succeeds, the claim ends.
  template <class Call>
  ErrorNumber EndClaimAfter(Call call) {
    const ErrorNumber error = Guarded(call);
    if (error == ErrorNumber::kNone) claim_.Close();
    return error;
  }

  Descriptor file_;                      // for writing; open until Close
  Descriptor claim_;                     // the same file; open until the file is moved or discarded
  std::shared_ptr<WriteBehind> behind_;  // null: everything is written directly
  bool is_behind_ = false;
  std::uint64_t written_directly_ = 0;  // bytes
};

int PosixWorkFile::Write(std::uint64_t offset, std::string_view bytes) {
  if (is_behind_) return behind_->Write(offset, bytes);
  if (written_directly_ >= kWorthWriteBehind && behind_ != nullptr) {
    is_behind_ = behind_->Begin(file_.Get());
    if (is_behind_) return behind_->Write(offset, bytes);
    behind_ = nullptr;
  }
  written_directly_ += bytes.size();
  return WriteAllAt(file_.Get(), offset, bytes);
}

int PosixWorkFile::EndWriteBehind() {
  if (!is_behind_) return 0;
  is_behind_ = false;
  return behind_->Finish();
}

// Sets the permission bits of a new file, because the process's mask or the folder's rules may have
// removed some. Returns 0 or an error code. A file system that stores no permission bits reports an
// error; this counts as success if the file has no bits beyond `permissions`.
int SetExactBits(int file, mode_t permissions) {
  struct stat status {};
  const bool known = fstat(file, &status) == 0;
  const mode_t bits = status.st_mode & kPermissionBits;
  if (known && bits == permissions) return 0;
  if (fchmod(file, permissions) == 0) return 0;
  const int code = errno;
  return known && (bits & ~permissions) == 0 ? 0 : code;
}

ErrorNumber PosixWorkFile::Create(mode_t permissions) {
  const Reach at(path());
  if (!at.Found()) return LastError(Missing::kPath);
  file_ = CreateClaimed(at.Folder(), at.Name(), permissions);
  if (!file_.IsOpen()) return LastError(Missing::kPath);
  int code = SetExactBits(file_.Get(), permissions);
  if (code == 0) {
    claim_ = KeepClaim(file_);
    if (!claim_.IsOpen()) code = errno;
  }
  if (code == 0) return ErrorNumber::kNone;
  unlinkat(at.Folder(), at.Name(), 0);
  file_.Close();
  return ErrorFromCode(code, Missing::kPath);
}

}  // namespace

Result<std::unique_ptr<InputFile>> OpenInput(const std::string& path, bool looked_up) {
  struct stat status {};
  const auto open = looked_up ? OpenLookedUp : OpenOrdinary;
  Result<Descriptor> file = open(path, O_RDONLY, Missing::kFile, &status);
  if (!file) return file.error;
  if (status.st_size > kWorthAdvice) posix_fadvise(file.value.Get(), 0, 0, POSIX_FADV_SEQUENTIAL);
  return std::unique_ptr<InputFile>(
      std::make_unique<PosixInputFile>(std::move(file.value), status));
}

Result<std::unique_ptr<WorkFile>> CreateWorkFile(const std::string& path, std::uint32_t permissions,
                                                 std::shared_ptr<WriteBehind> behind) {
  auto file = std::make_unique<PosixWorkFile>(path, std::move(behind));
  const ErrorNumber error = file->Create(static_cast<mode_t>(permissions) & kPermissionBits);
  if (error != ErrorNumber::kNone) return error;
  return std::unique_ptr<WorkFile>(std::move(file));
}

}  // namespace morvex::posix
