// What cannot change while the process lives (its path, arguments, locale) is determined once, at
// the start; everything else at every call.
#include "host/posix/posix_system.h"

#include <langinfo.h>
#include <locale.h>
#include <signal.h>
#include <strings.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <string_view>
#include <utility>

#include "host/posix/posix_browser.h"
#include "host/posix/posix_errors.h"
#include "host/posix/posix_paths.h"
#include "host/posix/posix_standard_streams.h"
#include "host/posix/posix_time.h"

extern char** environ;

namespace morvex {
namespace {

using posix::PathParts;

bool IsThere(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0;
}

std::string OwnPath(const char* name) {
  const Result<std::string> link = posix::ReadLink("/proc/self/exe");
  return link ? posix::ProgramPathFromLink(link.value) : posix::ProgramPathFromName(name);
}

std::string WithoutExtension(std::string name) {
  constexpr std::string_view kExtension = ".exe";
  if (name.size() > kExtension.size() && name.ends_with(kExtension)) {
    name.resize(name.size() - kExtension.size());
  }
  return name;
}

std::string Joined(int argc, char** argv) {
  std::string text;
  for (int index = 1; index < argc; ++index) {
    if (index > 1) text += ' ';
    text += argv[index];
  }
  return text;
}

// Returns a locale with the user's character set and time formats, as far as they are installed,
// and "C" for everything else.
locale_t UserLocale() {
  locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
  for (const int part : {LC_CTYPE_MASK, LC_TIME_MASK}) {
    const locale_t extended = newlocale(part, "", locale);
    if (extended != nullptr) locale = extended;
  }
  return locale;
}

timespec Moment(clockid_t clock) {
  timespec moment{};
  clock_gettime(clock, &moment);
  return moment;
}

// Returns the current time in the time zone of the system or of the variable TZ. Each call reads
// the time zone anew.
tm LocalNow() {
  tzset();
  const time_t now = Moment(CLOCK_REALTIME).tv_sec;
  tm local{};
  localtime_r(&now, &local);
  return local;
}

}  // namespace

namespace posix {

std::string ProgramPathFromLink(const std::string& shown) {
  constexpr std::string_view kMark = " (deleted)";
  if (!shown.ends_with(kMark) || IsThere(shown)) return shown;
  return shown.substr(0, shown.size() - kMark.size());
}

std::string ProgramPathFromName(const std::string& name) {
  if (name.empty()) return "/";
  if (name.find('/') == std::string::npos) {
    const char* variable = getenv("PATH");
    const std::string_view folders = variable != nullptr ? variable : "";
    std::size_t start = 0;
    while (start <= folders.size()) {
      const std::size_t end = std::min(folders.find(':', start), folders.size());
      const std::string folder(folders.substr(start, end - start));
      start = end + 1;
      const std::string path = (folder.empty() ? "." : folder) + "/" + name;
      if (access(path.c_str(), X_OK) != 0) continue;
      const Result<std::string> absolute = AbsolutePath(path);
      if (absolute) return absolute.value;
    }
  }
  const Result<std::string> absolute = AbsolutePath(name);
  return absolute ? absolute.value : name;
}

}  // namespace posix

PosixSystemService::PosixSystemService(int argc, char** argv)
    : command_line_(Joined(argc, argv)), locale_(UserLocale()) {
  OccupyMissingStandardStreams();
  PathParts parts = posix::SplitPath(OwnPath(argc > 0 ? argv[0] : ""));
  program_folder_ = std::move(parts.folder);
  executable_name_ = WithoutExtension(std::move(parts.name));
  signal(SIGXFSZ, SIG_IGN);
}

PosixSystemService::~PosixSystemService() {
  if (locale_ != nullptr) freelocale(locale_);
}

std::string PosixSystemService::EnvironmentEntry(int index) {
  if (index < 1 || environ == nullptr) return {};
  char** entry = environ;
  for (int passed = 1; *entry != nullptr && passed < index; ++passed) ++entry;
  return *entry != nullptr ? *entry : std::string();
}

WallTime PosixSystemService::Now() { return posix::ToWallTime(Moment(CLOCK_REALTIME)); }

TimeOfDay PosixSystemService::LocalTimeOfDay() {
  const tm now = LocalNow();
  return {now.tm_hour, now.tm_min, now.tm_sec};
}

std::string PosixSystemService::FormatNow(const char* format) const {
  const tm now = LocalNow();
  std::array<char, 512> text{};
  const std::size_t length = locale_ != nullptr
                                 ? strftime_l(text.data(), text.size(), format, &now, locale_)
                                 : strftime(text.data(), text.size(), format, &now);
  return std::string(text.data(), length);
}

std::string PosixSystemService::ShortDate() { return FormatNow("%x"); }

std::string PosixSystemService::TimeText() {
  // A log calls this function for every line, many times a second: format each second only once.
  const time_t now = Moment(CLOCK_REALTIME).tv_sec;
  if (time_text_.empty() || now != time_text_second_) {
    time_text_ = FormatNow("%X");
    time_text_second_ = now;
  }
  return time_text_;
}

std::chrono::milliseconds PosixSystemService::SteadyTime() {
  const timespec moment = Moment(CLOCK_MONOTONIC);
  return std::chrono::duration_cast<std::chrono::milliseconds>(
      std::chrono::seconds(moment.tv_sec) + std::chrono::nanoseconds(moment.tv_nsec));
}

TextCodec PosixSystemService::Codec() {
  if (locale_ == nullptr) return TextCodec::kSingleByte;
  const char* codeset = nl_langinfo_l(CODESET, locale_);
  const bool is_utf8 = strcasecmp(codeset, "UTF-8") == 0 || strcasecmp(codeset, "utf8") == 0;
  return is_utf8 ? TextCodec::kUtf8 : TextCodec::kSingleByte;
}

void PosixSystemService::StartFileBrowser(const std::string& file) {
  try {
    posix::OpenFolderOf(file);
  } catch (...) {
    // A browser that does not start is not reported.
  }
}

}  // namespace morvex
