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

bool IsBusy(const Program& program) {
  return program.run.working || program.frmReplacements.importing;
}

void Unload(Form& form) {
  form.loaded = false;
  form.visible = false;
}

}  // namespace morvex
