// Bytes as text that a terminal may show: the text cannot steer the terminal, break a line of
// output or stay unseen.
//
// The Shown functions return valid UTF-8. Their escapes: \xHH for a control character of ASCII and
// for a byte that is part of no character; \uHHHH for U+0080 to U+009F and for characters that have
// no width or change the order of others (U+061C, U+200B to U+200F, U+2028 to U+202E, U+2060 to
// U+2069, U+FEFF). A backslash of the text is doubled in front of another backslash and in front of
// characters that would make it look like an escape; elsewhere it stays single, so that Windows
// paths stay readable. So only an escape looks like an escape.
//
// Printable escapes only control characters and keeps all other bytes.
#pragma once

#include <string>
#include <string_view>

#include "core/text/encoding.h"

namespace morvex {

// Returns a text of a list, read as UTF-8 or, if it is malformed UTF-8, as Windows-1252.
std::string ShownText(std::string_view bytes);

// Returns a path or a name, read as UTF-8. Each byte that is part of no character becomes \xHH, so
// that different paths become different texts.
std::string ShownPath(std::string_view bytes);

// Returns a piece of a file in its encoding; kBytes is treated as kUtf8. A UTF-8 character that the
// piece's beginning or end cuts is left out; a piece that is malformed elsewhere is read as
// Windows-1252. A UTF-16 unit that is no character is shown as U+FFFD; an odd last byte is left
// out.
std::string ShownPiece(std::string_view bytes, Encoding encoding);

// Returns the bytes with control characters as \xHH: bytes 00 to 1F and 7F, and bytes 80 to 9F
// unless they belong to a UTF-8 sequence of two or more bytes (see Utf8Sequence) that encodes no
// control character. All other bytes stay, malformed ones too.
std::string Printable(std::string_view text);

// `text` is a path, CR LF and a message. Returns both through Printable, with a line feed between
// them. The last CR LF is the one between them, because a path may hold CR LF. A text without CR LF
// is one line.
std::string PrintableLines(std::string_view text);

}  // namespace morvex
