// Runs a fuzz target without a fuzzer: over files, over the files in folders, or with "random COUNT
// SEED" over COUNT random inputs. Exit status: 0 if the target got through all inputs, 2 if there
// were no files.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

void RunFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  const std::vector<char> bytes((std::istreambuf_iterator<char>(file)),
                                std::istreambuf_iterator<char>());
  const std::vector<std::uint8_t> input(bytes.begin(), bytes.end());
  LLVMFuzzerTestOneInput(input.data(), input.size());
}

void RunRandom(unsigned long count, unsigned long seed) {
  for (unsigned long i = 0; i < count; ++i) {
    std::mt19937_64 random(seed + i);
    std::vector<std::uint8_t> input(random() % 400);
    for (std::uint8_t& byte : input) byte = static_cast<std::uint8_t>(random());
    if (i % 10'000 == 0) std::fprintf(stderr, "seed %lu\n", seed + i);
    LLVMFuzzerTestOneInput(input.data(), input.size());
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 4 && std::string(argv[1]) == "random") {
    RunRandom(std::strtoul(argv[2], nullptr, 10), std::strtoul(argv[3], nullptr, 10));
    return 0;
  }
  std::size_t count = 0;
  for (int i = 1; i < argc; ++i) {
    const std::filesystem::path path = argv[i];
    if (!std::filesystem::is_directory(path)) {
      RunFile(path);
      ++count;
      continue;
    }
    for (const auto& entry : std::filesystem::directory_iterator(path)) {
      RunFile(entry.path());
      ++count;
    }
  }
  std::printf("%zu inputs\n", count);
  return count == 0 ? 2 : 0;
}
