// The engine that a run keeps from file to file.
#include "core/engine/passes/run_engine.h"

#include <gtest/gtest.h>

#include "tests/core/engine/engine_test.h"

namespace morvex::test {
namespace {

TEST(RunEngine, IsKeptWhileListAndWildcardStay) {
  EngineProgram program({{"a", "b"}}, '*');
  const RunEngine* const first = &EngineOf(program.program);
  EXPECT_EQ(&EngineOf(program.program), first);
  EXPECT_EQ(program.Process("aa"), "bb");
  EXPECT_EQ(&EngineOf(program.program), first);
}

TEST(RunEngine, ANewListIsUsedAtOnce) {
  EngineProgram program({{"a", "b"}}, '*');
  EXPECT_EQ(program.Process("ac"), "bc");
  program.SetList({{"c", "d"}}, '*');
  EXPECT_EQ(program.Process("ac"), "ad");
}

TEST(RunEngine, ANewWildcardIsUsedAtOnce) {
  EngineProgram program({{"a*c", "[*]"}}, '*');
  EXPECT_EQ(program.Process("aXc"), "[X]");
  program.program.settings.gJoker = 0;
  EXPECT_EQ(program.Process("aXc"), "aXc");
}

}  // namespace
}  // namespace morvex::test
