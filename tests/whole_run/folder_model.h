// The model of a run over files: which files are processed, copied unchanged or passed over, and
// how each of them changes the target, the counters, the log and the file-count label.

#ifndef MORVEX_TESTS_WHOLE_RUN_FOLDER_MODEL_H_
#define MORVEX_TESTS_WHOLE_RUN_FOLDER_MODEL_H_

#include <cstdint>
#include <string>
#include <vector>

#include "engine_model.h"
#include "run_model.h"

namespace morvex::whole_run {

inline constexpr char kTemporaryName[] = "tijdel.enc";

struct ProcessedFile {
  // Whether there are bytes to copy: false if a skip rule applies or `no_room` is true.
  bool made = false;
  // Whether the work file cannot be created, because a folder has its name (tijdel.enc).
  bool no_room = false;
  std::string bytes;
};

class FolderModel {
 public:
  FolderModel(const RunInput& input, const Settings& settings, EngineModel engine);

  // Handles the files directly in the source folder.
  void HandleTopFiles(const std::string& source, const std::string& target);
  // Handles the folders below `source`: in each, first its files and then its folders.
  void Walk(const std::string& source, const std::string& target);
  // Applies the skip rules and the substitution to one file. Counts and logs, but copies nothing.
  ProcessedFile ProcessFile(const std::string& folder, const std::string& name);

  // Both functions log only while logging is on.
  void Log(const std::string& text);
  void LogPattern(LogKind kind, const std::string& text);

  Disk& disk() { return disk_; }
  const std::vector<LogLine>& log() const { return log_; }
  std::int64_t files_done() const { return files_done_; }
  std::int64_t files_skipped() const { return files_skipped_; }
  // Returns the number of files and folders that a rule or an error has kept out of the target.
  std::int64_t left_out() const { return left_out_; }
  // Returns the number of copies that the run has made.
  std::int64_t copies() const { return copies_; }
  // Returns how many of left_out() make the run end with status 3. Work files, the target inside
  // the source, and folders that could not be created in the target do not count.
  std::int64_t missed() const { return missed_; }
  std::int64_t hits_total() const { return hits_total_; }
  std::int64_t bytes_total() const { return bytes_total_; }
  const std::string& total_files_caption() const { return total_files_caption_; }
  void set_total_files_caption(const std::string& caption) { total_files_caption_ = caption; }

 private:
  // The rules distinguish these results of a copy.
  enum class CopyError { kNone, kOntoItself, kOther };

  bool IsSelected(const std::string& key) const;
  bool IsPassedOverSilently(const std::string& folder, const std::string& name) const;
  void HandleFile(const std::string& folder, const std::string& name, const std::string& target,
                  const std::string& key);
  CopyError Copy(const std::string& source, const std::string& target, Node copy);
  void LogFailedCopy(const std::string& path, const ProcessedFile& processed, CopyError error);

  const RunInput& input_;
  const Settings& settings_;
  EngineModel engine_;
  Disk disk_;
  std::string target_root_;
  std::vector<LogLine> log_;
  std::int64_t files_done_ = 0;
  std::int64_t files_skipped_ = 0;
  std::int64_t left_out_ = 0;
  std::int64_t missed_ = 0;
  std::int64_t copies_ = 0;
  std::int64_t hits_total_ = 0;
  std::int64_t bytes_total_ = 0;
  std::string total_files_caption_;
};

// Returns the text behind the first "." of a name; empty if there is none.
std::string FileExtension(const std::string& name);

}  // namespace morvex::whole_run

#endif  // MORVEX_TESTS_WHOLE_RUN_FOLDER_MODEL_H_
