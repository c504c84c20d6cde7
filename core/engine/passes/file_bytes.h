// Open files as the source and the sink of a substitution.
#pragma once

#include "core/engine/matching/byte_io.h"
#include "core/host/file_service.h"

namespace morvex {

// The file must outlive the source.
class FileSource : public ByteSource {
 public:
  explicit FileSource(InputFile& file) : file_(file) {}
  Result<std::size_t> ReadAt(std::uint64_t offset, char* into, std::size_t size) override {
    return file_.ReadAt(offset, into, size);
  }
  bool MustWait() override { return file_.MustWait(); }

 private:
  InputFile& file_;
};

// The file must outlive the sink.
class FileSink : public ByteSink {
 public:
  explicit FileSink(OutputFile& file) : file_(file) {}
  ErrorNumber WriteAt(std::uint64_t offset, std::string_view bytes) override {
    return file_.WriteAt(offset, bytes);
  }
  ErrorNumber Close() override { return file_.Close(); }

 private:
  OutputFile& file_;
};

}  // namespace morvex
