// Each call is guarded against exceptions. Look-ups are done here; each longer task has its own
// file.
#include "host/windows/windows_files.h"

#include <optional>
#include <utility>

#include "host/windows/windows_code_page.h"
#include "host/windows/windows_copy.h"
#include "host/windows/windows_errors.h"
#include "host/windows/windows_listing.h"
#include "host/windows/windows_paths.h"
#include "host/windows/windows_replace.h"
#include "host/windows/windows_streams.h"
#include "host/windows/windows_time.h"

namespace morvex {
namespace {

using windows::ErrorFromCode;
using windows::Guarded;
using windows::Handle;
using windows::LastError;
using windows::Missing;

std::string Bytes(const std::wstring& text) { return windows::SystemCodePage().Bytes(text); }

Result<FileInfo> FindFile(const std::string& path) {
  const Result<std::wstring> full = windows::FullPath(path, Missing::kFile);
  if (!full) return full.error;
  const Handle file = windows::OpenExisting(windows::LongForm(full.value), FILE_READ_ATTRIBUTES,
                                            windows::kShareAll);
  if (!file.IsOpen()) return LastError(Missing::kFile);
  if (GetFileType(file.Get()) != FILE_TYPE_DISK) return ErrorNumber::kFileNotFound;
  windows::Status status;
  if (!StatusOf(file, status)) return LastError(Missing::kFile);
  if (status.IsFolder()) return ErrorNumber::kFileNotFound;
  const windows::PathParts parts = windows::SplitPath(full.value);
  FileInfo info;
  info.path = Bytes(full.value);
  info.folder = Bytes(parts.folder);
  info.name = Bytes(parts.name);
  info.size = status.size;
  info.modified = windows::ToWallTime(status.modified);
  info.permissions = status.Permissions();
  info.identity = status.identity;
  return info;
}

Result<FolderInfo> FindFolder(const std::string& path) {
  const Result<std::wstring> full = windows::FullPath(path, Missing::kPath);
  if (!full) return full.error;
  const std::wstring folder = windows::LongForm(full.value);
  windows::Status status;
  const windows::Code code = windows::FindStatus(folder, status);
  if (code != 0) return ErrorFromCode(code, Missing::kPath);
  if (!status.IsFolder()) return ErrorNumber::kPathNotFound;
  FolderInfo info;
  info.path = Bytes(full.value);
  info.identity = status.identity;
  info.is_link = windows::IsLink(folder);
  info.permissions = status.Permissions();
  return info;
}

Result<std::string> FindRealPath(const std::string& path) {
  const Result<std::wstring> place = windows::SystemPath(path, Missing::kPath);
  if (!place) return place.error;
  const Result<std::wstring> end = windows::FollowLinks(place.value);
  if (!end) return end.error;
  return Bytes(windows::WithoutPrefix(end.value));
}

Result<DriveSpace> MeasureDrive(const std::string& path) {
  const Result<std::wstring> place = windows::SystemPath(path, Missing::kPath);
  if (!place) return place.error;
  windows::Status status;
  const windows::Code code = windows::FindStatus(place.value, status);
  if (code != 0) return ErrorFromCode(code, Missing::kPath);
  const std::wstring folder =
      status.IsFolder() ? place.value : windows::SplitPath(place.value).folder;
  ULARGE_INTEGER available{};
  ULARGE_INTEGER total{};
  // The system accepts a network path only with a separator at its end.
  if (GetDiskFreeSpaceExW(windows::Below(folder, L"").c_str(), &available, &total, nullptr) == 0) {
    return LastError(Missing::kPath);
  }
  return DriveSpace{total.QuadPart, available.QuadPart};
}

ErrorNumber MakeOneFolder(const std::string& path) {
  const Result<std::wstring> place = windows::SystemPath(path, Missing::kPath);
  if (!place) return place.error;
  if (CreateDirectoryW(place.value.c_str(), nullptr) != 0) return ErrorNumber::kNone;
  const windows::Code code = GetLastError();
  // If the path is a drive's root, the system reports "access denied".
  const bool taken = code == ERROR_ACCESS_DENIED &&
                     GetFileAttributesW(place.value.c_str()) != INVALID_FILE_ATTRIBUTES;
  return taken ? ErrorNumber::kFileAlreadyExists : ErrorFromCode(code, Missing::kPath);
}

}  // namespace

WindowsFileService::WindowsFileService() { SetErrorMode(GetErrorMode() | SEM_FAILCRITICALERRORS); }

bool WindowsFileService::IsSameName(const std::string& one, const std::string& other) const {
  // In the code page every letter takes one byte in either case, so equal names have equal sizes.
  if (one.size() != other.size()) return false;
  const std::optional<std::wstring> first = windows::SystemCodePage().Wide(one);
  const std::optional<std::wstring> second = windows::SystemCodePage().Wide(other);
  if (!first || !second) return one == other;
  return windows::IsSameName(*first, *second);
}

Result<FileInfo> WindowsFileService::LookUpFile(const std::string& path) {
  return Guarded([&] { return FindFile(path); });
}

Result<FolderInfo> WindowsFileService::LookUpFolder(const std::string& path) {
  return Guarded([&] { return FindFolder(path); });
}

Result<std::vector<FolderEntry>> WindowsFileService::ListFolder(const std::string& path) {
  return Guarded([&] { return windows::ReadFolder(path); });
}

Result<std::string> WindowsFileService::LinkText(const std::string& path) {
  return Guarded([&] { return windows::ReadLinkText(path); });
}

Result<std::string> WindowsFileService::RealPath(const std::string& path) {
  return Guarded([&] { return FindRealPath(path); });
}

Result<DriveSpace> WindowsFileService::LookUpDrive(const std::string& path) {
  return Guarded([&] { return MeasureDrive(path); });
}

ErrorNumber WindowsFileService::CreateFolder(const std::string& path) {
  return Guarded([&] { return MakeOneFolder(path); });
}

ErrorNumber WindowsFileService::CopyFile(const std::string& from, const std::string& to,
                                         const KeepGoing& keep_going) {
  return Guarded([&] { return windows::CopyWholeFile(from, to, keep_going); });
}

ErrorNumber WindowsFileService::MoveFile(const std::string& from, const std::string& to,
                                         const KeepGoing& keep_going) {
  return Guarded([&] { return windows::MoveWholeFile(from, to, keep_going); });
}

ErrorNumber WindowsFileService::MoveToFreeName(const std::string& from, const std::string& to) {
  return Guarded([&] { return windows::MoveFileToFreeName(from, to); });
}

ErrorNumber WindowsFileService::DeleteFile(const std::string& path) {
  return Guarded([&] { return windows::DeleteOneFile(path); });
}

Result<std::unique_ptr<InputFile>> WindowsFileService::OpenForReading(const std::string& path) {
  return Guarded([&] { return windows::OpenInput(path); });
}

Result<std::unique_ptr<WorkFile>> WindowsFileService::CreateWorkFile(const std::string& path,
                                                                     std::uint32_t permissions) {
  return Guarded([&] { return windows::CreateWorkFile(path, permissions); });
}

ErrorNumber WindowsFileService::AppendToFile(const std::string& path, std::string_view bytes) {
  return Guarded([&] { return windows::AppendRecord(path, bytes); });
}

ErrorNumber WindowsFileService::ReplaceFile(const std::string& path, std::string_view bytes) {
  return Guarded([&] { return windows::ReplaceContent(path, bytes); });
}

}  // namespace morvex
