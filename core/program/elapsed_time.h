// The time a run took, from the seconds of the day at its start and end.
#pragma once

#include <string>

#include "core/program/program.h"

namespace morvex {

int SecondsOfDay(const TimeOfDay& time);

// No correction is made at midnight: a run that passes it shows a negative time.
ElapsedTime ElapsedBetween(int start_seconds, int end_seconds);

// Returns a text such as "2 min 5 sec".
std::string MinutesAndSeconds(const ElapsedTime& time);

}  // namespace morvex
