// Reading and writing at a given place of a file. Neither kind keeps a position, so the core's
// blocks can be taken in any order.
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
#include "host/posix/posix_descriptor.h"

namespace morvex::posix {
namespace {

// Smaller files are read whole at once.
constexpr off_t kWorthAdvice = off_t{128} << 10;

// So many bytes of a file are written before a thread is asked to write the rest.
constexpr std::uint64_t kWorthWriteBehind = std::uint64_t{512} << 10;

class PosixInputFile : public InputFile {
 public:
  // `opened` is the file's status when it was opened; files that are made as they are read have the
  // size 0.
  PosixInputFile(Descriptor file, const struct stat& opened)
      : file_(std::move(file)), opened_(opened) {}

  Result<std::size_t> ReadAt(std::uint64_t offset, char* into, std::size_t size) override {
    // A file that is read to its known size needs no further call to see that it ends there.
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

// A file that is still short is written at once. What follows is written behind, as long as it fits
// into the offsets that a file can have.
class PosixOutputFile : public OutputFile {
 public:
  explicit PosixOutputFile(std::shared_ptr<WriteBehind> behind) : behind_(std::move(behind)) {}
  ~PosixOutputFile() override { EndWriteBehind(); }

  ErrorNumber Create(const std::string& path, mode_t permissions, Descriptor* claim);

  ErrorNumber WriteAt(std::uint64_t offset, std::string_view bytes) override {
    return ErrorFromCode(Write(offset, bytes), Missing::kFile);
  }

  ErrorNumber Close() override {
    const int code = EndWriteBehind();
    const int close_code = file_.Close();
    return ErrorFromCode(code != 0 ? code : close_code, Missing::kFile);
  }

 private:
  int Write(std::uint64_t offset, std::string_view bytes);
  int EndWriteBehind();

  Descriptor file_;
  std::shared_ptr<WriteBehind> behind_;  // null: everything is written at once
  bool is_behind_ = false;
  std::uint64_t taken_ = 0;  // bytes, before writing behind begins
};

int PosixOutputFile::Write(std::uint64_t offset, std::string_view bytes) {
  if (is_behind_) return behind_->Write(offset, bytes);
  if (taken_ >= kWorthWriteBehind && behind_ != nullptr) {
    is_behind_ = behind_->Begin(file_.Get());
    if (is_behind_) return behind_->Write(offset, bytes);
    behind_ = nullptr;
  }
  taken_ += bytes.size();
  return WriteAllAt(file_.Get(), offset, bytes);
}

int PosixOutputFile::EndWriteBehind() {
  if (!is_behind_) return 0;
  is_behind_ = false;
  return behind_->Finish();
}

// Gives a new file the bits that the process's mask or the folder's rules took from it. A file
// system that keeps no bits of its own is no error as long as the file is not open to more people
// than it should be.
int SetExactBits(int file, mode_t permissions) {
  struct stat status {};
  const bool known = fstat(file, &status) == 0;
  const mode_t bits = status.st_mode & kPermissionBits;
  if (known && bits == permissions) return 0;
  if (fchmod(file, permissions) == 0) return 0;
  const int code = errno;
  return known && (bits & ~permissions) == 0 ? 0 : code;
}

ErrorNumber PosixOutputFile::Create(const std::string& path, mode_t permissions,
                                    Descriptor* claim) {
  const Reach at(path);
  if (!at.Found()) return LastError(Missing::kPath);
  file_ = CreateClaimed(at.Folder(), at.Name(), permissions);
  if (!file_.IsOpen()) return LastError(Missing::kPath);
  int code = SetExactBits(file_.Get(), permissions);
  if (code == 0 && claim != nullptr) {
    *claim = KeepClaim(file_);
    if (!claim->IsOpen()) code = errno;
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

Result<std::unique_ptr<OutputFile>> CreateOutput(const std::string& path, std::uint32_t permissions,
                                                 std::shared_ptr<WriteBehind> behind,
                                                 Descriptor* claim) {
  auto file = std::make_unique<PosixOutputFile>(std::move(behind));
  const ErrorNumber error =
      file->Create(path, static_cast<mode_t>(permissions) & kPermissionBits, claim);
  if (error != ErrorNumber::kNone) return error;
  return std::unique_ptr<OutputFile>(std::move(file));
}

}  // namespace morvex::posix
