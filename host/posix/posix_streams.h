// The two kinds of open file that the core holds.
#pragma once

#include <memory>
#include <string>

#include "core/host/file_service.h"
#include "host/posix/posix_descriptor.h"
#include "host/posix/posix_write_behind.h"

namespace morvex::posix {

// `looked_up`: a look has just shown the path to be an ordinary file.
Result<std::unique_ptr<InputFile>> OpenInput(const std::string& path, bool looked_up = false);
// `claim`, unless null, keeps the file for this process after it has been closed too, see
// posix_claim.h.
Result<std::unique_ptr<OutputFile>> CreateOutput(const std::string& path, std::uint32_t permissions,
                                                 std::shared_ptr<WriteBehind> behind = nullptr,
                                                 Descriptor* claim = nullptr);

}  // namespace morvex::posix
