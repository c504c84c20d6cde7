// The named inputs of the benchmark. Each is a replacement list and a text for it, the same in
// every run.
#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace morvex::bench {

struct Input {
  std::string name;
  std::string what;  // one line that describes the input
  std::vector<std::pair<std::string, std::string>> rows;
  char joker = 0;
  std::string text;
};

// The names, in the order of the table that the benchmark prints.
std::vector<std::string> InputNames();

// Whether the input is a worst case. Worst cases are also run with twice the text, to see that the
// time only doubles.
bool IsWorstCase(const std::string& name);

// The text has about `size` bytes.
Input MakeInput(const std::string& name, std::size_t size);

}  // namespace morvex::bench
