// The person in front of the screen: message boxes, file dialogs, and time for the windows.
#pragma once

#include "core/host/user_service.h"
#include "ui/qt/code_page.h"

namespace morvex {

class QtUser : public UserService {
 public:
  explicit QtUser(TextCodec codec) : page_(codec) {}

  Answer ShowMessage(const std::string& text, MessageButtons buttons, MessageIcon icon) override;
  FileChoice ChooseFileToOpen(const FileDialog& dialog) override;
  FileChoice ChooseFileToSave(const FileDialog& dialog) override;
  void HandlePendingEvents() override;
  void WaitForEvents(std::chrono::milliseconds longest) override;

 private:
  CodePage page_;
};

}  // namespace morvex
