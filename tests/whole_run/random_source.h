// Random choices that are the same on every system: the C++ standard fixes the numbers of the
// generator, and the distributions are computed here.

#ifndef MORVEX_TESTS_WHOLE_RUN_RANDOM_SOURCE_H_
#define MORVEX_TESTS_WHOLE_RUN_RANDOM_SOURCE_H_

#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace morvex::whole_run {

// Call a member at most once per statement, because the compiler chooses the order of two calls in
// one expression.
class RandomSource {
 public:
  explicit RandomSource(std::uint64_t seed) : engine_(seed) {}

  // Returns a number from 0 to count - 1; `count` is at least 1.
  std::size_t Below(std::size_t count) { return static_cast<std::size_t>(engine_() % count); }
  std::size_t Between(std::size_t low, std::size_t high) { return low + Below(high - low + 1); }
  bool OneIn(std::size_t count) { return Below(count) == 0; }
  bool Percent(std::size_t chance) { return Below(100) < chance; }

  template <typename T>
  const T& Pick(const std::vector<T>& choices) {
    return choices[Below(choices.size())];
  }
  char Letter(const std::string& alphabet) { return alphabet[Below(alphabet.size())]; }
  std::string Text(const std::string& alphabet, std::size_t low, std::size_t high) {
    std::string text;
    for (std::size_t left = Between(low, high); left > 0; --left) {
      text += Letter(alphabet);
    }
    return text;
  }

 private:
  std::mt19937_64 engine_;
};

}  // namespace morvex::whole_run

#endif  // MORVEX_TESTS_WHOLE_RUN_RANDOM_SOURCE_H_
