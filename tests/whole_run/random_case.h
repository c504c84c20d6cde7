// A whole random run: what lies on the disk, the settings, the command line. Everything follows
// from the seed and the folder in which the run takes place.

#ifndef MORVEX_TESTS_WHOLE_RUN_RANDOM_CASE_H_
#define MORVEX_TESTS_WHOLE_RUN_RANDOM_CASE_H_

#include <cstdint>
#include <string>
#include <vector>

#include "random_list.h"
#include "random_source.h"

namespace morvex::whole_run {

// A file or folder to be made below the work folder, its parent folders first.
struct Entry {
  std::string name;  // path below the work folder
  bool is_folder = false;
  std::string bytes;
  unsigned permissions = 0644;
  std::int64_t modified_ns = 0;
};

struct RandomCase {
  std::vector<Entry> entries;
  // Name of the settings file below the work folder; it stands among the entries.
  std::string settings_name;
  // That file's path as the command line gives it.
  std::string settings_argument;
  std::vector<std::string> arguments;
  int delay_ms = 0;
  // What lay in the program folder before; empty: nothing.
  std::string old_init_dat;
  std::string old_log;
  // A few words for the failure text.
  std::string description;
};

// Files and folders below `folder` (a path below the work folder), `depth` levels deep.
void AddRandomTree(const std::string& folder, std::size_t depth, const RandomList& list,
                   RandomSource* random, std::vector<Entry>* entries);

// Lines 7 and following of a settings file.
std::string RandomExtensionLines(RandomSource* random);

// A past time that a copy can carry, or a time far in the future when `changed_after_arming`.
std::int64_t RandomTime(bool changed_after_arming, RandomSource* random);

RandomCase MakeRandomCase(std::uint64_t seed, const std::string& work_folder);

}  // namespace morvex::whole_run

#endif  // MORVEX_TESTS_WHOLE_RUN_RANDOM_CASE_H_
