// Bytes of files, names and lists as text to be shown: always UTF-8, with control characters of
// ASCII and what is no text as \xHH, and further control characters and those that turn the order
// of others or have no width as \uHHHH, so that nothing can steer a terminal, hide in a line of
// output or break it.
//
// A backslash of the text itself stands as it is, as the separators of a path do, and twice where
// it would be taken for an escape or where a backslash follows. So no two texts are shown alike.
#pragma once

#include <string>
#include <string_view>

#include "core/leftovers/spelling.h"

namespace morvex {

// A text of a list: UTF-8, or else Windows-1252.
std::string ShownText(std::string_view bytes);

// A path or a name: bytes that are no UTF-8 become \xHH.
std::string ShownPath(std::string_view bytes);

// A piece of a file that is read in this encoding (kUtf8 and kBytes: as UTF-8, or else
// Windows-1252). Characters that the piece's ends cut are left out.
std::string ShownPiece(std::string_view bytes, Encoding encoding);

}  // namespace morvex
