// One Program object is one running program: all its state, and the host it runs on. It is made in
// main or in a test, passed by reference, and outlives every handler call.
//
// Its members are public. The functions that change them are in the folders of their subjects, such
// as core/settings, core/list, core/engine and core/run.
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
#include "core/program/run_request.h"
#include "core/tables/substitution_tables.h"

namespace morvex {

// The separator of list files when the user has set none.
inline constexpr const char* kDefaultSeparator = "|";

// What the user set up (the settings file keeps it between uses) and what the command line asked
// for.
struct Settings {
  std::string gSeparator;
  std::uint8_t gJoker = 0;  // the wildcard's character code; 0: there is none
  std::string SubstitutieFile;
  bool CommandLine_SET = false;   // the command line names a settings file
  std::string InitFilePath;       // path of that settings file
  std::int16_t AutoRunDelay = 0;  // milliseconds before an unattended run
  bool ReadingInitFile = false;
  bool AutoRunFromInitFile = false;                  // run unattended with the named settings file
  ErrorNumber list_file_error = ErrorNumber::kNone;  // why rows of the list are missing
  ErrorNumber init_file_error = ErrorNumber::kNone;  // why the settings file was not read whole
  std::string LoggingStatusText;
  std::int64_t N_Extension_Selected = 0;
  std::int64_t N_Extension_Total = 0;
};

struct Locations {
  std::string help_file;
  std::string gLocalAppData;
  std::string gCommonFilesLocation;
};

// How the last run ended; kNone before the end of the first run.
enum class RunEnd { kNone, kCouldNotRun, kStopped, kFinished };

struct ElapsedTime {
  int elapsed = 0;  // seconds; negative when the run passed midnight
  int minutes = 0;
  int seconds = 0;
};

// Counters and flags of a run.
struct RunState {
  std::int64_t FilesDone = 0;
  std::int64_t FilesSkipped = 0;
  std::int64_t HitsTotal = 0;
  std::int64_t Hits_Per_File = 0;
  std::int64_t BytesTotal = 0;
  std::int64_t BytesBefore = 0;  // of the files before the current one
  std::int64_t FileOffset = 0;   // bytes of the current file that have been read
  int ProgressScale = 0;         // the progress bar counts in units of 10^ProgressScale bytes
  bool ScaleFixed = false;
  std::int64_t SourceSize = 0;  // bytes of the source folder
  bool LoggingOn = false;
  bool RunStarted = false;
  bool working = false;  // from the start of PerformRun to its end
  RunEnd end = RunEnd::kNone;
  WallTime ArmedAt{};
  ElapsedTime elapsed;
  std::string ResultTail;  // second line of the result label
  // Files and folders without a copy: passed over on purpose, or failed. The first two counters
  // leave out what nobody misses, such as stale work files; the counts by reason include all.
  std::int64_t passed_over_files = 0;
  std::int64_t left_out_folders = 0;
  std::int64_t failed_files = 0;
  std::map<PassedOver, std::int64_t> passed_over_by_reason;  // files
  std::map<PassedOver, std::int64_t> left_out_by_reason;     // folders
  std::map<ErrorNumber, std::int64_t> failed_by_error;
  // Whether a file or folder that somebody may miss has no copy.
  bool LacksCopies() const {
    return passed_over_files > 0 || left_out_folders > 0 || failed_files > 0;
  }
  Outcome first_failure;
  std::int64_t copies = 0;  // complete ones, processed or unchanged
  // The next three describe the target folder. target_was_empty is set before a folder run, the
  // other two only after a folder run that finished.
  bool target_was_empty = false;
  std::int64_t other_files = 0;  // files in the target that this run did not make
  ErrorNumber other_files_error = ErrorNumber::kNone;  // why the other files could not be counted
  bool disk_full = false;                              // a full disk ended the run
  // Paths, empty if there is none: of the incomplete copy that a stop request left, and of a work
  // file that was left beside its source.
  std::string cut_short;
  std::string left_work_file;
  // The number of matches of each row of the tables; counted only if there is an observer.
  std::vector<std::int64_t> hits_of_rows;
};

class RunEngine;  // in core/engine/passes: what a run keeps from file to file

struct Program {
  explicit Program(Host services) : host(services) {}
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  Host host;
  bool Beeindigd = false;  // the program or the run is to stop
  Settings settings;
  Locations locations;
  SubstitutionTables tables;
  RunRequest request;  // of the last run, or of the one that works
  RunState run;
  CaptureState capture;
  std::shared_ptr<RunEngine> engine;  // made when the first file needs it
  RunObserver* observer = nullptr;    // hears every outcome; outlives the run
  MainForm frmMorvex;
  OptionsForm frmOpties;
  ReplacementsForm frmReplacements;
  std::chrono::milliseconds last_yield{0};  // host.system.SteadyTime() at the last YieldToWindows
};

// Handles pending window events, at most every 15 ms. Long work calls this often: at every file,
// and within a file about every 65,000 steps of the matching.
void YieldToWindows(Program& program);

// Whether a run works or a list is being read into the grid. Commands that would interfere do
// nothing until that has ended.
bool IsBusy(const Program& program);

// Unloads a form: its window is gone. The program has ended when no form is loaded.
void Unload(Form& form);

}  // namespace morvex
