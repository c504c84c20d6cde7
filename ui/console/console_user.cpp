#include "ui/console/console_user.h"

#include <algorithm>
#include <string_view>
#include <thread>
#include <utility>

#include "core/run/main_window_events.h"
#include "core/text/shown_text.h"
#include "ui/console/console_text.h"

namespace morvex {
namespace {

constexpr std::chrono::milliseconds kProgressInterval{100};
constexpr std::chrono::milliseconds kLongestSleep{15};

}  // namespace

ConsoleUser::ConsoleUser(ConsoleStreams streams) : streams_(std::move(streams)) {}

Answer ConsoleUser::ShowMessage(const std::string& text, MessageButtons buttons,
                                MessageIcon /*icon*/) {
  if (streams_.answers_yes && buttons == MessageButtons::kYesNo) return Answer::kYes;
  if (streams_.answers_yes && buttons == MessageButtons::kOkCancel) return Answer::kOk;
  ClearProgress();
  streams_.error << PrintableLines(text);
  switch (buttons) {
    case MessageButtons::kYesNo:
      return AskYes() ? Answer::kYes : Answer::kNo;
    case MessageButtons::kOkCancel:
      return AskYes() ? Answer::kOk : Answer::kCancel;
    case MessageButtons::kOk:
      break;
  }
  streams_.error << "\n" << std::flush;
  return Answer::kOk;
}

FileChoice ConsoleUser::ChooseFileToOpen(const FileDialog& /*dialog*/) {
  return {kDialogCancelled, ""};
}

FileChoice ConsoleUser::ChooseFileToSave(const FileDialog& /*dialog*/) {
  return {kDialogCancelled, ""};
}

void ConsoleUser::HandlePendingEvents() {
  if (program_ == nullptr) return;
  if (!interrupted_ && streams_.stop_requested && streams_.stop_requested()) {
    interrupted_ = true;
    cmdExit_Click(*program_);
  }
  ShowProgressLine();
}

void ConsoleUser::WaitForEvents(std::chrono::milliseconds longest) {
  std::this_thread::sleep_for(std::min(longest, kLongestSleep));
  HandlePendingEvents();
}

void ConsoleUser::ClearProgress() {
  if (shown_length_ == 0) return;
  streams_.error << '\r' << std::string(shown_length_, ' ') << '\r' << std::flush;
  shown_length_ = 0;
}

void ConsoleUser::ShowProgressLine() {
  if (!streams_.error_is_terminal || !streams_.shows_progress) return;
  const bool waiting = program_->frmMorvex.Timer1.enabled;
  if (!waiting && !program_->run.working) return;
  const std::chrono::milliseconds now = program_->host.system.SteadyTime();
  if (now - last_shown_ < kProgressInterval) return;
  last_shown_ = now;
  std::string line = waiting ? Printable(program_->frmMorvex.lblTotalFiles.caption.get())
                             : ProgressLine(*program_);
  // The last column stays free: a terminal would wrap the line there.
  const int columns = streams_.columns ? streams_.columns() : 0;
  if (columns > 1) line.resize(std::min(line.size(), static_cast<std::size_t>(columns - 1)));
  const std::size_t length = line.size();
  line.append(shown_length_ - std::min(shown_length_, length), ' ');
  streams_.error << '\r' << line << std::flush;
  shown_length_ = std::max(shown_length_, length);
}

bool ConsoleUser::AskYes() {
  if (!streams_.input_is_terminal) {
    streams_.error << "\nThere is no terminal to answer on, so the answer is no.\n" << std::flush;
    return false;
  }
  streams_.error << " [y/N] " << std::flush;
  std::string answer;
  // Without an answer (an interrupt, the end of the input) the user has not ended the line.
  if (!std::getline(streams_.input, answer)) streams_.error << "\n" << std::flush;
  HandlePendingEvents();
  // Some terminals end a line with CR LF.
  if (answer.ends_with('\r')) answer.pop_back();
  return answer == "y" || answer == "Y" || answer == "yes" || answer == "Yes";
}

}  // namespace morvex
