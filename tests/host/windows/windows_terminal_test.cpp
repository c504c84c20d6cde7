// The terminal and the standard streams, as far as a test that has neither can see; the console
// program's tests send bytes through the latter.
#include <gtest/gtest.h>

#include <array>

#include "host/system/services.h"
#include "host/system/standard_streams.h"
#include "host/system/terminal.h"
#include "host/windows/windows_system.h"
#include "tests/host/windows/windows_test.h"

namespace morvex::windows_test {
namespace {

// Standard input and output are files of the test until its end.
class OwnStreams {
 public:
  OwnStreams(const std::string& input, const std::string& output)
      : in_(CreateFileW(Wide(input).c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                        0, nullptr)),
        out_(CreateFileW(Wide(output).c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                         CREATE_ALWAYS, 0, nullptr)) {
    SetStdHandle(STD_INPUT_HANDLE, in_.Get());
    SetStdHandle(STD_OUTPUT_HANDLE, out_.Get());
  }
  OwnStreams(const OwnStreams&) = delete;
  OwnStreams& operator=(const OwnStreams&) = delete;
  ~OwnStreams() {
    SetStdHandle(STD_INPUT_HANDLE, old_in_);
    SetStdHandle(STD_OUTPUT_HANDLE, old_out_);
  }

 private:
  void* old_in_ = GetStdHandle(STD_INPUT_HANDLE);
  void* old_out_ = GetStdHandle(STD_OUTPUT_HANDLE);
  windows::Handle in_;
  windows::Handle out_;
};

using WindowsStreamsTest = WindowsTest;

TEST_F(WindowsStreamsTest, BytesAreReadInTurnUpToTheEnd) {
  Put(folder_ / "in", "a\r\nb\x1a\nc");
  const OwnStreams streams(folder_ / "in", folder_ / "out");
  const std::unique_ptr<InputFile> input = StandardInput();
  std::array<char, 16> block{};
  EXPECT_EQ(input->ReadAt(0, block.data(), 3).value, 3U);
  EXPECT_EQ(input->ReadAt(0, block.data(), 3).error, ErrorNumber::kInvalidCall);
  EXPECT_EQ(input->ReadAt(3, block.data(), block.size()).value, 4U);
  EXPECT_EQ(std::string(block.data(), 4), "b\x1a\nc");
  EXPECT_EQ(input->ReadAt(7, block.data(), block.size()).value, 0U);
}

TEST_F(WindowsStreamsTest, BytesAreWrittenInTurnAndUnchanged) {
  Put(folder_ / "in", "");
  {
    const OwnStreams streams(folder_ / "in", folder_ / "out");
    const std::unique_ptr<OutputFile> output = StandardOutput();
    EXPECT_EQ(output->WriteAt(0, "a\n\r\n"), ErrorNumber::kNone);
    EXPECT_EQ(output->WriteAt(0, "x"), ErrorNumber::kInvalidCall);
    EXPECT_EQ(output->WriteAt(4, "\x1a\xff"), ErrorNumber::kNone);
    EXPECT_EQ(output->Close(), ErrorNumber::kNone);
    EXPECT_FALSE(IsTerminal(0));
    EXPECT_FALSE(IsTerminal(1));
  }
  EXPECT_EQ(Content(folder_ / "out"), "a\n\r\n\x1a\xff");
}

TEST(WindowsTerminal, OtherNumbersThanThoseOfTheStreamsAreNoTerminal) {
  EXPECT_FALSE(IsTerminal(-1));
  EXPECT_FALSE(IsTerminal(3));
}

TEST(WindowsTerminal, ItsWidthIsNeverNothing) { EXPECT_GT(TerminalColumns(), 0); }

TEST(WindowsTerminal, NobodyHasAskedToStop) {
  InstallStopSignals();
  EXPECT_FALSE(StopRequested());
}

TEST(WindowsServices, AreThoseOfThisSystem) {
  EXPECT_EQ(MakeFileService()->Separator(), '\\');
  EXPECT_TRUE(MakeSystemService(0, nullptr)->HasRedirectedStore());
  EXPECT_EQ(ProgramArguments(0, nullptr).size(), windows::ArgumentsOf(GetCommandLineW()).size());
}

}  // namespace
}  // namespace morvex::windows_test
