// A program that is armed for a run, and ways to let its host fail.
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

  // Both passes, as a run makes them.
  void RunPasses(const std::string& source = "/s", const std::string& target = "/t") {
    FolderPrepass(program, source, target);
    if (!program.Beeindigd) FolderWalk(program, source, target);
  }

  // Every wait for window events comes about, and is given to `handler`.
  void OnEveryYield(std::function<void()> handler) {
    system.step = std::chrono::milliseconds(15);
    user.on_events = std::move(handler);
  }
  // A stop request in the middle of the file that is long enough to be left in its middle.
  void StopInMidFile() {
    OnEveryYield([this] {
      if (program.run.FileOffset > 0) program.Beeindigd = true;
    });
  }

  std::string Counts() const { return program.frmMorvex.lblTotalFiles.caption; }
  std::string HitsShown() const { return program.frmMorvex.lblPercentage.caption; }
};

// Long enough to be left in its middle, and its result.
inline const std::string kLongText(200'000, 'a');
inline const std::string kLongResult(200'000, 'b');

// Every call of this name on a path that ends so fails.
inline FailCall FailOn(const std::string& call, const std::string& path_end, ErrorNumber error) {
  return [=](const std::string& made, const std::string& path) {
    return made == call && path.ends_with(path_end) ? error : ErrorNumber::kNone;
  };
}

}  // namespace morvex::test
