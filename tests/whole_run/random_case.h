// A random run: the files on the disk, the settings and the command line. All of it follows from
// the seed and the folder in which the run takes place.

#ifndef MORVEX_TESTS_WHOLE_RUN_RANDOM_CASE_H_
#define MORVEX_TESTS_WHOLE_RUN_RANDOM_CASE_H_

#include <cstdint>
#include <string>
#include <vector>

#include "random_list.h"
#include "random_source.h"

namespace morvex::whole_run {

// A file or folder to be created below the work folder; missing parent folders are created first.
struct Entry {
  std::string name;  // path below the work folder
  bool is_folder = false;
  std::string bytes;
  unsigned permissions = 0644;
  std::int64_t modified_ns = 0;
};

struct RandomCase {
  std::vector<Entry> entries;
  // The settings file's path below the work folder; the file is one of the entries.
  std::string settings_name;
  // The settings file's path as the command line names it.
  std::string settings_argument;
  std::vector<std::string> arguments;
  int delay_ms = 0;
  // The bytes of Init.dat and of the run log before the run; empty if the file is missing.
  std::string old_init_dat;
  std::string old_log;
  // A few words for the message of a failed test.
  std::string description;
};

// Adds `folder` (a path below the work folder) with random files, and sub-folders down to `depth`
// levels below it.
void AddRandomTree(const std::string& folder, std::size_t depth, const RandomList& list,
                   RandomSource* random, std::vector<Entry>* entries);

// Returns random extension lines: a settings file from line 7 on.
std::string RandomExtensionLines(RandomSource* random);

// Returns a random modification time in nanoseconds since 1970: from 2000 to 2011, or in 2099 or
// later if `changed_after_arming`.
std::int64_t RandomTime(bool changed_after_arming, RandomSource* random);

RandomCase MakeRandomCase(std::uint64_t seed, const std::string& work_folder);

}  // namespace morvex::whole_run

#endif  // MORVEX_TESTS_WHOLE_RUN_RANDOM_CASE_H_
