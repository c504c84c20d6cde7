// One Program object is one running program: all its state, and the host it runs on. It is made in
// main (or in a test, as often as wanted), passed by reference, and outlives every handler call.
//
// The state is open to all rooms; what may be done with it lives with its subject: settings, list,
// engine, run.
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "core/engine/matching/capture_state.h"
#include "core/forms/main_form.h"
#include "core/forms/options_form.h"
#include "core/forms/replacements_form.h"
#include "core/host/host.h"
#include "core/program/run_observer.h"
#include "core/tables/substitution_tables.h"

namespace morvex {

// The separator of list files where none is set.
inline constexpr const char* kDefaultSeparator = "|";

// What the user set up, kept in the settings file from one use to the next, and what the command
// line asked for.
struct Settings {
  std::string gSeparator;
  std::uint8_t gJoker = 0;  // the wildcard's character code; 0: there is none
  std::string SubstitutieFile;
  bool CommandLine_SET = false;   // the command line names a settings file
  std::string InitFilePath;       // that file
  std::int16_t AutoRunDelay = 0;  // milliseconds before an unattended run
  bool ReadingInitFile = false;
  bool AutoRunFromInitFile = false;  // the named settings file was opened: run unattended
  ErrorNumber list_file_error = ErrorNumber::kNone;  // what ended the last reading of a list early
  ErrorNumber init_file_error = ErrorNumber::kNone;  // why the settings file could not be opened
  std::string LoggingStatusText;
  bool AllFilesSelected = false;  // every file is processed, whatever the extension filter says
  std::int64_t N_Extension_Selected = 0;
  std::int64_t N_Extension_Total = 0;
};

struct Locations {
  std::string help_file;
  std::string gLocalAppData;
  std::string gCommonFilesLocation;
};

// How the last Go ended.
enum class RunEnd { kNone, kCouldNotRun, kStopped, kFinished };

struct ElapsedTime {
  int elapsed = 0;  // seconds; negative when the run passed midnight
  int minutes = 0;
  int seconds = 0;
};

// Counters and flags of a run. Counts are 64-bit, so they stay true for any tree.
struct RunState {
  std::int64_t FilesDone = 0;
  std::int64_t FilesSkipped = 0;
  std::int64_t HitsTotal = 0;
  std::int64_t Hits_Per_File = 0;
  std::int64_t BytesTotal = 0;
  std::int64_t BytesBefore = 0;  // bytes of the files handled before the current one
  std::int64_t FileOffset = 0;   // bytes of the current file that are read
  int ProgressScale = 0;         // power of ten by which bytes are divided for the progress bar
  bool ScaleFixed = false;
  std::int64_t SourceSize = 0;  // bytes of the source folder
  bool LoggingOn = false;
  bool RunStarted = false;
  bool working = false;  // from the start of Go to its end
  RunEnd end = RunEnd::kNone;
  WallTime ArmedAt{};
  ElapsedTime elapsed;
  std::string ResultTail;  // second line of the result label
  // What the labels do not tell. What is passed over has no copy on purpose, what failed could not
  // be copied. The first two count only what somebody may miss; by reason everything counts.
  std::int64_t passed_over_files = 0;
  std::int64_t left_out_folders = 0;
  std::int64_t failed_files = 0;
  std::map<PassedOver, std::int64_t> passed_over_by_reason;  // files
  std::map<PassedOver, std::int64_t> left_out_by_reason;     // folders
  std::map<ErrorNumber, std::int64_t> failed_by_error;
  // Something of the source has no copy that somebody may miss.
  bool LacksCopies() const {
    return passed_over_files > 0 || left_out_folders > 0 || failed_files > 0;
  }
  Outcome first_failure;
  std::int64_t copies = 0;  // whole ones, processed or unchanged
  // Of a folder run that finished: files in the target that are none of its copies.
  bool target_was_empty = false;
  std::int64_t other_files = 0;
  ErrorNumber other_files_error = ErrorNumber::kNone;  // why they could not be counted
  bool disk_full = false;                              // which ended the run
  // What a stop request left: the path of a copy that is incomplete, and of the work file beside
  // its source.
  std::string cut_short;
  std::string left_work_file;
  // By row of the tables; collected only for an observer.
  std::vector<std::int64_t> hits_of_rows;
};

class RunEngine;  // of the engine's room: what it keeps from file to file

struct Program {
  explicit Program(Host services) : host(services) {}
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  Host host;
  bool Beeindigd = false;  // the program or the run is to stop
  Settings settings;
  Locations locations;
  SubstitutionTables tables;
  RunState run;
  CaptureState capture;
  std::shared_ptr<RunEngine> engine;  // made when the first file needs it
  RunObserver* observer = nullptr;    // is told of every outcome; outlives the run
  MainForm frmMorvex;
  OptionsForm frmOpties;
  ReplacementsForm frmReplacements;
  std::chrono::milliseconds last_yield{0};  // host.system.SteadyTime() of it
};

// Handles pending window events when 15 ms have passed since that was done last. Long work calls it
// often: at every file, and within a file after every few thousand steps.
void YieldToWindows(Program& program);

// A run works, or a list is being read into the grid: commands that would change what it works with
// do nothing until it has ended.
bool IsBusy(const Program& program);

// The wildcard as a text; empty when there is none.
std::string JokerText(const Program& program);

// Unloads a window: it is gone from the screen. The program has ended when none is loaded.
void Unload(Form& window);

}  // namespace morvex
