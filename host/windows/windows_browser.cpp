// The browser is started by its full path, so that no program of the same name in another folder is
// started instead. The browser's command line is "explorer " and the file's path.
#include "host/windows/windows_browser.h"

#include <optional>

#include "host/windows/windows_api.h"
#include "host/windows/windows_code_page.h"
#include "host/windows/windows_paths.h"

namespace morvex::windows {
namespace {

std::wstring SystemFolder() {
  std::wstring folder(MAX_PATH, L'\0');
  const UINT length = GetSystemWindowsDirectoryW(folder.data(), MAX_PATH);
  folder.resize(length < MAX_PATH ? length : 0);
  return folder;
}

}  // namespace

void StartMinimised(const std::wstring& program, std::wstring command) {
  STARTUPINFOW start{};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESHOWWINDOW;
  start.wShowWindow = SW_SHOWMINIMIZED;
  PROCESS_INFORMATION started{};
  if (CreateProcessW(program.c_str(), command.data(), nullptr, nullptr, FALSE,
                     CREATE_DEFAULT_ERROR_MODE, nullptr, nullptr, &start, &started) == 0) {
    return;
  }
  CloseHandle(started.hThread);
  CloseHandle(started.hProcess);
}

void OpenBrowserOn(const std::string& file) {
  const std::optional<std::wstring> path = SystemCodePage().Wide(file);
  const std::wstring folder = SystemFolder();
  if (!path || folder.empty()) return;
  StartMinimised(Below(folder, L"explorer.exe"), L"explorer " + *path);
}

}  // namespace morvex::windows
