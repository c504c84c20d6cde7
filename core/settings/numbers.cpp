#include "core/settings/numbers.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <optional>

namespace morvex {
namespace {

bool IsBlank(char character) { return character == ' ' || character == '\t'; }

bool IsDigit(char character) { return character >= '0' && character <= '9'; }

void SkipBlanks(std::string_view& text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
}

// Takes the number off the front of the text; nothing when the text does not start with one.
std::optional<double> TakeNumber(std::string_view& text) {
  std::string_view rest = text;
  const bool negative = rest.starts_with('-');
  if (negative || rest.starts_with('+')) rest.remove_prefix(1);
  const bool digits_first = !rest.empty() && IsDigit(rest[0]);
  const bool point_first = rest.size() >= 2 && rest[0] == '.' && IsDigit(rest[1]);
  if (!digits_first && !point_first) return std::nullopt;
  double value = 0;
  const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), value);
  const auto length = static_cast<std::size_t>(end - rest.data());
  if (error == std::errc::result_out_of_range) {
    // Too large for the type, or too near to zero: only the exponent's sign tells.
    const bool tiny = rest.substr(0, length).find("-") != std::string_view::npos;
    value = tiny ? 0 : std::numeric_limits<double>::infinity();
  }
  text = rest.substr(length);
  return negative ? -value : value;
}

Result<std::int16_t> Round(double value) {
  // nearbyint rounds halves to even: no room of the program changes the rounding mode.
  const double rounded = std::nearbyint(value);
  if (rounded < std::numeric_limits<std::int16_t>::min() ||
      rounded > std::numeric_limits<std::int16_t>::max()) {
    return ErrorNumber::kOverflow;
  }
  return static_cast<std::int16_t>(rounded);
}

}  // namespace

Result<std::int16_t> ToInteger16(std::string_view text) {
  SkipBlanks(text);
  const std::optional<double> number = TakeNumber(text);
  SkipBlanks(text);
  if (!number || !text.empty()) return ErrorNumber::kTypeMismatch;
  return Round(*number);
}

Result<std::int16_t> LeadingInteger16(std::string_view text) {
  SkipBlanks(text);
  return Round(TakeNumber(text).value_or(0));
}

}  // namespace morvex
