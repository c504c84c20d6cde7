// Fuzz target: runs the engine and the literal engine on a list and files made of the fuzzer's
// bytes. A difference ends the program and prints everything that is needed to repeat it.
//
// The bytes choose, in this order: the letters, the wildcards and the number of rows; the rows,
// each as the lengths of its texts and the texts; the kernel; and one or two files. Some files are
// stretched with filler, so that a few of the fuzzer's bytes reach the borders of blocks.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "fuzz/fuzz_bytes.h"
#include "tests/reference/judge.h"

namespace morvex::test {
namespace {

// Maps the bytes to a few letters, so that rows and files match more often. Every fourth
// value of `alphabet` leaves the bytes as they are.
std::string Narrowed(std::string text, std::uint8_t alphabet) {
  static const std::string kLetters = std::string("ab*c") + '\0' + "\xFF\r\n" + "dxyz*abq";
  if (alphabet % 4 == 0) return text;
  const std::size_t letters = alphabet % 4 == 1 ? 3 : alphabet % 4 == 2 ? 6 : kLetters.size();
  for (char& byte : text) byte = kLetters[static_cast<std::uint8_t>(byte) % letters];
  return text;
}

// Inserts filler into the text, so that what follows the filler stands near the border of a block,
// or where a span has become too long.
std::string Stretched(const std::string& text, FuzzBytes& bytes) {
  static constexpr std::size_t kBorders[] = {4096, 8192, 32766, 32768, 98304, 131072, 163840};
  const std::size_t at = bytes.Next() % (text.size() + 1);
  const std::size_t border = kBorders[bytes.Next() % std::size(kBorders)];
  const std::size_t filler = border - std::min(border, at + std::size_t{bytes.Next()} % 32);
  return text.substr(0, at) + std::string(filler, '-') + text.substr(at);
}

}  // namespace

void JudgeBytes(const std::uint8_t* data, std::size_t size) {
  FuzzBytes bytes(data, size);
  JudgedList list;
  const std::uint8_t alphabet = bytes.Next();
  const std::uint8_t wildcards = bytes.Next();
  static constexpr char kWildcards[] = {'*', '*', '*', 'a', 'b', '\xFF', 0, '*'};
  list.flags = kWildcards[wildcards & 7];
  list.tails = (wildcards & 8) != 0 ? kWildcards[wildcards >> 4 & 7] : list.flags;
  list.run = (wildcards & 0x80) != 0 ? kWildcards[bytes.Next() & 7] : list.flags;
  const std::size_t rows = 1 + bytes.Next() % 12;
  if (alphabet >> 4 == 15) list.flagged_rows = bytes.Next() % (rows + 1);
  for (std::size_t row = 0; row < rows; ++row) {
    const std::uint8_t sizes = bytes.Next();
    const std::size_t coded_size = sizes & 15U;
    const std::size_t left_size = coded_size == 15 ? bytes.Next() % 64U : coded_size;
    std::string left = Narrowed(bytes.Take(left_size), alphabet);
    std::string right = Narrowed(bytes.Take(sizes >> 4), alphabet);
    if (row > 0 && bytes.Next() % 4 == 0) {
      // Makes rows that begin alike.
      left = list.rows.back().first.substr(0, 1 + bytes.Next() % 24) + left;
    }
    list.rows.emplace_back(std::move(left), std::move(right));
  }
  const std::vector<Kernel> kernels = SupportedKernels();
  Judge judge(list, kernels[bytes.Next() % kernels.size()]);
  const std::size_t first = bytes.Next() % 4 == 0 ? bytes.left() / 2 : bytes.left();
  const bool stretches = alphabet >> 4 == 7;
  for (const std::size_t part : {first, bytes.left()}) {
    std::string file = stretches ? Narrowed(bytes.Take(std::min<std::size_t>(part, 80)), alphabet)
                                 : Narrowed(bytes.Take(part), alphabet);
    if (stretches) file = Stretched(file, bytes);
    const std::string differences = judge.Differences(file);
    if (differences.empty()) continue;
    std::fprintf(stderr, "%s\n", differences.c_str());
    std::abort();
  }
}

}  // namespace morvex::test

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  morvex::test::JudgeBytes(data, size);
  return 0;
}
