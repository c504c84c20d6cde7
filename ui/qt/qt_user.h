// The person in front of the screen: message boxes, file dialogs, and time for the windows.
#pragma once

#include <QString>
#include <optional>

#include "core/host/user_service.h"
#include "ui/qt/code_page.h"

class QFileDialog;

namespace morvex {

class QtUser : public UserService {
 public:
  // Messages are the program's own words, in ASCII, and paths.
  explicit QtUser(const CodePage& file_names) : page_(file_names) {}

  // Asked while the program is ending, or without an answer when it ends: No, Cancel, or OK where
  // there is nothing else.
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
