// What the program asks of the person in front of it: answers, file choices, and time for the
// windows. Implemented by each user interface.
#pragma once

#include <chrono>
#include <string>

namespace morvex {

enum class MessageButtons { kOk, kOkCancel, kYesNo };
enum class MessageIcon { kNone, kInformation };
enum class Answer { kOk, kCancel, kYes, kNo };

// A file dialog as it is set up before it is shown.
struct FileDialog {
  std::string default_extension;  // added to a name without one, no leading "."
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

  // Shows a message box and waits for the answer, one of those that the buttons allow. Lines of
  // `text` are parted by CR LF.
  virtual Answer ShowMessage(const std::string& text, MessageButtons buttons, MessageIcon icon) = 0;
  virtual FileChoice ChooseFileToOpen(const FileDialog& dialog) = 0;
  virtual FileChoice ChooseFileToSave(const FileDialog& dialog) = 0;

  // Handles the events that are pending; may run any handler, Exit included.
  virtual void HandlePendingEvents() = 0;
  // The same, after waiting for events up to `longest`.
  virtual void WaitForEvents(std::chrono::milliseconds longest) = 0;
};

}  // namespace morvex
