// What the program asks of the user: answers, file choices, and time for the windows to handle
// events. Each user interface implements it.
#pragma once

#include <chrono>
#include <string>

namespace morvex {

enum class MessageButtons { kOk, kOkCancel, kYesNo };
enum class MessageIcon { kNone, kInformation };
enum class Answer { kOk, kCancel, kYes, kNo };

// How a file dialog looks when it opens.
struct FileDialog {
  std::string default_extension;  // without "."; added to a name that has no extension
  std::string filter;             // TEXT|PATTERN
  std::string initial_folder;
  std::string file_name;
};

// The error number of a file dialog that was cancelled.
inline constexpr int kDialogCancelled = 32755;

struct FileChoice {
  int error = 0;     // 0, or kDialogCancelled
  std::string path;  // only without an error
};

class UserService {
 public:
  virtual ~UserService() = default;

  // Shows a message box and waits for the answer, which is one of `buttons`. CR LF separates the
  // lines of `text`.
  virtual Answer ShowMessage(const std::string& text, MessageButtons buttons, MessageIcon icon) = 0;
  virtual FileChoice ChooseFileToOpen(const FileDialog& dialog) = 0;
  virtual FileChoice ChooseFileToSave(const FileDialog& dialog) = 0;

  // Handles all pending events. This may run any event handler, Exit included.
  virtual void HandlePendingEvents() = 0;
  // Waits up to `longest` for an event, then handles all pending events.
  virtual void WaitForEvents(std::chrono::milliseconds longest) = 0;
};

}  // namespace morvex
