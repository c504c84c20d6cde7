// The report of a run, file by file, as one JSON document.
//
// The report holds paths and the texts of the list, so it must not go to whoever gets the copies.
#pragma once

#include <chrono>
#include <string>

#include "core/list/list_review.h"
#include "core/program/program.h"
#include "core/program/run_observer.h"

namespace morvex {

// Whether the file is the report of a run: a JSON object that begins with this program's name and
// has the parts of a report.
bool HoldsRunReport(FileService& files, const std::string& path);

class RunReport : public RunObserver {
 public:
  // Create the report just before the run, because the constructor notes the time. `program` must
  // outlive the report.
  explicit RunReport(const Program& program);

  void OnOutcome(const Outcome& outcome) override;

  // Returns the whole document. `settings_file` may be empty.
  std::string Text(const std::string& version, int exit_status, const ListReview& review,
                   const std::string& settings_file) const;

 private:
  struct Totals {
    std::int64_t processed = 0;
    std::int64_t copied = 0;
    std::int64_t passed_over = 0;
    std::int64_t failed = 0;
    std::int64_t stopped = 0;
    std::int64_t not_reached = 0;
  };

  const Program& program_;
  const WallTime started_;
  const std::chrono::milliseconds steady_start_;
  std::chrono::milliseconds last_;
  std::string entries_;  // the elements of the array "files", one per line
  Totals totals_;
};

}  // namespace morvex
