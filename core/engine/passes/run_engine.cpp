#include "core/engine/passes/run_engine.h"

#include <memory>

namespace morvex {

RunEngine& EngineOf(Program& program) {
  const std::uint8_t joker = program.settings.gJoker;
  if (!program.engine || !program.engine->Fits(program.tables, joker)) {
    program.engine = std::make_shared<RunEngine>(program.tables, joker);
  }
  return *program.engine;
}

}  // namespace morvex
