#include "host/windows/windows_system.h"

#include <fcntl.h>
#include <io.h>
#include <shellapi.h>
#include <stdio.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "host/windows/windows_browser.h"
#include "host/windows/windows_code_page.h"
#include "host/windows/windows_paths.h"
#include "host/windows/windows_time.h"

namespace morvex {
namespace {

using windows::SystemCodePage;

std::wstring OwnPath() {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    if (length < path.size()) {
      path.resize(length);
      return windows::WithoutPrefix(path);
    }
    path.resize(path.size() * 2);
  }
}

std::wstring WithoutExtension(std::wstring name) {
  constexpr std::wstring_view kExtension = L".exe";
  if (name.size() <= kExtension.size()) return name;
  const std::wstring end = name.substr(name.size() - kExtension.size());
  const int order = CompareStringOrdinal(end.c_str(), -1, kExtension.data(), -1, TRUE);
  if (order == CSTR_EQUAL) name.resize(name.size() - kExtension.size());
  return name;
}

// Returns the folder's path in the code page. If the page lacks a character of the path, returns
// the path with the short names that the system may have given. If there are no short names, the
// result contains kUnspellable, and the program can store nothing in that folder.
std::string SpelledFolder(const std::wstring& folder) {
  std::string bytes = SystemCodePage().Bytes(folder);
  if (SystemCodePage().Wide(bytes) == folder) return bytes;
  const std::wstring path = windows::LongForm(folder);
  std::wstring shorter(path.size() + MAX_PATH, L'\0');
  const DWORD length =
      GetShortPathNameW(path.c_str(), shorter.data(), static_cast<DWORD>(shorter.size()));
  if (length == 0 || length > shorter.size()) return bytes;
  shorter.resize(length);
  return SystemCodePage().Bytes(windows::WithoutPrefix(shorter));
}

// The process's environment as a list of entries, counted from 1. The entry behind the last entry
// is empty.
class Environment {
 public:
  Environment() : block_(GetEnvironmentStringsW()) {}
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;
  ~Environment() {
    if (block_ != nullptr) FreeEnvironmentStringsW(block_);
  }

  std::wstring_view Entry(int index) const {
    if (block_ == nullptr || index < 1) return {};
    std::wstring_view entry = block_;
    for (int passed = 1; passed < index && !entry.empty(); ++passed) {
      entry = entry.data() + entry.size() + 1;
    }
    return entry;
  }

 private:
  wchar_t* block_;
};

void ShowColours(DWORD stream) {
  DWORD mode = 0;
  void* console = GetStdHandle(stream);
  if (GetConsoleMode(console, &mode) == 0) return;
  SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
}

}  // namespace

namespace windows {

std::vector<std::string> ArgumentsOf(const wchar_t* line) {
  int count = 0;
  wchar_t** list = CommandLineToArgvW(line, &count);
  if (list == nullptr) return {};
  std::vector<std::string> arguments;
  for (int index = 1; index < count; ++index) {
    arguments.push_back(SystemCodePage().Bytes(list[index]));
  }
  LocalFree(list);
  return arguments;
}

}  // namespace windows

WindowsSystemService::WindowsSystemService()
    : console_output_(GetConsoleOutputCP()), console_input_(GetConsoleCP()) {
  for (FILE* stream : {stdin, stdout, stderr}) {
    const int number = _fileno(stream);
    if (number >= 0) _setmode(number, _O_BINARY);
  }
  const windows::PathParts parts = windows::SplitPath(OwnPath());
  program_folder_ = SpelledFolder(parts.folder);
  executable_name_ = SystemCodePage().Bytes(WithoutExtension(parts.name));
  if (console_output_ != 0) SetConsoleOutputCP(SystemCodePage().Number());
  if (console_input_ != 0) SetConsoleCP(SystemCodePage().Number());
  ShowColours(STD_OUTPUT_HANDLE);
  ShowColours(STD_ERROR_HANDLE);
}

WindowsSystemService::~WindowsSystemService() {
  if (console_output_ != 0) SetConsoleOutputCP(console_output_);
  if (console_input_ != 0) SetConsoleCP(console_input_);
}

std::string WindowsSystemService::CommandLineText() {
  std::string text;
  for (const std::string& argument : windows::ArgumentsOf(GetCommandLineW())) {
    if (!text.empty()) text += ' ';
    text += argument;
  }
  return text;
}

std::string WindowsSystemService::EnvironmentEntry(int index) {
  return SystemCodePage().Bytes(Environment().Entry(index));
}

WallTime WindowsSystemService::Now() {
  FILETIME now{};
  GetSystemTimePreciseAsFileTime(&now);
  return windows::ToWallTime(now);
}

TimeOfDay WindowsSystemService::LocalTimeOfDay() {
  SYSTEMTIME now{};
  GetLocalTime(&now);
  return {now.wHour, now.wMinute, now.wSecond};
}

std::string WindowsSystemService::ShortDate() {
  std::array<wchar_t, 256> text{};
  const int size = GetDateFormatEx(LOCALE_NAME_USER_DEFAULT, DATE_SHORTDATE, nullptr, nullptr,
                                   text.data(), static_cast<int>(text.size()), nullptr);
  return size > 0 ? SystemCodePage().Bytes(text.data()) : std::string();
}

std::string WindowsSystemService::TimeText() {
  // A log calls this function for every line, many times a second: format each second only once.
  SYSTEMTIME now{};
  GetLocalTime(&now);
  if (now.wSecond == time_text_second_ && now.wMinute == time_text_minute_ &&
      now.wHour == time_text_hour_) {
    return time_text_;
  }
  std::array<wchar_t, 256> text{};
  const int size = GetTimeFormatEx(LOCALE_NAME_USER_DEFAULT, 0, &now, nullptr, text.data(),
                                   static_cast<int>(text.size()));
  time_text_ = size > 0 ? SystemCodePage().Bytes(text.data()) : std::string();
  time_text_second_ = now.wSecond;
  time_text_minute_ = now.wMinute;
  time_text_hour_ = now.wHour;
  return time_text_;
}

std::chrono::milliseconds WindowsSystemService::SteadyTime() {
  LARGE_INTEGER count{};
  LARGE_INTEGER per_second{};
  QueryPerformanceCounter(&count);
  QueryPerformanceFrequency(&per_second);
  const LONGLONG seconds = count.QuadPart / per_second.QuadPart;
  const LONGLONG rest = count.QuadPart % per_second.QuadPart;
  return std::chrono::milliseconds(seconds * 1000 + rest * 1000 / per_second.QuadPart);
}

std::optional<PageCharacters> WindowsSystemService::SystemPage() {
  PageCharacters characters{};
  std::copy_n(SystemCodePage().Characters().begin(), characters.size(), characters.begin());
  return characters;
}

void WindowsSystemService::StartFileBrowser(const std::string& file) {
  try {
    windows::OpenBrowserOn(file);
  } catch (...) {
    // A browser that does not start is not reported.
  }
}

}  // namespace morvex
