// The files' side of the model: which file is processed, which is copied as it is, which is passed
// over; what each leaves in the target, in the counters, in the log and in the file-count label.

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
  // False: there is nothing to copy, because a skip rule fired,
  bool made = false;
  // or because a folder has the name of the temporary file.
  bool no_room = false;
  std::string bytes;
};

class FolderModel {
 public:
  FolderModel(const RunInput& input, const Settings& settings, EngineModel engine);

  // The files that lie directly in the source folder.
  void HandleTopFiles(const std::string& source, const std::string& target);
  // The folders below `source`, each with its files first and its own folders afterwards.
  void Walk(const std::string& source, const std::string& target);
  // Skip rules and substitution of one file; counts and logs, copies nothing.
  ProcessedFile ProcessFile(const std::string& folder, const std::string& name);

  // Nothing is logged while logging is off.
  void Log(const std::string& text);
  void LogPattern(LogKind kind, const std::string& text);

  Disk& disk() { return disk_; }
  const std::vector<LogLine>& log() const { return log_; }
  std::int64_t files_done() const { return files_done_; }
  std::int64_t files_skipped() const { return files_skipped_; }
  // Files and folders that did not go to the target, by a rule or for an error.
  std::int64_t left_out() const { return left_out_; }
  // Copies that went to the target, whole.
  std::int64_t copies() const { return copies_; }
  // Those of what did not that belong to the source.
  std::int64_t missed() const { return missed_; }
  std::int64_t hits_total() const { return hits_total_; }
  std::int64_t bytes_total() const { return bytes_total_; }
  const std::string& total_files_caption() const { return total_files_caption_; }
  void set_total_files_caption(const std::string& caption) { total_files_caption_ = caption; }

 private:
  // Error numbers of a copy, as far as the rules fix them.
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

// The text after the first "." of a name; empty when there is none.
std::string FileExtension(const std::string& name);

}  // namespace morvex::whole_run

#endif  // MORVEX_TESTS_WHOLE_RUN_FOLDER_MODEL_H_
