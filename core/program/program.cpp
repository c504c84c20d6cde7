#include "core/program/program.h"

namespace morvex {
namespace {

constexpr std::chrono::milliseconds kYieldInterval{15};

}  // namespace

void YieldToWindows(Program& program) {
  const std::chrono::milliseconds now = program.host.system.SteadyTime();
  if (now - program.last_yield < kYieldInterval) return;
  program.host.user.HandlePendingEvents();
  program.last_yield = program.host.system.SteadyTime();
}

void Unload(Window& window) {
  window.visible = false;
  window.loaded = false;
}

}  // namespace morvex
