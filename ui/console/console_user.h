// The user service of the console program. Message boxes go to standard error, questions are asked
// only when standard input is a terminal, and a terminal shows a line of progress.
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
  bool shows_progress = true;            // on a terminal
};

class ConsoleUser : public UserService {
 public:
  explicit ConsoleUser(ConsoleStreams streams);

  // The program whose progress is shown and which an interrupt stops. Call before the first event.
  void Attach(Program& program) { program_ = &program; }

  // Answers OK boxes at once, and questions without a terminal with No or Cancel.
  Answer ShowMessage(const std::string& text, MessageButtons buttons, MessageIcon icon) override;
  // The console has no file dialogs: returns that the user cancelled.
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
