// Key codes and modifiers for the key handlers.
#pragma once

namespace morvex {

inline constexpr int kKeyEnter = 13;
inline constexpr int kKeyEscape = 27;
inline constexpr int kKeyUp = 38;
inline constexpr int kKeyDown = 40;
inline constexpr int kKeyDelete = 46;

// Bits of the shift state.
inline constexpr int kShiftControl = 2;
inline constexpr int kShiftAlt = 4;

}  // namespace morvex
