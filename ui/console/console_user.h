// The user service of the console program. Messages go to standard error. Questions are asked only
// if standard input is a terminal. A line of progress is shown only if standard error is a
// terminal.
#pragma once

#include <chrono>
#include <functional>
#include <istream>
#include <ostream>
#include <string>

#include "core/program/program.h"

namespace morvex {

// The streams must outlive the ConsoleUser.
struct ConsoleStreams {
  std::istream& input;
  std::ostream& error;
  bool input_is_terminal = false;
  bool error_is_terminal = false;
  std::function<int()> columns;          // width of the terminal
  std::function<bool()> stop_requested;  // whether the user interrupted the program
  bool answers_yes = false;              // answers every question with yes, without asking
  bool shows_progress = true;            // without effect if `error` is no terminal
};

class ConsoleUser : public UserService {
 public:
  explicit ConsoleUser(ConsoleStreams streams);

  // Sets the program whose progress is shown and that an interrupt stops. Until this call, events
  // do nothing.
  void Attach(Program& program) { program_ = &program; }

  // Answers a message that has only OK at once. If standard input is no terminal, answers a
  // question with No or Cancel, unless `answers_yes` is set.
  Answer ShowMessage(const std::string& text, MessageButtons buttons, MessageIcon icon) override;
  // The console has no file dialogs: both functions return kDialogCancelled.
  FileChoice ChooseFileToOpen(const FileDialog& dialog) override;
  FileChoice ChooseFileToSave(const FileDialog& dialog) override;
  void HandlePendingEvents() override;
  void WaitForEvents(std::chrono::milliseconds longest) override;

  // Removes the progress line. Call before anything else is written to the terminal.
  void ClearProgress();

  bool interrupted() const { return interrupted_; }

 private:
  void ShowProgressLine();
  bool AskYes();

  ConsoleStreams streams_;
  Program* program_ = nullptr;
  std::chrono::milliseconds last_shown_{0};
  std::size_t shown_length_ = 0;
  bool interrupted_ = false;
};

}  // namespace morvex
