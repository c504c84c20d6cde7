// The terminal and the standard streams, as far as they can be tested without a terminal. The tests
// of the console program send bytes through its streams.
#include <gtest/gtest.h>

#include <array>

#include "host/system/services.h"
#include "host/system/standard_streams.h"
#include "host/system/terminal.h"
#include "host/windows/windows_system.h"
#include "tests/host/windows/second_process.h"
#include "tests/host/windows/windows_test.h"

namespace morvex::windows_test {
namespace {

// Replaces standard input and output by files during its lifetime.
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

// The pipe is in message mode: it keeps the written pieces apart.
TEST_F(WindowsStreamsTest, NeitherAPieceWithoutBytesNorALongOneIsTheEndOfAPipe) {
  const std::wstring name = L"\\\\.\\pipe\\morvex-test-" + std::to_wstring(GetCurrentProcessId());
  windows::Handle writer(CreateNamedPipeW(name.c_str(), PIPE_ACCESS_OUTBOUND, PIPE_TYPE_MESSAGE, 1,
                                          65536, 65536, 0, nullptr));
  const windows::Handle reader(CreateFileW(name.c_str(), GENERIC_READ | FILE_WRITE_ATTRIBUTES, 0,
                                           nullptr, OPEN_EXISTING, 0, nullptr));
  ASSERT_TRUE(writer.IsOpen() && reader.IsOpen());
  DWORD by_pieces = PIPE_READMODE_MESSAGE;
  ASSERT_NE(SetNamedPipeHandleState(reader.Get(), &by_pieces, nullptr, nullptr), 0);
  for (const std::string_view piece : {"Jan", "", " Jansen", "", ""}) {
    const auto size = static_cast<DWORD>(piece.size());
    DWORD written = 0;
    ASSERT_NE(::WriteFile(writer.Get(), piece.data(), size, &written, nullptr), 0);
  }
  writer.Close();
  void* before = GetStdHandle(STD_INPUT_HANDLE);
  SetStdHandle(STD_INPUT_HANDLE, reader.Get());
  const std::unique_ptr<InputFile> input = StandardInput();
  std::array<char, 5> block{};
  std::string bytes;
  Result<std::size_t> read;
  do {
    read = input->ReadAt(bytes.size(), block.data(), block.size());
    bytes.append(block.data(), read.value);
  } while (read && read.value > 0);
  SetStdHandle(STD_INPUT_HANDLE, before);
  EXPECT_EQ(read.error, ErrorNumber::kNone);
  EXPECT_EQ(bytes, "Jan Jansen");
}

TEST_F(WindowsStreamsTest, OnlyAPipeThatGivesNothingForTheMomentMakesOneWait) {
  HANDLE reader = nullptr;
  HANDLE writer = nullptr;
  ASSERT_NE(CreatePipe(&reader, &writer, nullptr, 0), 0);
  const windows::Handle owned_reader(reader);
  windows::Handle owned_writer(writer);
  void* before = GetStdHandle(STD_INPUT_HANDLE);
  SetStdHandle(STD_INPUT_HANDLE, reader);
  const std::unique_ptr<InputFile> input = StandardInput();
  SetStdHandle(STD_INPUT_HANDLE, before);
  std::array<char, 16> block{};
  EXPECT_TRUE(input->MustWait());
  DWORD written = 0;
  ASSERT_NE(::WriteFile(writer, "abc", 3, &written, nullptr), 0);
  EXPECT_FALSE(input->MustWait());
  EXPECT_EQ(input->ReadAt(0, block.data(), block.size()).value, 3U);
  EXPECT_TRUE(input->MustWait());
  owned_writer.Close();
  EXPECT_FALSE(input->MustWait());
  EXPECT_EQ(input->ReadAt(3, block.data(), block.size()).value, 0U);
  EXPECT_FALSE(input->MustWait());
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

TEST(SecondProcess, DISABLED_ReportsItsStopRequest) {
  InstallStopSignals(WaitsAtStop::kBreakOff);
  std::string seen = StopRequested() ? "asked before" : "not asked";
  const bool sent = GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0) != 0;
  for (int waited = 0; sent && waited < 200 && !StopRequested(); ++waited) Sleep(50);
  seen += !sent ? ", no console" : StopRequested() ? ", asked" : ", still not asked";
  PutRaw(Report(), seen);
  // The program leaves the second event to the system. The system then ends the process.
  GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0);
  Sleep(5000);
  PutRaw(Report(), seen + ", still there");
}

// The second process has its own console, so that no other process gets the event.
TEST(WindowsTerminal, TheFirstStopEventIsNotedAndTheNextEndsTheProcess) {
  const TempFolder folder;
  EXPECT_EQ(SeenByASecondProcess(folder, OwnProgram(), L"DISABLED_ReportsItsStopRequest", {},
                                 CREATE_NO_WINDOW),
            "not asked, asked");
}

TEST(WindowsServices, AreThoseOfThisSystem) {
  EXPECT_EQ(MakeFileService()->Separator(), '\\');
  EXPECT_TRUE(MakeSystemService(0, nullptr)->HasRedirectedStore());
  EXPECT_EQ(ProgramArguments(0, nullptr).size(), windows::ArgumentsOf(GetCommandLineW()).size());
}

}  // namespace
}  // namespace morvex::windows_test
