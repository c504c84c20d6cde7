// What became of a run, file by file, as one JSON document.
//
// It holds the paths and the list's left texts, so it is not for handing over.
#pragma once

#include <chrono>
#include <string>

#include "core/list/list_review.h"
#include "core/program/program.h"
#include "core/program/run_observer.h"

namespace morvex {

class RunReport : public RunObserver {
 public:
  // Listens from now on: the run starts next. `program` must outlive the report.
  explicit RunReport(const Program& program);

  void OnOutcome(const Outcome& outcome) override;

  // The whole document. `list_lines` are those of the list's rows; `settings_file` may be empty.
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
  std::string entries_;  // of the array "files", one a line
  Totals totals_;
};

}  // namespace morvex
