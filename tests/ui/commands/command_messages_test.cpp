// Errors and warnings: their form, their colours, and the option --strict.
#include "ui/commands/command_messages.h"

#include <gtest/gtest.h>

#include <sstream>

#include "tests/support/test_program.h"

namespace morvex::test {
namespace {

TEST(CommandMessagesTest, AMessageNamesItsPlaceAndItsKind) {
  std::ostringstream stream;
  CommandMessages messages(stream, MessageColours::kNone, false);
  messages.Warn("list.txt:12", "look here.");
  EXPECT_FALSE(messages.any_error());
  messages.Error("morvex-cli", "this is wrong.");
  EXPECT_TRUE(messages.any_error());
  EXPECT_EQ(stream.str(), "list.txt:12: warning: look here.\nmorvex-cli: error: this is wrong.\n");
}

TEST(CommandMessagesTest, StrictMakesAWarningAnError) {
  std::ostringstream stream;
  CommandMessages messages(stream, MessageColours::kNone, true);
  messages.Warn("list.txt:12", "look here.");
  EXPECT_TRUE(messages.any_error());
  EXPECT_EQ(stream.str(), "list.txt:12: error: look here.\n");
}

TEST(CommandMessagesTest, ANoteIsNoErrorStrictlySpeakingEither) {
  std::ostringstream stream;
  CommandMessages messages(stream, MessageColours::kNone, true);
  messages.Note("tree/pipe", "look here.");
  EXPECT_FALSE(messages.any_error());
  EXPECT_EQ(stream.str(), "tree/pipe: note: look here.\n");
}

TEST(CommandMessagesTest, ColoursEndWhereTheyShould) {
  std::ostringstream stream;
  CommandMessages messages(stream, MessageColours::kShown, false);
  messages.Warn("list.txt", "look here.");
  EXPECT_EQ(stream.str(), "\x1b[1mlist.txt\x1b[0m: \x1b[1;35mwarning\x1b[0m: look here.\n");
  EXPECT_EQ(Painted("x", Paint::kFinding, MessageColours::kShown), "\x1b[1;31mx\x1b[0m");
  EXPECT_EQ(Painted("x", Paint::kFinding, MessageColours::kNone), "x");
}

TEST(CommandMessagesTest, ColoursAreForTerminalsWhoseUserWantsThem) {
  FakeSystem system;
  system.environment = {"HOME=/home/ada", "TERM=xterm"};
  EXPECT_EQ(ColoursFor(system, true), MessageColours::kShown);
  EXPECT_EQ(ColoursFor(system, false), MessageColours::kNone);
  system.environment = {"HOME=/home/ada", "NO_COLOR="};
  EXPECT_EQ(ColoursFor(system, true), MessageColours::kShown);
  system.environment = {"HOME=/home/ada", "NO_COLOR=1"};
  EXPECT_EQ(ColoursFor(system, true), MessageColours::kNone);
  system.environment = {"TERM=dumb"};
  EXPECT_EQ(ColoursFor(system, true), MessageColours::kNone);
}

}  // namespace
}  // namespace morvex::test
