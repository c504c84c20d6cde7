#include "tests/support/failing_files.h"

#include <algorithm>
#include <utility>

namespace morvex::test {

class FailingInput : public InputFile {
 public:
  FailingInput(FailingFiles& files, std::string path, std::unique_ptr<InputFile> file)
      : files_(files), path_(std::move(path)), file_(std::move(file)) {}

  Result<bool> HasChanged() override {
    const ErrorNumber error = files_.Ask("HasChanged", path_);
    return error != ErrorNumber::kNone ? error : file_->HasChanged();
  }
  Result<std::size_t> ReadAt(std::uint64_t offset, char* into, std::size_t size) override {
    const ErrorNumber error = files_.Ask("ReadAt", path_);
    if (error != ErrorNumber::kNone) return error;
    const Result<std::size_t> read = file_->ReadAt(offset, into, size);
    if (!read || !files_.IsShort(FaultKind::kShortRead, "ReadAt", path_)) return read;
    return (read.value + 1) / 2;
  }

 private:
  FailingFiles& files_;
  std::string path_;
  std::unique_ptr<InputFile> file_;
};

class FailingWorkFile : public WorkFile {
 public:
  FailingWorkFile(FailingFiles& files, const std::string& path, std::unique_ptr<WorkFile> file)
      : WorkFile(path), files_(files), file_(std::move(file)) {}

  ErrorNumber WriteAt(std::uint64_t offset, std::string_view bytes) override {
    const ErrorNumber error = files_.Ask("WriteAt", path());
    if (error != ErrorNumber::kNone) return error;
    if (!files_.IsShort(FaultKind::kShortWrite, "WriteAt", path())) {
      return file_->WriteAt(offset, bytes);
    }
    file_->WriteAt(offset, bytes.substr(0, bytes.size() / 2));
    return files_.fault_.error;
  }

  // Closes the file even if this call must fail.
  ErrorNumber Close() override {
    const ErrorNumber error = files_.Ask("Close", path());
    const ErrorNumber closing = file_->Close();
    return error != ErrorNumber::kNone ? error : closing;
  }

  ErrorNumber CopyTo(const std::string& to) override {
    const ErrorNumber error = files_.Ask("CopyTo", to);
    return error != ErrorNumber::kNone ? error : file_->CopyTo(to);
  }

  ErrorNumber MoveTo(const std::string& to, const KeepGoing& keep_going) override {
    const ErrorNumber error = files_.Ask("MoveTo", to);
    return error != ErrorNumber::kNone ? error : file_->MoveTo(to, keep_going);
  }

  ErrorNumber MoveToFreeName(const std::string& to) override {
    const ErrorNumber error = files_.Ask("MoveToFreeName", to);
    return error != ErrorNumber::kNone ? error : file_->MoveToFreeName(to);
  }

  ErrorNumber Discard() override {
    const ErrorNumber error = files_.Ask("Discard", path());
    return error != ErrorNumber::kNone ? error : file_->Discard();
  }

