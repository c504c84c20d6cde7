#include "host/windows/windows_code_page.h"

#include <cstddef>

#include "host/windows/windows_api.h"

namespace morvex::windows {
namespace {

constexpr unsigned kUsualPage = 1252;
constexpr unsigned kFirstBeyondAscii = 128;
constexpr wchar_t kNoCharacter = 0xFFFD;

bool HasOneByteForEach(unsigned page) {
  CPINFO info{};
  return GetCPInfo(page, &info) != 0 && info.MaxCharSize == 1;
}

}  // namespace

CodePage::CodePage(unsigned number) : number_(HasOneByteForEach(number) ? number : kUsualPage) {
  for (unsigned code = 0; code < kFirstBeyondAscii; ++code) {
    wide_[code] = static_cast<wchar_t>(code);
  }
  for (unsigned code = kFirstBeyondAscii; code < wide_.size(); ++code) {
    const char byte = static_cast<char>(code);
    wchar_t character = 0;
    if (MultiByteToWideChar(number_, 0, &byte, 1, &character, 1) != 1) continue;
    if (character < kFirstBeyondAscii || character == kNoCharacter) continue;
    if (bytes_.emplace(character, byte).second) wide_[code] = character;
  }
}

std::string CodePage::Bytes(std::wstring_view text) const {
  std::string bytes;
  bytes.reserve(text.size());
  for (const wchar_t character : text) {
    if (character < kFirstBeyondAscii) {
      bytes.push_back(static_cast<char>(character));
    } else {
      const auto found = bytes_.find(character);
      bytes.push_back(found != bytes_.end() ? found->second : kUnspellable);
    }
  }
  return bytes;
}

std::optional<std::wstring> CodePage::Wide(std::string_view bytes) const {
  std::wstring text;
  text.reserve(bytes.size());
  for (const char byte : bytes) {
    const wchar_t character = wide_[static_cast<unsigned char>(byte)];
    if (character == 0 && byte != 0) return std::nullopt;
    text.push_back(character);
  }
  return text;
}

const CodePage& SystemCodePage() {
  static const CodePage page(GetACP());
  return page;
}

}  // namespace morvex::windows
