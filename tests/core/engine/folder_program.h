// A program that is ready for a folder run, and ways to stop the run and to make file calls fail.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "core/engine/passes/folder_passes.h"
#include "tests/core/engine/engine_test.h"

namespace morvex::test {

// Source /s, target /t; every "a" becomes "b"; .txt files are selected; logging is on.
class FolderProgram : public EngineProgram {
 public:
  FolderProgram() : EngineProgram(Rows{{"a", "b"}}) {
    files.AddFolder("/s");
    files.AddFolder("/t");
    Select({".txt"});
    program.run.LoggingOn = true;
    program.run.ArmedAt = system.now;
  }

  void Select(const std::vector<std::string>& extensions) {
    program.request.extensions = extensions;
  }

  // Runs both passes, as a folder run does.
  void RunPasses(const std::string& source = "/s", const std::string& target = "/t") {
    FolderPrepass(program, source, target);
    if (!program.Beeindigd) FolderWalk(program, source, target);
  }

  // Calls `handler` at every yield to window events. The clock advances so fast that no yield is
  // left out.
  void OnEveryYield(std::function<void()> handler) {
    system.step = std::chrono::milliseconds(15);
    user.on_events = std::move(handler);
  }
  // Requests a stop in the middle of the first file that is long enough for that (see kLongText).
  void StopInMidFile() {
    OnEveryYield([this] {
      if (program.run.FileOffset > 0) program.Beeindigd = true;
    });
  }

  std::string Counts() const { return program.frmMorvex.lblTotalFiles.caption; }
  std::string HitsShown() const { return program.frmMorvex.lblPercentage.caption; }
};

// A text that is long enough for a stop in the middle of its processing, and the result of the
// whole processing.
inline const std::string kLongText(200'000, 'a');
inline const std::string kLongResult(200'000, 'b');

// Returns a function that makes every call named `call` fail with `error` on paths that end with
// `path_end`.
inline FailCall FailOn(const std::string& call, const std::string& path_end, ErrorNumber error) {
  return [=](const std::string& made, const std::string& path) {
    return made == call && path.ends_with(path_end) ? error : ErrorNumber::kNone;
  };
}

}  // namespace morvex::test