 private:
  FailingFiles& files_;
  std::unique_ptr<WorkFile> file_;
};

void FailingFiles::Set(const Fault& fault) {
  fault_ = fault;
  calls_ = 0;
  failed_.clear();
}

bool FailingFiles::HasFailed(const std::string& name) const {
  return std::any_of(failed_.begin(), failed_.end(),
                     [&](const FailedCall& call) { return call.name == name; });
}

std::string FailingFiles::Description() const {
  constexpr std::size_t kMostShown = 4;
  std::string text;
  for (std::size_t i = 0; i < std::min(failed_.size(), kMostShown); ++i) {
    text += (i == 0 ? "" : ", ") + failed_[i].name + " " + failed_[i].path;
  }
  return failed_.size() > kMostShown ? text + ", ..." : text;
}

bool FailingFiles::Counts(const char* name, const std::string& path) {
  ++calls_;
  const bool fails =
      fault_.call > 0 && (fault_.from_then_on ? calls_ >= fault_.call : calls_ == fault_.call);
  if (fails) failed_.push_back({name, path});
  return fails;
}

ErrorNumber FailingFiles::Ask(const char* name, const std::string& path) {
  if (fault_.kind != FaultKind::kError) return ErrorNumber::kNone;
  return Counts(name, path) ? fault_.error : ErrorNumber::kNone;
}

bool FailingFiles::IsShort(FaultKind kind, const char* name, const std::string& path) {
  return fault_.kind == kind && Counts(name, path);
}

Result<FileInfo> FailingFiles::LookUpFile(const std::string& path) {
  const ErrorNumber error = Ask("LookUpFile", path);
  return error != ErrorNumber::kNone ? error : files_.LookUpFile(path);
}

Result<FolderInfo> FailingFiles::LookUpFolder(const std::string& path) {
  const ErrorNumber error = Ask("LookUpFolder", path);
  return error != ErrorNumber::kNone ? error : files_.LookUpFolder(path);
}

Result<std::vector<FolderEntry>> FailingFiles::ListFolder(const std::string& path) {
  const ErrorNumber error = Ask("ListFolder", path);
  return error != ErrorNumber::kNone ? error : files_.ListFolder(path);
}

Result<std::string> FailingFiles::LinkText(const std::string& path) {
  const ErrorNumber error = Ask("LinkText", path);
  return error != ErrorNumber::kNone ? error : files_.LinkText(path);
}

Result<std::string> FailingFiles::RealPath(const std::string& path) {
  const ErrorNumber error = Ask("RealPath", path);
  return error != ErrorNumber::kNone ? error : files_.RealPath(path);
}

Result<DriveSpace> FailingFiles::LookUpDrive(const std::string& path) {
  const ErrorNumber error = Ask("LookUpDrive", path);
  return error != ErrorNumber::kNone ? error : files_.LookUpDrive(path);
}

ErrorNumber FailingFiles::CreateFolder(const std::string& path) {
  const ErrorNumber error = Ask("CreateFolder", path);
  return error != ErrorNumber::kNone ? error : files_.CreateFolder(path);
}

ErrorNumber FailingFiles::CreateFolderLike(const std::string& path, const FolderInfo& like) {
  const ErrorNumber error = Ask("CreateFolder", path);
  return error != ErrorNumber::kNone ? error : files_.CreateFolderLike(path, like);
}

ErrorNumber FailingFiles::CopyFile(const std::string& from, const std::string& to,
                                   const KeepGoing& keep_going) {
  const ErrorNumber error = Ask("CopyFile", to);
  return error != ErrorNumber::kNone ? error : files_.CopyFile(from, to, keep_going);
}

ErrorNumber FailingFiles::MoveFile(const std::string& from, const std::string& to,
                                   const KeepGoing& keep_going) {
  const ErrorNumber error = Ask("MoveFile", to);
  return error != ErrorNumber::kNone ? error : files_.MoveFile(from, to, keep_going);
}

ErrorNumber FailingFiles::MoveToFreeName(const std::string& from, const std::string& to) {
  const ErrorNumber error = Ask("MoveToFreeName", to);
  return error != ErrorNumber::kNone ? error : files_.MoveToFreeName(from, to);
}

ErrorNumber FailingFiles::DeleteFile(const std::string& path) {
  const ErrorNumber error = Ask("DeleteFile", path);
  return error != ErrorNumber::kNone ? error : files_.DeleteFile(path);
}

Result<std::unique_ptr<InputFile>> FailingFiles::OpenForReading(const std::string& path) {
  const ErrorNumber error = Ask("OpenForReading", path);
  if (error != ErrorNumber::kNone) return error;
  Result<std::unique_ptr<InputFile>> file = files_.OpenForReading(path);
  if (!file) return file;
  return std::unique_ptr<InputFile>(
      std::make_unique<FailingInput>(*this, path, std::move(file.value)));
}

Result<std::unique_ptr<WorkFile>> FailingFiles::CreateWorkFile(const std::string& path,
                                                               std::uint32_t permissions) {
  const ErrorNumber error = Ask("CreateWorkFile", path);
  if (error != ErrorNumber::kNone) return error;
  Result<std::unique_ptr<WorkFile>> file = files_.CreateWorkFile(path, permissions);
  if (!file) return file;
  return std::unique_ptr<WorkFile>(
      std::make_unique<FailingWorkFile>(*this, path, std::move(file.value)));
}

ErrorNumber FailingFiles::AppendToFile(const std::string& path, std::string_view bytes) {
  const ErrorNumber error = Ask("AppendToFile", path);
  if (error != ErrorNumber::kNone) return error;
  if (!IsShort(FaultKind::kShortWrite, "AppendToFile", path)) {
    return files_.AppendToFile(path, bytes);
  }
  files_.AppendToFile(path, bytes.substr(0, bytes.size() / 2));
  return fault_.error;
}

ErrorNumber FailingFiles::ReplaceFile(const std::string& path, std::string_view bytes) {
  const ErrorNumber error = Ask("ReplaceFile", path);
  return error != ErrorNumber::kNone ? error : files_.ReplaceFile(path, bytes);
}

}  // namespace morvex::test
