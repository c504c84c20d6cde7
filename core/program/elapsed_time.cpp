#include "core/program/elapsed_time.h"

namespace morvex {

int SecondsOfDay(const TimeOfDay& time) {
  return time.hour * 3600 + time.minute * 60 + time.second;
}

ElapsedTime ElapsedBetween(int start_seconds, int end_seconds) {
  const int elapsed = end_seconds - start_seconds;
  return {elapsed, elapsed / 60, elapsed % 60};
}

std::string MinutesAndSeconds(const ElapsedTime& time) {
  return std::to_string(time.minutes) + " min " + std::to_string(time.seconds) + " sec";
}

}  // namespace morvex
