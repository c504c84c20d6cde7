// What a run keeps from file to file: the compiled list, and the buffers that files pass through.
#pragma once

#include <cstdint>

#include "core/engine/matching/input_window.h"
#include "core/engine/matching/positioned_output.h"
#include "core/engine/matching/substitution.h"
#include "core/program/program.h"

namespace morvex {

class RunEngine {
 public:
  RunEngine(const SubstitutionTables& tables, std::uint8_t joker)
      : substitution(tables, joker), version_(tables.version), joker_(joker) {}

  bool Fits(const SubstitutionTables& tables, std::uint8_t joker) const {
    return version_ == tables.version && joker_ == joker;
  }

  InputWindow input;
  PositionedOutput output;
  Substitution substitution;

 private:
  std::uint64_t version_;
  std::uint8_t joker_;
};

// Returns the program's engine. Makes a new one if the list or the wildcard has changed since the
// last call.
RunEngine& EngineOf(Program& program);

}  // namespace morvex
