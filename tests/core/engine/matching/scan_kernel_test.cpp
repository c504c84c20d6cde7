// Every form of the scan, forced: it must give each place where a key begins.
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

// The places that the scan gives among the first `count` bytes of the text.
std::vector<std::size_t> Places(const std::vector<std::string>& keys, const std::string& text,
                                std::size_t count, Kernel kernel) {
  std::vector<std::string_view> sorted(keys.begin(), keys.end());
  std::sort(sorted.begin(), sorted.end());
  const ScanTables tables(sorted, kernel);
  const std::string padded = text + std::string(ScanTables::kReadAhead, '\0');
  std::vector<std::uint16_t> places(count + ScanTables::kSpareRoom, 0xFFFF);
  const std::size_t found = ScanFor(kernel)(
      tables, reinterpret_cast<const std::uint8_t*>(padded.data()), count, places.data());
  return {places.begin(), places.begin() + static_cast<std::ptrdiff_t>(found)};
}

TEST(ScanKernel, ThePortableFormIsAlwaysThere) {
  EXPECT_TRUE(IsSupported(Kernel::kPortable));
  EXPECT_TRUE(IsSupported(BestKernel()));
}

TEST(ScanKernel, GivesThePlaceOfAKeyAndNoOther) {
  for (const Kernel kernel : Supported()) {
    EXPECT_EQ(Places({"abc"}, "..abc.abd.ab", 12, kernel),
              kernel == Kernel::kPortable ? (std::vector<std::size_t>{2, 6, 10})
                                          : (std::vector<std::size_t>{2}))
        << static_cast<int>(kernel);
  }
}

TEST(ScanKernel, LooksAtNoPlaceBehindTheCount) {
  for (const Kernel kernel : Supported()) {
    for (std::size_t count = 0; count <= 70; ++count) {
      EXPECT_EQ(Places({"a"}, std::string(80, 'a'), count, kernel).size(), count)
          << static_cast<int>(kernel);
    }
  }
}

TEST(ScanKernel, ShortKeysBeginWhateverFollows) {
  for (const Kernel kernel : Supported()) {
    EXPECT_EQ(Places({"x", "yz", "long key"}, "x.yz.x", 6, kernel),
              (std::vector<std::size_t>{0, 2, 5}))
        << static_cast<int>(kernel);
  }
}

TEST(ScanKernel, EveryByteCanBeginAKey) {
  for (const Kernel kernel : Supported()) {
    for (int byte = 1; byte < 256; ++byte) {
      const std::string key(3, static_cast<char>(byte));
      EXPECT_EQ(Places({key}, "\n" + key + "\n", 5, kernel),
                byte == '\n'                  ? Places({key}, "\n\n\n\n\n", 5, kernel)
                : kernel == Kernel::kPortable ? (std::vector<std::size_t>{1, 2})
                                              : (std::vector<std::size_t>{1}))
          << byte << " " << static_cast<int>(kernel);
    }
  }
}

TEST(ScanKernel, LeavesOutNoKeyOfARandomList) {
  for (std::uint32_t seed = 0; seed < 300; ++seed) {
    std::mt19937 random(seed);
    const auto text = [&random](std::size_t size, unsigned letters) {
      std::string made(size, ' ');
      for (char& byte : made) byte = static_cast<char>('a' + random() % letters);
      return made;
    };
    const auto letters = static_cast<unsigned>(2 + random() % 20);
    std::vector<std::string> keys;
    for (std::size_t i = 1 + random() % 40; i > 0; --i) {
      keys.push_back(text(1 + random() % 6, letters));
    }
    const std::string bytes = text(500, letters);
    for (const Kernel kernel : Supported()) {
      const std::vector<std::size_t> places = Places(keys, bytes, bytes.size(), kernel);
      ASSERT_TRUE(std::is_sorted(places.begin(), places.end())) << seed;
      for (std::size_t at = 0; at < bytes.size(); ++at) {
        const bool begins = std::any_of(keys.begin(), keys.end(), [&](const std::string& key) {
          return bytes.compare(at, key.size(), key) == 0;
        });
        if (!begins) continue;
        ASSERT_TRUE(std::binary_search(places.begin(), places.end(), at))
            << "seed " << seed << " place " << at << " kernel " << static_cast<int>(kernel);
      }
    }
  }
}

}  // namespace
}  // namespace morvex::test
