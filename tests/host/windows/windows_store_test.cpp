// The settings file's path in the options window, for a program in the protected program folder. A
// copy of this test program runs in that folder.
#include <gtest/gtest.h>

#include "core/run/start_up.h"
#include "core/settings/options.h"
#include "host/windows/windows_system.h"
#include "tests/host/windows/second_process.h"
#include "tests/host/windows/windows_test.h"
#include "tests/support/test_program.h"

namespace morvex::windows_test {
namespace {

TEST(SecondProcess, DISABLED_ReportsWhereTheSettingsLie) {
  WindowsSystemService system;
  WindowsFileService files;
  test::ScriptedUser user;
  Program program({files, system, user});
  StartUp(program);
  imOptionsToFolder_Click(program);
  std::string text;
  for (const test::ShownMessage& message : user.messages) text += message.text;
  PutRaw(Report(), text);
}

constexpr const wchar_t* kProtected = L"C:\\Program Files (x86)\\Morvex";

class WindowsStoreTest : public ::testing::Test {
 protected:
  void SetUp() override {
    CreateDirectoryW(L"C:\\Program Files (x86)", nullptr);
    ASSERT_NE(CreateDirectoryW(kProtected, nullptr), 0);
    ASSERT_NE(CopyFileW(OwnProgram().c_str(), Installed().c_str(), TRUE), 0);
  }
  void TearDown() override { RemoveTree(Raw(kProtected)); }

  static std::wstring Installed() { return std::wstring(kProtected) + L"\\test.exe"; }

  std::string Seen(const std::wstring& program, const std::vector<std::wstring>& entries) {
    return SeenByASecondProcess(folder_, program, L"DISABLED_ReportsWhereTheSettingsLie", entries);
  }

  TempFolder folder_;
};

const std::string kHead = "(Required) location Init.dat file: \r\n\r\n";
constexpr const wchar_t* kLocal = L"LOCALAPPDATA=C:\\users\\ada\\Local";
constexpr const wchar_t* kCommon = L"CommonProgramFiles(x86)=C:\\Program Files (x86)\\Common Files";

TEST_F(WindowsStoreTest, InTheProtectedFolderItIsTheRedirectedStore) {
  EXPECT_EQ(Seen(Installed(), {kLocal, kCommon}),
            kHead + "C:\\users\\ada\\Local\\VirtualStore\\Program Files (x86)\\Morvex");
}

TEST_F(WindowsStoreTest, AnywhereElseItIsTheProgramsOwnFolder) {
  WindowsSystemService system;
  EXPECT_EQ(Seen(OwnProgram(), {kLocal, kCommon}), kHead + system.ProgramFolder());
}

TEST_F(WindowsStoreTest, ALocationThatCannotBeCutCountsAsContained) {
  EXPECT_EQ(Seen(OwnProgram(), {kLocal, L"CommonProgramFiles(x86)=C:\\Common"}),
            kHead + "C:\\users\\ada\\Local\\VirtualStore\\Program Files (x86)\\Morvex");
}

}  // namespace
}  // namespace morvex::windows_test
