// A file service that passes its calls on to another file service, but makes the N-th call fail, or
// every call from the N-th on. Calls on open files count too.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "core/host/file_service.h"

namespace morvex::test {

enum class FaultKind {
  kError,       // any call: does nothing but return the error
  kShortRead,   // ReadAt: returns half of the bytes, at least one
  kShortWrite,  // WriteAt and AppendToFile: write half of the bytes and return the error
};

struct Fault {
  FaultKind kind = FaultKind::kError;
  int call = 0;  // from 1, counting the calls that `kind` can hit; 0: no call fails
  ErrorNumber error = ErrorNumber::kNone;
  bool from_then_on = false;
};

// A call that was made to fail: its name ("LookUpFile", "ReadAt", ...) and its path; for a call
// with two paths the second path.
struct FailedCall {
  std::string name;
  std::string path;
};

class FailingFiles : public FileService {
 public:
  // `files` must outlive this object, and this object must outlive the files that it opened.
  explicit FailingFiles(FileService& files) : files_(files) {}

  // Sets the fault and counts calls from 0 again.
  void Set(const Fault& fault);

  const std::vector<FailedCall>& failed() const { return failed_; }
  bool HasFailed(const std::string& name) const;
  // The first failed calls, separated by commas, for a test's failure message.
  std::string Description() const;

  char Separator() const override { return files_.Separator(); }
  bool IsSameName(const std::string& one, const std::string& other) const override {
    return files_.IsSameName(one, other);
  }
  Result<FileInfo> LookUpFile(const std::string& path) override;
  Result<FolderInfo> LookUpFolder(const std::string& path) override;
  Result<std::vector<FolderEntry>> ListFolder(const std::string& path) override;
  Result<std::string> LinkText(const std::string& path) override;
  Result<std::string> RealPath(const std::string& path) override;
  Result<DriveSpace> LookUpDrive(const std::string& path) override;
  ErrorNumber CreateFolder(const std::string& path) override;
  ErrorNumber CreateFolderLike(const std::string& path, const FolderInfo& like) override;
  ErrorNumber CopyFile(const std::string& from, const std::string& to,
                       const KeepGoing& keep_going) override;
  ErrorNumber MoveFile(const std::string& from, const std::string& to,
                       const KeepGoing& keep_going) override;
  ErrorNumber MoveToFreeName(const std::string& from, const std::string& to) override;
  ErrorNumber DeleteFile(const std::string& path) override;
  Result<std::unique_ptr<InputFile>> OpenForReading(const std::string& path) override;
  Result<std::unique_ptr<WorkFile>> CreateWorkFile(const std::string& path,
                                                   std::uint32_t permissions) override;
  ErrorNumber AppendToFile(const std::string& path, std::string_view bytes) override;
  ErrorNumber ReplaceFile(const std::string& path, std::string_view bytes) override;

 private:
  friend class FailingInput;
  friend class FailingWorkFile;

  // Counts the call; returns the error if it must fail, else kNone.
  ErrorNumber Ask(const char* name, const std::string& path);
  // Counts the call; true if it must be a short read or write of this kind.
  bool IsShort(FaultKind kind, const char* name, const std::string& path);
  // Counts the call; true if the fault hits it.
  bool Counts(const char* name, const std::string& path);

  FileService& files_;
  Fault fault_;
  int calls_ = 0;
  std::vector<FailedCall> failed_;
};

}  // namespace morvex::test
