// Every implementation of the scan must return each offset at which a prefix begins.
#include "core/engine/matching/scan_kernel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

namespace morvex::test {
namespace {

std::vector<Kernel> Supported() {
  std::vector<Kernel> kernels;
  for (const Kernel kernel : {Kernel::kPortable, Kernel::kSsse3, Kernel::kAvx2}) {
    if (IsSupported(kernel)) kernels.push_back(kernel);
  }
  return kernels;
}

// The offsets that the scan returns among the first `count` bytes of the text.
std::vector<std::size_t> Offsets(const std::vector<std::string>& prefixes, const std::string& text,
                                 std::size_t count, Kernel kernel) {
  std::vector<std::string_view> sorted(prefixes.begin(), prefixes.end());
  std::sort(sorted.begin(), sorted.end());
  const ScanTables tables(sorted, kernel);
  const std::string padded = text + std::string(ScanTables::kReadAhead, '\0');
  std::vector<std::uint16_t> offsets(count + ScanTables::kSpareRoom, 0xFFFF);
  const std::size_t found = ScanFor(kernel)(
      tables, reinterpret_cast<const std::uint8_t*>(padded.data()), count, offsets.data());
  return {offsets.begin(), offsets.begin() + static_cast<std::ptrdiff_t>(found)};
}

TEST(ScanKernel, ThePortableFormIsAlwaysThere) {
  EXPECT_TRUE(IsSupported(Kernel::kPortable));
  EXPECT_TRUE(IsSupported(BestKernel()));
}

TEST(ScanKernel, GivesTheOffsetOfAPrefixAndNoOther) {
  for (const Kernel kernel : Supported()) {
    EXPECT_EQ(Offsets({"abc"}, "..abc.abd.ab", 12, kernel),
              kernel == Kernel::kPortable ? (std::vector<std::size_t>{2, 6, 10})
                                          : (std::vector<std::size_t>{2}))
        << static_cast<int>(kernel);
  }
}

TEST(ScanKernel, ReadsNoOffsetBehindTheCount) {
  for (const Kernel kernel : Supported()) {
    for (std::size_t count = 0; count <= 70; ++count) {
      EXPECT_EQ(Offsets({"a"}, std::string(80, 'a'), count, kernel).size(), count)
          << static_cast<int>(kernel);
    }
  }
}

TEST(ScanKernel, ShortPrefixesBeginWhateverFollows) {
  for (const Kernel kernel : Supported()) {
    EXPECT_EQ(Offsets({"x", "yz", "long key"}, "x.yz.x", 6, kernel),
              (std::vector<std::size_t>{0, 2, 5}))
        << static_cast<int>(kernel);
  }
}

TEST(ScanKernel, EveryByteCanBeginAPrefix) {
  for (const Kernel kernel : Supported()) {
    for (int byte = 1; byte < 256; ++byte) {
      const std::string prefix(3, static_cast<char>(byte));
      EXPECT_EQ(Offsets({prefix}, "\n" + prefix + "\n", 5, kernel),
                byte == '\n'                  ? Offsets({prefix}, "\n\n\n\n\n", 5, kernel)
                : kernel == Kernel::kPortable ? (std::vector<std::size_t>{1, 2})
                                              : (std::vector<std::size_t>{1}))
          << byte << " " << static_cast<int>(kernel);
    }
  }
}

TEST(ScanKernel, LeavesOutNoPrefixOfARandomList) {
  for (std::uint32_t seed = 0; seed < 300; ++seed) {
    std::mt19937 random(seed);
    const auto text = [&random](std::size_t size, unsigned letters) {
      std::string made(size, ' ');
      for (char& byte : made) byte = static_cast<char>('a' + random() % letters);
      return made;
    };
    const auto letters = static_cast<unsigned>(2 + random() % 20);
    std::vector<std::string> prefixes;
    for (std::size_t i = 1 + random() % 40; i > 0; --i) {
      prefixes.push_back(text(1 + random() % 6, letters));
    }
    const std::string bytes = text(500, letters);
    for (const Kernel kernel : Supported()) {
      const std::vector<std::size_t> offsets = Offsets(prefixes, bytes, bytes.size(), kernel);
      ASSERT_TRUE(std::is_sorted(offsets.begin(), offsets.end())) << seed;
      for (std::size_t at = 0; at < bytes.size(); ++at) {
        const bool begins =
            std::any_of(prefixes.begin(), prefixes.end(), [&](const std::string& prefix) {
              return bytes.compare(at, prefix.size(), prefix) == 0;
            });
        if (!begins) continue;
        ASSERT_TRUE(std::binary_search(offsets.begin(), offsets.end(), at))
            << "seed " << seed << " place " << at << " kernel " << static_cast<int>(kernel);
      }
    }
  }
}

}  // namespace
}  // namespace morvex::test
