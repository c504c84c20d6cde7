// Fuzz target: a settings file made of the fuzzer's bytes is read, written and read again. Checks
// that the second reading leaves the program with the same settings as the first, and that the
// second file written equals the first.
#include "core/program/main_window_paths.h"
#include "core/run/run_driver.h"
#include "core/run/start_up.h"
#include "fuzz/fuzz_bytes.h"
#include "tests/support/test_program.h"

namespace morvex::test {
namespace {

constexpr const char* kInitFile = "/program/Init.dat";

// What a settings file keeps, as one text.
std::string Held(const Program& program) {
  const Settings& settings = program.settings;
  const std::string separator = settings.gSeparator.empty() ? "|" : settings.gSeparator;
  std::string held =
      program.frmMorvex.Text1(kSourceBox).text.get() + "\n" +
      program.frmMorvex.Text1(kTargetBox).text.get() + "\n" + settings.SubstitutieFile + "\n" +
      std::to_string(program.frmOpties.chkLoggen.value()) + "\n" + separator + "\n" +
      std::to_string(settings.gJoker) + "\n" + program.frmMorvex.lblExtensions.caption.get() +
      "\n" + std::to_string(settings.N_Extension_Selected) + "\n" +
      std::to_string(settings.N_Extension_Total) + "\n";
  for (const ListEntry& entry : program.frmOpties.lstExtensie.entries.get()) {
    held += (entry.selected ? "1" : "0") + entry.text + "\n";
  }
  return held;
}

struct Reading {
  std::string held;
  std::string written;
};

Reading Read(const std::string& bytes, TextCodec codec) {
  TestProgram test;
  test.system.codec = codec;
  test.files.AddFile(kInitFile, bytes);
  test.files.AddFile("/list", "a|b||\r\n");
  Require(StartUp(test.program) == ErrorNumber::kNone, "start-up failed");
  Reading reading{Held(test.program), ""};
  cmdAnonymize_Click(test.program);
  reading.written = test.files.Bytes(kInitFile);
  return reading;
}

}  // namespace

void FuzzSettings(const std::uint8_t* data, std::size_t size) {
  FuzzBytes bytes(data, size);
  const TextCodec codec = bytes.Next() % 2 == 0 ? TextCodec::kSingleByte : TextCodec::kUtf8;
  const std::string file = bytes.TakeAll();
  const Reading first = Read(file, codec);
  const Reading second = Read(first.written, codec);
  Require(second.held == first.held, "read anew: " + Shown(second.held) + "\ninstead of: " +
                                         Shown(first.held) + "\nfrom: " + Shown(file));
  Require(second.written == first.written, "written anew: " + Shown(second.written));
}

}  // namespace morvex::test

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  morvex::test::FuzzSettings(data, size);
  return 0;
}
