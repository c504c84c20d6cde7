// Fuzz target: a command line made of the fuzzer's bytes is split and applied. Checks that the
// pieces, joined again, are the line, and that a start with any line either ends or waits for the
// user.
#include "core/run/start_up.h"
#include "core/settings/command_line.h"
#include "fuzz/fuzz_bytes.h"
#include "tests/support/test_program.h"

namespace morvex::test {
namespace {

void CheckPieces(const std::string& line) {
  const std::vector<std::string> pieces = SplitCommandLine(line);
  Require(pieces.size() >= 2, "fewer than two pieces");
  Require(pieces[0] == "InitFile" || pieces[0] == "NoInitFile", "no marker");
  std::string joined = line.starts_with(" -") ? std::string() : pieces[1];
  for (std::size_t i = 2; i < pieces.size(); ++i) joined += " -" + pieces[i];
  Require(joined == line, "pieces of another line: " + Shown(joined) + " from " + Shown(line));
  for (std::size_t i = 2; i < pieces.size(); ++i) {
    Require(pieces[i].find(" -") == std::string::npos, "a piece of two options");
  }
}

}  // namespace

void FuzzCommandLine(const std::uint8_t* data, std::size_t size) {
  FuzzBytes bytes(data, size);
  const std::string line = bytes.TakeAll();
  CheckPieces(line);
  TestProgram test;
  test.system.command_line = line;
  // Some files exist, so that some lines start a run.
  test.files.AddFile("/s/a.txt", "aca");
  test.files.AddFolder("/t");
  test.files.AddFile("/l", "a|b||\r\n");
  test.files.AddFile("/j", "/s\r\n/t\r\n/l\r\nlog=1\r\nsep=|\r\njok=\r\n1.txt\r\n");
  test.files.AddFile("/program/j", test.files.Bytes("/j"));
  // A wait advances the clock and returns at once.
  test.user.on_wait = [&](std::chrono::milliseconds longest) { test.system.steady += longest; };
  const ErrorNumber error = StartUp(test.program);
  Require(error == ErrorNumber::kNone || error == ErrorNumber::kTypeMismatch ||
              error == ErrorNumber::kOverflow,
          "error " + std::to_string(static_cast<int>(error)));
  const Settings& settings = test.program.settings;
  const bool ran = test.program.run.end == RunEnd::kFinished;
  Require(!ran || settings.AutoRunFromInitFile, "a run that nobody asked for");
  Require(HasEnded(test.program) == (error != ErrorNumber::kNone || settings.CommandLine_SET),
          "open or ended against the line");
  Require(!ran || test.files.Bytes("/t/a.txt") == "bcb", "a wrong copy");
  Require(test.files.Bytes("/s/a.txt") == "aca", "the source has changed");
}

}  // namespace morvex::test

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  morvex::test::FuzzCommandLine(data, size);
  return 0;
}
