// A program on a host that the test controls: files in memory, a clock that stands or moves on as
// the test says, prepared answers, recorded messages.
#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "core/program/program.h"
#include "tests/support/memory_files.h"

namespace morvex::test {

class FakeSystem : public SystemService {
 public:
  std::string program_folder = "/program";
  std::string executable_name = "morvex-cli";
  std::string command_line;
  std::vector<std::string> environment;
  WallTime now{std::chrono::hours(24 * 20000)};
  // Each call of LocalTimeOfDay takes the next time; the last time stays.
  std::deque<TimeOfDay> times_of_day = {{12, 0, 0}};
  std::string short_date = "11/21/26";
  std::string time_text = "12:34:56";
  std::chrono::milliseconds steady{1000};
  // How far the steady clock moves on each time it is read. With 15 ms or more, every
  // YieldToWindows handles events.
  std::chrono::milliseconds step{0};
  TextCodec codec = TextCodec::kSingleByte;
  bool redirected_store = false;
  std::vector<std::string> browsed;  // files that the file browser was asked to show

  std::string ProgramFolder() override { return program_folder; }
  std::string ExecutableName() override { return executable_name; }
  std::string CommandLineText() override { return command_line; }
  std::string EnvironmentEntry(int index) override {
    const auto place = static_cast<std::size_t>(index - 1);
    return place < environment.size() ? environment[place] : std::string();
  }
  WallTime Now() override { return now; }
  TimeOfDay LocalTimeOfDay() override {
    const TimeOfDay time = times_of_day.front();
    if (times_of_day.size() > 1) times_of_day.pop_front();
    return time;
  }
  std::string ShortDate() override { return short_date; }
  std::string TimeText() override { return time_text; }
  std::chrono::milliseconds SteadyTime() override { return steady += step; }
  TextCodec Codec() override { return codec; }
  bool HasRedirectedStore() override { return redirected_store; }
  void StartFileBrowser(const std::string& file) override { browsed.push_back(file); }
};

struct ShownMessage {
  std::string text;
  MessageButtons buttons = MessageButtons::kOk;
  MessageIcon icon = MessageIcon::kNone;
  bool operator==(const ShownMessage&) const = default;
};

class ScriptedUser : public UserService {
 public:
  std::vector<ShownMessage> messages;
  std::deque<Answer> answers;      // to the questions, in turn; if there is none: No or Cancel
  std::deque<FileChoice> choices;  // in the dialogs, in turn; if there is none: cancelled
  std::vector<FileDialog> opened;  // dialogs as they were shown
  std::vector<FileDialog> saved;
  std::function<void()> on_events;  // called whenever pending events are handled
  std::function<void(std::chrono::milliseconds)> on_wait;
  int events_handled = 0;

  Answer ShowMessage(const std::string& text, MessageButtons buttons, MessageIcon icon) override {
    messages.push_back({text, buttons, icon});
    if (buttons == MessageButtons::kOk) return Answer::kOk;
    if (answers.empty()) {
      return buttons == MessageButtons::kYesNo ? Answer::kNo : Answer::kCancel;
    }
    const Answer answer = answers.front();
    answers.pop_front();
    return answer;
  }
  FileChoice ChooseFileToOpen(const FileDialog& dialog) override { return Choose(dialog, opened); }
  FileChoice ChooseFileToSave(const FileDialog& dialog) override { return Choose(dialog, saved); }
  void HandlePendingEvents() override {
    ++events_handled;
    if (on_events) on_events();
  }
  void WaitForEvents(std::chrono::milliseconds longest) override {
    if (on_wait) on_wait(longest);
    HandlePendingEvents();
  }

 private:
  FileChoice Choose(const FileDialog& dialog, std::vector<FileDialog>& shown) {
    shown.push_back(dialog);
    if (choices.empty()) return {kDialogCancelled, ""};
    FileChoice choice = choices.front();
    choices.pop_front();
    return choice;
  }
};

// Rows of a replacement list, left and right.
using Rows = std::vector<std::pair<std::string, std::string>>;

struct TestProgram {
  // With separator '\\' the program lies in C:\Morvex, else in /program.
  explicit TestProgram(char separator = '/') : files(separator) {
    if (separator == '\\') system.program_folder = "C:\\Morvex";
    files.AddFolder(system.program_folder);
    program.settings.gSeparator = "|";
  }

  // Opens the editor with these rows, as if they had been typed.
  void TypeRows(const Rows& rows);
  // As TypeRows, and applies the rows with OK.
  void ApplyRows(const Rows& rows, std::uint8_t joker = 0);
  // Returns the rows in the grid.
  Rows GridRows() const;
  // Returns the messages of the run log in order, without time stamps and quotes; empty if there is
  // no log.
  std::vector<std::string> LogMessages() const;

  MemoryFiles files;
  FakeSystem system;
  ScriptedUser user;
  Program program{Host{files, system, user}};
};

}  // namespace morvex::test
