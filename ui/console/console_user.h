// The program's user at a terminal, or behind a pipe: message boxes go to standard error, a
// question is asked only where somebody can answer, and a line of progress is kept up to date on a
// terminal.
#pragma once

#include <chrono>
#include <functional>
#include <istream>
#include <ostream>
#include <string>

#include "core/program/program.h"

namespace morvex {

// What the console stands on; the streams must outlive it.
struct ConsoleStreams {
  std::istream& input;
  std::ostream& error;
  bool input_is_terminal = false;
  bool error_is_terminal = false;
  std::function<int()> columns;          // of the terminal
  std::function<bool()> stop_requested;  // the user interrupted the program
  bool answers_yes = false;              // to every question, without asking it
  bool shows_progress = true;            // on a terminal
};

class ConsoleUser : public UserService {
 public:
  explicit ConsoleUser(ConsoleStreams streams);

  // The program whose progress is shown and which an interrupt stops. Before the first event.
  void Attach(Program& program) { program_ = &program; }

  // OK boxes are answered at once; a question without a terminal is answered No or Cancel.
  Answer ShowMessage(const std::string& text, MessageButtons buttons, MessageIcon icon) override;
  // There is nothing to choose with: cancelled.
  FileChoice ChooseFileToOpen(const FileDialog& dialog) override;
  FileChoice ChooseFileToSave(const FileDialog& dialog) override;
  void HandlePendingEvents() override;
  void WaitForEvents(std::chrono::milliseconds longest) override;

  // Takes the progress line off the terminal, before anything else is written there.
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
