#include "core/settings/numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <system_error>

namespace morvex {
namespace {

bool IsBlank(char character) { return character == ' ' || character == '\t'; }

bool IsDigit(char character) { return character >= '0' && character <= '9'; }

void SkipBlanks(std::string_view& text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
}

// `number` must be out of the range of long double. Returns true if it is too close to zero, false
// if it is too large. The exponent and the position of the first digit other than 0 decide.
bool IsTiny(std::string_view number) {
  const std::size_t mark = std::min(number.find_first_of("eE"), number.size());
  const std::string_view digits = number.substr(0, mark);
  std::string_view exponent = number.substr(std::min(mark + 1, number.size()));
  const bool negative = exponent.starts_with('-');
  if (negative || exponent.starts_with('+')) exponent.remove_prefix(1);
  std::int32_t power = 0;
  const auto parsed = std::from_chars(exponent.data(), exponent.data() + exponent.size(), power);
  if (parsed.ec == std::errc::result_out_of_range) return negative;
  const std::size_t point = std::min(digits.find('.'), digits.size());
  const std::size_t first = digits.find_first_of("123456789");
  const std::int64_t before_point =
      static_cast<std::int64_t>(point) - static_cast<std::int64_t>(first);
  return before_point + (negative ? -power : power) <= 0;
}

// Removes the number from the beginning of the text and returns it. If there is none, returns
// nothing and leaves the text as it is.
std::optional<long double> TakeNumber(std::string_view& text) {
  std::string_view rest = text;
  const bool negative = rest.starts_with('-');
  if (negative || rest.starts_with('+')) rest.remove_prefix(1);
  const bool digits_first = !rest.empty() && IsDigit(rest[0]);
  const bool point_first = rest.size() >= 2 && rest[0] == '.' && IsDigit(rest[1]);
  if (!digits_first && !point_first) return std::nullopt;
  long double value = 0;
  const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), value);
  const auto length = static_cast<std::size_t>(end - rest.data());
  if (error == std::errc::result_out_of_range) {
    value = IsTiny(rest.substr(0, length)) ? 0 : std::numeric_limits<long double>::infinity();
  }
  text = rest.substr(length);
  return negative ? -value : value;
}

Result<std::int16_t> Round(long double value) {
  // nearbyint rounds halves to even, because the program never changes the rounding mode.
  const long double rounded = std::nearbyint(value);
  if (rounded < std::numeric_limits<std::int16_t>::min() ||
      rounded > std::numeric_limits<std::int16_t>::max()) {
    return ErrorNumber::kOverflow;
  }
  return static_cast<std::int16_t>(rounded);
}

}  // namespace

Result<std::int16_t> ToInteger16(std::string_view text) {
  SkipBlanks(text);
  const std::optional<long double> number = TakeNumber(text);
  SkipBlanks(text);
  if (!number || !text.empty()) return ErrorNumber::kTypeMismatch;
  return Round(*number);
}

Result<std::int16_t> LeadingInteger16(std::string_view text) {
  SkipBlanks(text);
  return Round(TakeNumber(text).value_or(0));
}

}  // namespace morvex
