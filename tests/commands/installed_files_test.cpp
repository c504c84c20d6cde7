// The manual page and the completions name every option of the commands, and every installed file
// is in its place.
#include <gtest/gtest.h>

#include <set>

#include "tests/commands/command_scene.h"

namespace morvex::commands {
namespace {

// Returns every word of a help text that begins with two hyphens.
std::set<std::string> OptionsOf(const std::string& help) {
  std::set<std::string> options;
  for (std::size_t at = help.find("--"); at != std::string::npos; at = help.find("--", at + 2)) {
    const std::size_t end = help.find_first_not_of("abcdefghijklmnopqrstuvwxyz-", at);
    options.insert(help.substr(at, end - at));
  }
  return options;
}

std::string Packaged(const std::string& name) {
  return whole_run::ReadWholeFile(SourceRoot() + "/packaging/linux/" + name);
}

TEST(InstalledFilesTest, EveryOptionIsInTheManualPageAndInTheCompletions) {
  const CommandScene scene;
  std::string manual = Packaged("morvex-cli.1.in");
  std::erase(manual, '\\');  // the manual has a backslash in front of every hyphen
  const std::string bash = Packaged("completions/morvex-cli.bash");
  const std::string zsh = Packaged("completions/_morvex-cli");
  const std::string fish = Packaged("completions/morvex-cli.fish");
  for (const std::string command : {"run", "check", "filter"}) {
    // The options stand in front of the examples.
    std::string help = scene.Shell("morvex-cli " + command + " --help").output;
    help.resize(help.find("Examples:"));
    const std::set<std::string> options = OptionsOf(help);
    ASSERT_GE(options.size(), 6u);
    for (const std::string& option : options) {
      EXPECT_NE(manual.find(option), std::string::npos) << option;
      EXPECT_NE(bash.find(option), std::string::npos) << option;
      EXPECT_NE(zsh.find(option + "["), std::string::npos) << option;
      EXPECT_NE(fish.find("-l " + option.substr(2) + " "), std::string::npos) << option;
    }
    EXPECT_NE(manual.find("morvex-cli " + command), std::string::npos) << command;
  }
}

TEST(InstalledFilesTest, TheCompletionOfBashOffersCommandsOptionsAndValues) {
  const CommandScene scene;
  const auto offered = [&](const std::string& words, int current) {
    return scene
        .Shell("bash -c '. \"" + SourceRoot() +
               "/packaging/linux/completions/morvex-cli.bash\"; COMP_WORDS=(" + words +
               "); COMP_CWORD=" + std::to_string(current) + "; _morvex_cli; echo ${COMPREPLY[*]}'")
        .output;
  };
  EXPECT_EQ(offered("morvex-cli r", 1), "run\n");
  EXPECT_EQ(offered("morvex-cli run --re", 2), "--report\n");
  EXPECT_EQ(offered("morvex-cli filter --re", 2), "\n");
  EXPECT_EQ(offered("morvex-cli check --list-encoding w", 3), "windows-1252\n");
  EXPECT_EQ(offered("morvex-cli run case --list repl", 4), "replacements.txt\n");
}

TEST(InstalledFilesTest, TheCompletionOfBashOffersTheOptionsOfTheHelpAndNoOthers) {
  const CommandScene scene;
  for (const std::string command : {"run", "check", "filter"}) {
    std::string help = scene.Shell("morvex-cli " + command + " --help").output;
    help.resize(help.find("Examples:"));
    const std::string offered =
        scene
            .Shell("bash -c '. \"" + SourceRoot() +
                   "/packaging/linux/completions/morvex-cli.bash\"; COMP_WORDS=(morvex-cli " +
                   command + " --); COMP_CWORD=2; _morvex_cli; echo ${COMPREPLY[*]}'")
            .output;
    EXPECT_EQ(OptionsOf(offered), OptionsOf(help)) << command;
  }
}

TEST(InstalledFilesTest, InstallingPutsEveryFileInItsPlace) {
  const CommandScene scene;
  const ProgramResult result =
      scene.Shell("cmake --install \"" MORVEX_BUILD_ROOT
                  "\" --prefix \"$PWD/installed\" && cd installed && find . ! -type d "
                  "| sort && bin/morvex-cli --version "
                  "&& grep '^.TH' share/man/man1/morvex-cli.1");
  ASSERT_EQ(result.status, 0) << result.errors;
  for (const char* name :
       {"\n./bin/morvex-cli\n", "\n./share/bash-completion/completions/morvex-cli\n",
        "\n./share/fish/vendor_completions.d/morvex-cli.fish\n",
        "\n./share/man/man1/morvex-cli.1\n", "\n./share/zsh/site-functions/_morvex-cli\n",
        "\nMorvex " MORVEX_VERSION "\n", "\"Morvex " MORVEX_VERSION "\""}) {
    EXPECT_NE(result.output.find(name), std::string::npos) << name << result.output;
  }
}

}  // namespace
}  // namespace morvex::commands
