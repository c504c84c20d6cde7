// "filter" produces the same bytes as a run: in pipes, on a terminal, and in many processes at
// once.
#include <gtest/gtest.h>

#include "tests/commands/command_scene.h"

namespace morvex::commands {
namespace {

TEST(FilterCommandTest, GivesTheBytesThatARunGives) {
  const CommandScene scene;
  const ProgramResult result = scene.Shell(
      "morvex-cli run case out --list replacements.txt --joker '*' --all --yes --quiet &&\n"
      "cd case && find . -type f | while read -r file; do\n"
      "  morvex-cli filter --list ../replacements.txt --joker '*' --quiet < \"$file\" |\n"
      "    cmp - \"../out/$file\" || exit 1\n"
      "done");
  EXPECT_EQ(result.status, 0) << result.output << result.errors;
}

TEST(FilterCommandTest, AStreamLongerThanEveryBufferComesThroughWhole) {
  const CommandScene scene;
  scene.Write("list.txt", "Anna|[A]\r\nid=*;|<*>\r\n|||\r\n");
  const ProgramResult result = scene.Shell(
      "i=0; while [ $i -lt 20000 ]; do\n"
      "  echo \"$i Anna id=$i; and a line that is long enough to fill the buffers quickly "
      "enough\"\n"
      "  i=$((i + 1))\n"
      "done > in.txt\n"
      "cat in.txt in.txt in.txt in.txt > long.txt\n"
      "sed -e 's/Anna/[A]/' -e 's/id=\\([0-9]*\\);/<\\1>/' long.txt > expected.txt\n"
      "cat long.txt | morvex-cli filter --list list.txt --joker '*' | cmp - expected.txt");
  EXPECT_EQ(result.status, 0) << result.output;
  EXPECT_EQ(result.errors, "Hits: 160000\n");
}

TEST(FilterCommandTest, MemoryDoesNotGrowWithTheStream) {
  const CommandScene scene;
  scene.Write("list.txt", "Anna|[A]\r\nid=*;|<*>\r\n|||\r\n");
  const auto most_memory = [&](const std::string& bytes) {
    const ProgramResult result = scene.Shell(
        "{ head -c " + bytes +
        " /dev/zero | tr '\\0' 'A'; sleep 1; } |\n"
        "  morvex-cli filter --list list.txt --joker '*' --quiet > /dev/null & pid=$!\n"
        "while most=$(sed -n 's/^VmHWM:[^0-9]*\\([0-9]*\\) kB/\\1/p' /proc/$pid/status 2> "
        "/dev/null) &&\n"
        "  [ -n \"$most\" ]; do last=$most; sleep 0.05; done\n"
        "wait $pid && echo $last");
    EXPECT_EQ(result.status, 0) << result.errors;
    return std::stol("0" + result.output);
  };
  const long small = most_memory("10000000");
  const long large = most_memory("500000000");
  ASSERT_GT(small, 0);
  EXPECT_LT(large - small, 20'000) << small << " kB, then " << large << " kB";
}

TEST(FilterCommandTest, IsAMapperUnderXargs) {
  const CommandScene scene;
  for (int i = 0; i < 20; ++i) {
    scene.Write("in/" + std::to_string(i) + ".txt", "Anna " + std::to_string(i) + "\n");
  }
  scene.Write("list.txt", "Anna|[A]\r\n");
  const ProgramResult result = scene.Shell(
      "find in -name '*.txt' -print0 |\n"
      "  xargs -0 -P 4 -I{} sh -c 'morvex-cli filter --list list.txt < \"$1\" > \"$1.anon\"' - {}");
  EXPECT_EQ(result.status, 0) << result.errors;
  for (int i = 0; i < 20; ++i) {
    const std::string number = std::to_string(i);
    EXPECT_EQ(scene.Read("in/" + number + ".txt.anon"), "[A] " + number + "\n");
  }
}

TEST(FilterCommandTest, IsAMapperUnderGnuParallel) {
  const CommandScene scene;
  scene.Write("list.txt", "Anna|[A]\r\n");
  std::string lines;
  std::string expected;
  for (int i = 0; i < 50'000; ++i) {
    lines += "Anna " + std::to_string(i) + "\n";
    expected += "[A] " + std::to_string(i) + "\n";
  }
  scene.Write("in.txt", lines);
  const ProgramResult result = scene.Shell(
      "parallel --version > /dev/null || exit 9\n"
      "HOME=$PWD parallel --pipe --keep-order --block 100k morvex-cli filter --list list.txt "
      "--quiet < in.txt");
  EXPECT_EQ(result.status, 0) << result.errors;
  EXPECT_EQ(result.output, expected);
}

TEST(FilterCommandTest, AReaderThatGoesAwayEndsItQuietly) {
  const CommandScene scene;
  scene.Write("list.txt", "Anna|[A]\r\n");
  const ProgramResult result =
      scene.Shell("yes Anna | morvex-cli filter --list list.txt | head -n 1");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.output, "[A]\n");
  EXPECT_EQ(result.errors, "");
}

TEST(FilterCommandTest, AFullDiskIsAnError) {
  const CommandScene scene;
  scene.Write("list.txt", "Anna|[A]\r\n");
  const ProgramResult result =
      scene.Shell("echo Anna | morvex-cli filter --list list.txt > /dev/full");
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(result.errors.find("standard output: error: Error 61: Disk full\n"), std::string::npos)
      << result.errors;
}

TEST(FilterCommandTest, AListThatWritesFarBackIsRefusedInAStream) {
  const CommandScene scene;
  // In the left text, the part in front of the wildcard ends like the part behind it (the tail, 7
  // bytes), so a match captures only one byte. For each of the nine wildcards in the right text,
  // the filter takes off more bytes for the tail than it captured: the write position moves back.
  scene.Write("list.txt", "abcdefgh*bcdefgh|*********X\r\n");
  const ProgramResult result = scene.Shell(
      "{ head -c 3000000 /dev/zero; yes abcdefgh | tr -d '\\n' | head -c 4000000; } |\n"
      "  morvex-cli filter --list list.txt --joker '*' > out.txt");
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(result.errors.find("process this list's files with run"), std::string::npos)
      << result.errors;
}

// The writer waits for an answer to each line. If the filter held a line back, reader and writer
// would both wait.
TEST(FilterCommandTest, ALineIsThereBeforeTheNextOneIsWritten) {
  const CommandScene scene;
  scene.Write("list.txt", "Annabel Lee|[L]\r\nAnna|[A]\r\nid=*;|<*>\r\n|||\r\n");
  const ProgramResult result = scene.Shell(
      "mkfifo back\n"
      "{ echo 'Anna 1'; read word; echo 'id=2; Anna'; read word; printf 'end'; } < back |\n"
      "  timeout 60 morvex-cli filter --list list.txt --joker '*' --quiet |\n"
      "  { exec 3> back; read -r line; echo \"got $line\"; echo go >&3;\n"
      "    read -r line; echo \"got $line\"; echo go >&3; cat; }");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.output, "got [A] 1\ngot <2> [A]\nend") << result.errors;
}

TEST(FilterCommandTest, FollowsALogLineByLine) {
  const CommandScene scene;
  scene.Write("list.txt", "Anna|[A]\r\n|||\r\n");
  scene.Write("log", "");
  const ProgramResult result = scene.Shell(
      "mkfifo out\n"
      "tail -f log | morvex-cli filter --list list.txt --quiet > out & \n"
      "echo 'Hello Anna' >> log\n"
      "timeout 60 head -n 1 out\n"
      "echo more >> log");
  EXPECT_EQ(result.output, "Hello [A]\n") << result.errors;
}

// The filter runs at a terminal that shows the echoed keys and the output. The script types Ctrl+D
// once; a filter that needs another one makes the script fail after 30 seconds.
TEST(FilterCommandTest, OneCtrlDEndsItOnATerminal) {
  const CommandScene scene;
  scene.Write("list.txt", "Anna|[A]\r\n|||\r\n");
  scene.Write("keys.py",
              "import os, pty, select, sys\n"
              "pid, fd = pty.fork()\n"
              "if pid == 0:\n"
              "    os.execvp('morvex-cli', ['morvex-cli', 'filter', '--list', 'list.txt'])\n"
              "def read_until(end):\n"
              "    seen = b''\n"
              "    while end not in seen:\n"
              "        if not select.select([fd], [], [], 30)[0]: sys.exit('no ' + repr(end))\n"
              "        seen += os.read(fd, 1000)\n"
              "    return seen\n"
              "os.write(fd, b'Hello Anna\\n')\n"
              "read_until(b'Hello [A]\\r\\n')\n"
              "os.write(fd, b'\\x04')\n"
              "read_until(b'Hits: 1\\r\\n')\n"
              "sys.exit(os.waitstatus_to_exitcode(os.waitpid(pid, 0)[1]))\n");
  const ProgramResult result = scene.Shell("timeout 100 python3 keys.py");
  EXPECT_EQ(result.status, 0) << result.output << result.errors;
}

}  // namespace
}  // namespace morvex::commands
