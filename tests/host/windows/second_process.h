// Runs the test program as a second process. That process runs one disabled test, which writes its
// results to a file. An environment variable names this file.
#pragma once

#include <string>
#include <vector>

#include "tests/host/windows/windows_test.h"

namespace morvex::windows_test {

inline constexpr const wchar_t* kReportEntry = L"MORVEX_TEST_REPORT";

inline std::wstring OwnProgram() {
  std::wstring path(1000, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), 1000));
  return path;
}

// Returns the path of the file that the second process must write.
inline std::wstring Report() {
  std::wstring path(1000, L'\0');
  path.resize(GetEnvironmentVariableW(kReportEntry, path.data(), 1000));
  return path;
}

inline std::wstring OneTest(const std::wstring& test) {
  return L"--gtest_also_run_disabled_tests   --gtest_brief=1 --gtest_filter=SecondProcess." + test;
}

// Runs the disabled test `test` in a new process of `program`, which is this program or a copy of
// it. The environment of the new process holds only `entries` and the path of the report. Returns
// the report. `flags` are those of CreateProcessW.
inline std::string SeenByASecondProcess(const TempFolder& folder, const std::wstring& program,
                                        const std::wstring& test,
                                        const std::vector<std::wstring>& entries, DWORD flags = 0) {
  const std::wstring report = folder.WidePath() + L"\\report";
  DeleteFileW(report.c_str());
  std::wstring command = L"\"" + program + L"\" " + OneTest(test);
  std::wstring block;
  for (const std::wstring& entry : entries) block += entry + L'\0';
  block += std::wstring(kReportEntry) + L"=" + report + L'\0' + L'\0';
  STARTUPINFOW start{};
  start.cb = sizeof start;
  PROCESS_INFORMATION started{};
  if (CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE,
                     flags | CREATE_UNICODE_ENVIRONMENT, block.data(), nullptr, &start,
                     &started) == 0) {
    return "(not started)";
  }
  WaitForSingleObject(started.hProcess, 120'000);
  CloseHandle(started.hThread);
  CloseHandle(started.hProcess);
  return Content(windows::SystemCodePage().Bytes(report));
}

}  // namespace morvex::windows_test
