// The picture that tells which folder holds the settings file.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/settings/options.h"
#include "tests/support/test_program.h"

namespace morvex::test {
namespace {

const char* const kProtected = "C:\\Program Files (x86)\\Morvex";
const char* const kLocal = "C:\\Users\\u\\AppData\\Local";
const std::string kStore =
    "C:\\Users\\u\\AppData\\Local\\VirtualStore\\Program Files (x86)\\Morvex";

std::vector<ShownMessage> Names(const std::string& folder) {
  return {{"(Required) location Init.dat file: \r\n\r\n" + folder, MessageButtons::kOk,
           MessageIcon::kInformation}};
}

// A program on a host with a redirected store (see SystemService::HasRedirectedStore).
struct ProtectedProgram : TestProgram {
  explicit ProtectedProgram(const std::string& folder) : TestProgram('\\') {
    system.program_folder = folder;
    system.redirected_store = true;
    program.locations.gLocalAppData = kLocal;
    program.locations.gCommonFilesLocation = "C:\\Program Files (x86)\\";
  }
};

TEST(OptionsToFolder, NamesTheProgramsFolderAndOpensIt) {
  TestProgram test;
  test.files.AddFile("/program/Init.dat", "");
  imOptionsToFolder_Click(test.program);
  EXPECT_EQ(test.user.messages, Names("/program"));
  EXPECT_EQ(test.system.browsed, (std::vector<std::string>{"/program/Init.dat"}));
}

TEST(OptionsToFolder, WithoutTheFileThereIsOnlyTheMessage) {
  TestProgram test;
  imOptionsToFolder_Click(test.program);
  EXPECT_EQ(test.user.messages, Names("/program"));
  EXPECT_TRUE(test.system.browsed.empty());
}

TEST(OptionsToFolder, InTheProtectedFolderTheStoreIsNamedEvenWithoutTheFile) {
  ProtectedProgram test(kProtected);
  test.files.AddFile(std::string(kProtected) + "\\Init.dat", "");
  imOptionsToFolder_Click(test.program);
  EXPECT_EQ(test.user.messages, Names(kStore));
  EXPECT_TRUE(test.system.browsed.empty());
}

TEST(OptionsToFolder, InTheProtectedFolderTheStoresFileIsOpened) {
  ProtectedProgram test(kProtected);
  test.files.AddFile(kStore + "\\Init.dat", "");
  imOptionsToFolder_Click(test.program);
  EXPECT_EQ(test.user.messages, Names(kStore));
  EXPECT_EQ(test.system.browsed, (std::vector<std::string>{kStore + "\\Init.dat"}));
}

TEST(OptionsToFolder, OutsideOfTheProtectedFolderItIsTheProgramsOwn) {
  ProtectedProgram test("D:\\Tools");
  test.files.AddFile("D:\\Tools\\Init.dat", "");
  imOptionsToFolder_Click(test.program);
  EXPECT_EQ(test.user.messages, Names("D:\\Tools"));
  EXPECT_EQ(test.system.browsed, (std::vector<std::string>{"D:\\Tools\\Init.dat"}));
}

TEST(OptionsToFolder, TheProtectedFolderIsLookedForInItsExactCase) {
  ProtectedProgram test("C:\\PROGRAM FILES (X86)\\Morvex");
  imOptionsToFolder_Click(test.program);
  EXPECT_EQ(test.user.messages, Names("C:\\PROGRAM FILES (X86)\\Morvex"));
}

TEST(OptionsToFolder, AnUnknownProtectedFolderCountsAsContained) {
  ProtectedProgram test("D:\\Tools");
  test.program.locations.gCommonFilesLocation = "";
  imOptionsToFolder_Click(test.program);
  EXPECT_EQ(test.user.messages, Names(kStore));
}

TEST(OptionsToFolder, AHostWithoutAStoreAlwaysShowsTheProgramsOwn) {
  TestProgram test;
  test.program.locations.gCommonFilesLocation = "";
  test.program.locations.gLocalAppData = "/home/u";
  imOptionsToFolder_Click(test.program);
  EXPECT_EQ(test.user.messages, Names("/program"));
}

TEST(OptionsToFolder, InADriveRootTheFileIsOpenedByItsCleanPath) {
  TestProgram test('\\');
  test.system.program_folder = "C:\\";
  test.files.AddFile("C:\\Init.dat", "");
  imOptionsToFolder_Click(test.program);
  EXPECT_EQ(test.user.messages, Names("C:\\"));
  EXPECT_EQ(test.system.browsed, (std::vector<std::string>{"C:\\Init.dat"}));
}

}  // namespace
}  // namespace morvex::test
