#include "core/settings/character_code.h"

#include "core/text/utf8.h"

namespace morvex {

std::uint8_t CharacterCode(const Program& program, std::string_view text) {
  if (text.empty()) return 0;
  if (program.host.system.Codec() == TextCodec::kUtf8 && ReadUtf8(text).size > 1) return 0;
  return static_cast<std::uint8_t>(text.front());
}

}  // namespace morvex
