// Searches bytes for the leftovers of a list.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "core/engine/matching/bytes_in_memory.h"
#include "core/leftovers/leftover_search.h"
#include "tests/support/test_program.h"

namespace morvex::test {

struct FoundLeftover {
  std::uint64_t offset = 0;
  std::int64_t line = 0;
  std::int64_t row = 0;
  Encoding encoding = Encoding::kBytes;
  bool as_written = true;
  std::uint64_t size = 0;
  bool operator==(const FoundLeftover&) const = default;
};

inline void PrintTo(const FoundLeftover& found, std::ostream* out) {
  *out << "{offset " << found.offset << ", line " << found.line << ", row " << found.row
       << ", encoding " << static_cast<int>(found.encoding)
       << (found.as_written ? "" : ", other case") << ", size " << found.size << "}";
}

class SoughtList {
 public:
  explicit SoughtList(const Rows& rows, char joker = '*', Encoding encoding = Encoding::kUtf8) {
    test_.ApplyRows(rows, static_cast<std::uint8_t>(joker));
    sought =
        std::make_unique<Sought>(test_.program.tables, static_cast<std::uint8_t>(joker), encoding);
  }

  std::vector<FoundLeftover> Find(const std::string& bytes, std::size_t block = 1 << 18,
                                  Kernel kernel = BestKernel()) const {
    LeftoverSearch search(*sought, kernel, block);
    return FindWith(search, bytes);
  }

  static std::vector<FoundLeftover> FindWith(LeftoverSearch& search, const std::string& bytes) {
    std::vector<FoundLeftover> found;
    MemorySource file(bytes);
    EXPECT_EQ(search.Run(file,
                         [&](const Leftover& leftover) {
                           found.push_back({leftover.offset, leftover.line, leftover.row,
                                            leftover.encoding, leftover.as_written, leftover.size});
                         }),
              ErrorNumber::kNone);
    return found;
  }

  std::unique_ptr<Sought> sought;

 private:
  TestProgram test_;
};

}  // namespace morvex::test
