// The core's UserService on the screen: message boxes, file dialogs and event handling.
#pragma once

#include <QString>
#include <optional>

#include "core/host/user_service.h"
#include "ui/qt/code_page.h"

class QFileDialog;

namespace morvex {

class QtUser : public UserService {
 public:
  // Copies `file_names` and converts paths and messages with the copy. Messages hold paths and the
  // program's own words, which are ASCII.
  explicit QtUser(const CodePage& file_names) : page_(file_names) {}

  // While the program is ending, or when it ends before the user answers, returns No, Cancel, or OK
  // where there is no other button.
  Answer ShowMessage(const std::string& text, MessageButtons buttons, MessageIcon icon) override;
  FileChoice ChooseFileToOpen(const FileDialog& dialog) override;
  FileChoice ChooseFileToSave(const FileDialog& dialog) override;
  void HandlePendingEvents() override;
  void WaitForEvents(std::chrono::milliseconds longest) override;

 private:
  FileChoice Choose(QFileDialog& chooser, const FileDialog& dialog);

  CodePage page_;
};

}  // namespace morvex
