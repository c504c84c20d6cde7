#include "core/settings/character_code.h"

#include <cstddef>

namespace morvex {
namespace {

// Length in bytes of the UTF-8 sequence at the beginning of the text; 1 when none begins there.
std::size_t Utf8Length(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text.front());
  std::size_t length = 1;
  if (lead >= 0xC2 && lead <= 0xDF) length = 2;
  if (lead >= 0xE0 && lead <= 0xEF) length = 3;
  if (lead >= 0xF0 && lead <= 0xF4) length = 4;
  if (text.size() < length) return 1;
  for (std::size_t i = 1; i < length; ++i) {
    if ((static_cast<unsigned char>(text[i]) & 0xC0) != 0x80) return 1;
  }
  return length;
}

}  // namespace

std::uint8_t CharacterCode(const Program& program, std::string_view text) {
  if (text.empty()) return 0;
  if (program.host.system.Codec() == TextCodec::kUtf8 && Utf8Length(text) > 1) return 0;
  return static_cast<std::uint8_t>(text.front());
}

}  // namespace morvex
