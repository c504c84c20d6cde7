// A program that has started up with a settings file and a list, ready for Anonymize and Go.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/list/grid.h"
#include "core/program/main_window_paths.h"
#include "core/run/main_window_events.h"
#include "core/run/run_driver.h"
#include "core/run/start_up.h"
#include "tests/core/engine/folder_program.h"

namespace morvex::test {

// The settings file of a run from `source` to `target` with the list /list.txt. The extension .txt
// is selected.
inline std::string SettingsText(const std::string& source, const std::string& target,
                                bool logging = true) {
  return source + "\r\n" + target + "\r\n/list.txt\r\nlog=" + (logging ? "1" : "0") +
         "\r\nsep=|\r\njok=*\r\n1.txt\r\n";
}

// The list: every "a" becomes "b".
inline const std::string kListText = "a|b||\r\n";

// Notes the loaded forms in the order in which they are unloaded. `program` must not outlive the
// object.
class UnloadOrder {
 public:
  explicit UnloadOrder(Program& program) {
    Watch(program.frmMorvex, "main");
    Watch(program.frmOpties, "options");
    Watch(program.frmReplacements, "editor");
  }

  std::vector<std::string> names;

 private:
  void Watch(Form& window, const char* name) {
    if (!window.loaded) return;
    window.changes.on_change = [this, &window, name, noted = false]() mutable {
      if (window.loaded || noted) return;
      noted = true;
      names.emplace_back(name);
    };
  }
};

class RunProgram : public TestProgram {
 public:
  explicit RunProgram(const std::string& source = "/s", const std::string& target = "/t",
                      bool logging = true) {
    files.AddFolder("/s");
    files.AddFolder("/t");
    files.AddFile("/list.txt", kListText);
    files.AddFile("/program/Init.dat", SettingsText(source, target, logging));
    EXPECT_EQ(StartUp(program), ErrorNumber::kNone);
  }

  void Arm() { cmdAnonymize_Click(program); }
  void Go() { cmdGo_Click(program); }
  void ArmAndGo() {
    Arm();
    Go();
  }

  MainForm& window() { return program.frmMorvex; }
  TextBox& source_box() { return window().Text1(kSourceBox); }
  TextBox& target_box() { return window().Text1(kTargetBox); }

  // Calls `handler` at every yield to window events. The clock advances so fast that no yield is
  // left out.
  void OnEveryYield(std::function<void()> handler) {
    system.step = std::chrono::milliseconds(15);
    user.on_events = std::move(handler);
  }

  // Expects a program that is ready for a run: Go is visible and enabled, Anonymize and the path
  // boxes are disabled.
  void ExpectArmed() {
    EXPECT_TRUE(window().cmdGo.enabled);
    EXPECT_TRUE(window().cmdGo.visible);
    EXPECT_EQ(window().cmdGo.caption.get(), "GO !");
    EXPECT_FALSE(window().cmdAnonymize.enabled);
    EXPECT_FALSE(source_box().enabled);
    EXPECT_FALSE(target_box().enabled);
  }
  // Expects an idle program, as after a folder run or after a run whose target could not be made.
  void ExpectIdle() {
    EXPECT_FALSE(window().cmdGo.enabled);
    EXPECT_TRUE(window().cmdGo.visible);
    EXPECT_TRUE(window().cmdAnonymize.enabled);
    EXPECT_TRUE(source_box().enabled);
    EXPECT_TRUE(target_box().enabled);
    EXPECT_EQ(window().mouse_pointer, MousePointer::kDefault);
  }
};

}  // namespace morvex::test
