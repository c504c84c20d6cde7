// Makes a random run: a list, a tree, a target that is missing, empty or filled, and settings. The
// settings name the other three in one of the ways in which users write paths.

#include "random_case.h"

#include <utility>

namespace morvex::whole_run {
namespace {

enum class Kind { kFolder, kTargetInside, kSingleFile, kTargetMissing, kSourceMissing };

struct Plan {
  std::string work;
  RandomList list;
  Kind kind = Kind::kFolder;
  std::string source;  // path below the work folder
  std::string target;  // path below the work folder
};

Kind RandomKind(RandomSource* random) {
  const std::size_t chance = random->Below(100);
  if (chance < 72) {
    return Kind::kFolder;
  }
  if (chance < 80) {
    return Kind::kTargetInside;
  }
  if (chance < 92) {
    return Kind::kSingleFile;
  }
  return chance < 97 ? Kind::kTargetMissing : Kind::kSourceMissing;
}

std::string WrittenPath(const Plan& plan, const std::string& name, RandomSource* random) {
  const bool ends_free = plan.kind != Kind::kSingleFile;
  switch (random->Below(14)) {
    case 0:
      return plan.work + "/" + name + (ends_free ? "/" : "");
    case 1:
      return plan.work + "/" + name + (ends_free ? "//" : "");
    case 2:
      return plan.work + "//" + name;
    case 3:
      return plan.work + "///" + name + (ends_free ? "/" : "");
    case 4:
      return plan.work + "/./" + name;
    case 5:
      return name;
    case 6:
      return ".." + plan.work.substr(plan.work.rfind('/')) + "/" + name;
    default:
      return plan.work + "/" + name;
  }
}

Entry MakeEntry(const std::string& name, const std::string& bytes, RandomSource* random) {
  Entry entry;
  entry.name = name;
  entry.bytes = bytes;
  entry.modified_ns = RandomTime(false, random);
  return entry;
}

Entry MakeFolderEntry(const std::string& name) {
  Entry entry;
  entry.name = name;
  entry.is_folder = true;
  return entry;
}

const Entry* FindEntry(const RandomCase& made, const std::string& name) {
  for (const Entry& entry : made.entries) {
    if (entry.name == name) {
      return &entry;
    }
  }
  return nullptr;
}

// Returns whether a single-file run may have this entry as its source. The entry must be a file
// whose name is not the work file's.
bool IsSource(const Entry& entry) {
  const std::string temporary = "/tijdel.enc";
  return !entry.is_folder && (entry.name.size() < temporary.size() ||
                              entry.name.substr(entry.name.size() - temporary.size()) != temporary);
}

void ChooseSourceAndTarget(Plan* plan, RandomSource* random) {
  const std::vector<std::string> sources{"src",          "src", "src", "src", "recycled/src",
                                         "x_Restore/in", "src", "src", "src", "my Recycler2"};
  const std::vector<std::string> targets{
      "out",          "out", "out", "out", "deep/er/out",
      "ReCycled/out", "out", "out", "out", "system volume information/o"};
  plan->source = random->Pick(sources);
  plan->target = random->Pick(targets);
  if (plan->kind == Kind::kTargetInside) {
    const std::vector<std::string> inside{"/out", "/one/out", "/one", "/two/three/out"};
    plan->target = plan->source + random->Pick(inside);
  }
}

// Fills the target as it may be before a run: with files named like the copies, folders in place of
// files, files in place of folders, and things that have nothing to do with the run.
void AddStaleTarget(const Plan& plan, RandomSource* random, RandomCase* made) {
  if (FindEntry(*made, plan.target) == nullptr) {
    made->entries.push_back(MakeFolderEntry(plan.target));
  }
  if (plan.kind == Kind::kTargetInside) {
    if (FindEntry(*made, plan.target + "/stale.txt") == nullptr) {
      made->entries.push_back(MakeEntry(plan.target + "/stale.txt", "aab stale", random));
    }
    return;
  }
  const std::vector<Entry> sources = made->entries;
  for (const Entry& source : sources) {
    const bool below = source.name.compare(0, plan.source.size() + 1, plan.source + "/") == 0;
    if (!below || !random->OneIn(8)) {
      continue;
    }
    const std::string name = plan.target + source.name.substr(plan.source.size());
    const std::string parent = name.substr(0, name.rfind('/'));
    const Entry* parent_entry = FindEntry(*made, parent);
    if (parent_entry == nullptr || !parent_entry->is_folder || FindEntry(*made, name) != nullptr) {
      continue;
    }
    const bool as_folder = source.is_folder != random->OneIn(6);
    made->entries.push_back(as_folder ? MakeFolderEntry(name) : MakeEntry(name, "old", random));
  }
  if (random->OneIn(3)) {
    made->entries.push_back(MakeEntry(plan.target + "/left alone.txt", "aabbcc", random));
  }
}

void ChooseSingleFile(Plan* plan, RandomSource* random, RandomCase* made) {
  std::vector<std::string> files;
  for (const Entry& entry : made->entries) {
    if (IsSource(entry)) {
      files.push_back(entry.name);
    }
  }
  if (files.empty()) {
    files.push_back(plan->source + "/only.txt");
    made->entries.push_back(
        MakeEntry(files.back(), RandomContents(plan->list, 100, random), random));
  }
  made->entries.push_back(MakeFolderEntry("copies"));
  made->entries.push_back(MakeEntry("copies/old.txt", "an older copy", random));
  const std::vector<std::string> targets{"copy.bin", "copies/new.txt", "copies/old.txt", "copies",
                                         "nowhere/x.txt"};
  plan->source = random->Pick(files);
  plan->target = random->OneIn(10) ? plan->source : random->Pick(targets);
}

std::string ListPath(const Plan& plan, RandomSource* random, RandomCase* made) {
  const std::string name = "the list.txt";
  const std::size_t chance = random->Below(20);
  if (chance == 0) {
    return plan.work + "/no list.txt";
  }
  if (chance == 1) {
    made->entries.push_back(MakeFolderEntry(name));
    return plan.work + "/" + name;
  }
  made->entries.push_back(MakeEntry(name, plan.list.bytes, random));
  return chance == 2 ? name : plan.work + "/" + name;
}

void AddSettings(const Plan& plan, RandomSource* random, RandomCase* made) {
  const std::vector<std::string> log_lines{
      "log=1", "log=1", "log=1",  "log=1", "log=1", "log=1",   "log=1",   "log=0",
      "log=2", "1",     "log= 1", "log=x", "log=3", "log=1.5", "log=0.5", "log=-1"};
  std::string bytes = WrittenPath(plan, plan.source, random) + "\r\n";
  bytes += WrittenPath(plan, plan.target, random) + "\r\n";
  bytes += ListPath(plan, random, made) + "\r\n";
  bytes += random->Pick(log_lines) + "\r\n";
  bytes += plan.list.separator_line + "\r\n" + plan.list.joker_line + "\r\n";
  bytes += RandomExtensionLines(random);
  if (random->OneIn(10)) {
    std::string bare;
    for (std::size_t at = 0; at < bytes.size(); ++at) {
      if (bytes.compare(at, 2, "\r\n") != 0) {
        bare += bytes[at];
      }
    }
    bytes = bare;
  }
  const std::vector<std::string> names{"job.dat", "Init.dat", "conf/night job.dat"};
  made->settings_name = random->Pick(names);
  made->entries.push_back(MakeEntry(made->settings_name, bytes, random));
  const bool relative = random->OneIn(4);
  made->settings_argument = relative ? made->settings_name : plan.work + "/" + made->settings_name;
}

void AddCommandLine(RandomSource* random, RandomCase* made) {
  made->arguments = {"-if", made->settings_argument};
  if (random->OneIn(10)) {
    made->delay_ms = static_cast<int>(random->Between(1, 30));
    const std::vector<std::string> delay{"-dy", std::to_string(made->delay_ms)};
    const bool in_front = random->OneIn(2);
    made->arguments.insert(in_front ? made->arguments.begin() : made->arguments.end(),
                           delay.begin(), delay.end());
  }
  if (random->OneIn(4)) {
    made->old_init_dat = "an\r\nolder\r\nfile\r\nlog=0\r\nsep=#\r\njok=#\r\n1.old\r\n";
  }
  if (random->OneIn(4)) {
    made->old_log = "\"07:08:09 an earlier run\"\r\n";
  }
}

}  // namespace

RandomCase MakeRandomCase(std::uint64_t seed, const std::string& work_folder) {
  RandomSource random(seed);
  RandomCase made;
  Plan plan;
  plan.work = work_folder;
  plan.list = MakeRandomList(&random);
  plan.kind = RandomKind(&random);
  ChooseSourceAndTarget(&plan, &random);
  AddRandomTree(plan.source, random.Below(5), plan.list, &random, &made.entries);
  switch (plan.kind) {
    case Kind::kFolder:
      made.description = "folder run";
      AddStaleTarget(plan, &random, &made);
      break;
    case Kind::kTargetInside:
      made.description = "target inside the source";
      AddStaleTarget(plan, &random, &made);
      break;
    case Kind::kSingleFile:
      made.description = "single file";
      ChooseSingleFile(&plan, &random, &made);
      break;
    case Kind::kTargetMissing:
      made.description = "target missing";
      break;
    case Kind::kSourceMissing:
      made.description = "source missing";
      made.entries.push_back(MakeFolderEntry(plan.target));
      plan.source = "no such source";
      break;
  }
  AddSettings(plan, &random, &made);
  AddCommandLine(&random, &made);
  return made;
}

}  // namespace morvex::whole_run
