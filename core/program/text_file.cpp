#include "core/program/text_file.h"

#include <utility>

namespace morvex {
namespace {

constexpr std::size_t kBlock = std::size_t{256} << 10;

}  // namespace

ErrorNumber LineReader::Open(FileService& files, const std::string& path) {
  Result<std::unique_ptr<InputFile>> opened = files.OpenForReading(path);
  file_ = std::move(opened.value);
  error_ = opened.error;
  return error_;
}

bool LineReader::Next(std::string& line) {
  line.clear();
  bool any = false;
  for (;;) {
    if (start_ == block_.size() && !Refill()) break;
    any = true;
    const std::size_t end = block_.find('\n', start_);
    if (end != std::string::npos) {
      line.append(block_, start_, end - start_);
      start_ = end + 1;
      break;
    }
    line.append(block_, start_);
    start_ = block_.size();
  }
  if (line.ends_with('\r') && start_ > 0 && block_[start_ - 1] == '\n') line.pop_back();
  return any && error_ == ErrorNumber::kNone;
}

bool LineReader::Refill() {
  if (!file_ || error_ != ErrorNumber::kNone) return false;
  block_.resize(kBlock);
  start_ = 0;
  const Result<std::size_t> read = file_->ReadAt(offset_, block_.data(), kBlock);
  error_ = read.error;
  block_.resize(read ? read.value : 0);
  offset_ += block_.size();
  return !block_.empty();
}

}  // namespace morvex
