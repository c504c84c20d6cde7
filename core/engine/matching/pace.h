// Counts the steps (see SubstitutionWatcher) and the hits (the matches) of one substitution, and
// asks the substitution's watcher now and then whether to go on.
#pragma once

#include <cstdint>

#include "core/engine/matching/substitution_watcher.h"

namespace morvex {

class Pace {
 public:
  void Open(SubstitutionWatcher& watcher) {
    watcher_ = &watcher;
    steps_ = kStepsBetweenQuestions;
    hits_ = 0;
    stopped_ = false;
  }

  void AddSteps(std::uint64_t count) { steps_ += count; }
  void AddHits(std::int64_t count) { hits_ += count; }

  // If enough steps have been made since the last question, asks the watcher whether to go on.
  // `read` is the number of input bytes done. Returns false once the watcher has asked to stop.
  bool MayGoOn(std::uint64_t read) {
    if (!stopped_ && steps_ >= kStepsBetweenQuestions) {
      steps_ = 0;
      TellHits();
      stopped_ = !watcher_->KeepGoing(read);
    }
    return !stopped_;
  }
  bool stopped() const { return stopped_; }

  void TellHits() {
    watcher_->OnHits(hits_);
    hits_ = 0;
  }

 private:
  static constexpr std::uint64_t kStepsBetweenQuestions = 65'536;

  SubstitutionWatcher* watcher_ = nullptr;
  std::uint64_t steps_ = 0;  // since the last question
  std::int64_t hits_ = 0;    // not yet reported to the watcher
  bool stopped_ = false;
};

}  // namespace morvex
