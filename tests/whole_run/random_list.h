// Random replacement lists over small alphabets, and file contents in which their left texts are
// likely to match, nearly match and overlap.

#ifndef MORVEX_TESTS_WHOLE_RUN_RANDOM_LIST_H_
#define MORVEX_TESTS_WHOLE_RUN_RANDOM_LIST_H_

#include <string>
#include <vector>

#include "random_source.h"
#include "settings_model.h"

namespace morvex::whole_run {

struct RandomList {
  std::string alphabet;
  std::string separator;
  // The wildcard that line 6 of the settings names; 0 if there is none.
  unsigned char joker = 0;
  std::string joker_line;
  std::string separator_line;
  std::vector<Row> rows;
  std::string bytes;
};

RandomList MakeRandomList(RandomSource* random);

// Returns contents of about `size` bytes made of letters, planted left texts and odd bytes.
std::string RandomContents(const RandomList& list, std::size_t size, RandomSource* random);

// Returns contents a little longer or shorter than `border` bytes. Most of the bytes are filler.
// Planted left texts stand at or just in front of the offset `border`, of some smaller offsets, and
// of the end.
std::string ContentsAcrossBorder(const RandomList& list, std::size_t border, RandomSource* random);

}  // namespace morvex::whole_run

#endif  // MORVEX_TESTS_WHOLE_RUN_RANDOM_LIST_H_
