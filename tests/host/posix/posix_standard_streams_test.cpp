// Standard input and output as files, at the two ends of a pipe.
#include "host/posix/posix_standard_streams.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <string>
#include <thread>

namespace morvex::test {
namespace {

// Replaces standard input and output by pipes during its lifetime.
class StandardStreamsTest : public ::testing::Test {
 protected:
  StandardStreamsTest() {
    std::array<int, 2> ends{};
    EXPECT_EQ(pipe(ends.data()), 0);
    saved_input_ = dup(STDIN_FILENO);
    saved_output_ = dup(STDOUT_FILENO);
    EXPECT_EQ(dup2(ends[0], STDIN_FILENO), STDIN_FILENO);
    EXPECT_EQ(dup2(ends[1], STDOUT_FILENO), STDOUT_FILENO);
    close(ends[0]);
    close(ends[1]);
  }
  ~StandardStreamsTest() override { PutBack(); }

  void PutBack() {
    if (saved_input_ < 0) return;
    dup2(saved_input_, STDIN_FILENO);
    dup2(saved_output_, STDOUT_FILENO);
    close(saved_input_);
    close(saved_output_);
    saved_input_ = -1;
  }

 private:
  int saved_input_ = -1;
  int saved_output_ = -1;
};

TEST_F(StandardStreamsTest, ReadsGiveWhatIsThereUntilTheEnd) {
  std::string bytes(400'000, '?');
  Result<std::size_t> last_read;
  std::size_t size = 0;
  std::thread reader([&] {
    const std::unique_ptr<InputFile> input = StandardInput();
    do {
      last_read = input->ReadAt(size, bytes.data() + size, bytes.size() - size + 1);
      size += last_read.value;
    } while (last_read && last_read.value > 0);
  });
  const std::unique_ptr<OutputFile> output = StandardOutput();
  ErrorNumber writing = ErrorNumber::kNone;
  for (int i = 0; i < 4 && writing == ErrorNumber::kNone; ++i) {
    writing = output->WriteAt(static_cast<std::uint64_t>(i) * 100'000,
                              std::string(100'000, static_cast<char>('a' + i)));
  }
  const ErrorNumber closing = output->Close();
  reader.join();
  PutBack();
  EXPECT_EQ(writing, ErrorNumber::kNone);
  EXPECT_EQ(closing, ErrorNumber::kNone);
  EXPECT_EQ(last_read.error, ErrorNumber::kNone);
  ASSERT_EQ(size, 400'000u);
  EXPECT_EQ(bytes, std::string(100'000, 'a') + std::string(100'000, 'b') +
                       std::string(100'000, 'c') + std::string(100'000, 'd'));
}

TEST_F(StandardStreamsTest, OnlyAStreamThatGivesNothingForTheMomentMakesOneWait) {
  const std::unique_ptr<InputFile> input = StandardInput();
  const std::unique_ptr<OutputFile> output = StandardOutput();
  std::string bytes(10, '?');
  const bool empty = input->MustWait();
  const ErrorNumber writing = output->WriteAt(0, "abc");
  const bool filled = input->MustWait();
  const Result<std::size_t> read = input->ReadAt(0, bytes.data(), bytes.size());
  const bool emptied = input->MustWait();
  const ErrorNumber closing = output->Close();
  const bool closed = input->MustWait();
  const Result<std::size_t> end = input->ReadAt(3, bytes.data(), bytes.size());
  const bool behind_the_end = input->MustWait();
  PutBack();
  EXPECT_EQ(writing, ErrorNumber::kNone);
  EXPECT_EQ(closing, ErrorNumber::kNone);
  EXPECT_TRUE(empty);
  EXPECT_FALSE(filled);
  EXPECT_EQ(read.value, 3u);
  EXPECT_TRUE(emptied);
  EXPECT_FALSE(closed);
  EXPECT_EQ(end.error, ErrorNumber::kNone);
  EXPECT_EQ(end.value, 0u);
  EXPECT_FALSE(behind_the_end);
}

TEST_F(StandardStreamsTest, APlaceThatIsNotNextIsRefused) {
  const std::unique_ptr<OutputFile> output = StandardOutput();
  const ErrorNumber ahead = output->WriteAt(1, "a");
  const ErrorNumber next = output->WriteAt(0, "abc");
  const ErrorNumber back = output->WriteAt(2, "x");
  const std::unique_ptr<InputFile> input = StandardInput();
  char byte = 0;
  const ErrorNumber read_ahead = input->ReadAt(1, &byte, 1).error;
  const ErrorNumber read_next = input->ReadAt(0, &byte, 1).error;
  const ErrorNumber read_back = input->ReadAt(0, &byte, 1).error;
  PutBack();
  EXPECT_EQ(ahead, ErrorNumber::kInvalidCall);
  EXPECT_EQ(next, ErrorNumber::kNone);
  EXPECT_EQ(back, ErrorNumber::kInvalidCall);
  EXPECT_EQ(read_ahead, ErrorNumber::kInvalidCall);
  EXPECT_EQ(read_next, ErrorNumber::kNone);
  EXPECT_EQ(byte, 'a');
  EXPECT_EQ(read_back, ErrorNumber::kInvalidCall);
}

// Runs in a separate process, which ends with status 0 if everything is right.
TEST(MissingStandardStreams, AreNoNumbersThatAFileGets) {
  const pid_t process = fork();
  if (process == 0) {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) close(stream);
    OccupyMissingStandardStreams();
    char byte = 0;
    const bool useless = read(STDIN_FILENO, &byte, 1) < 0 && write(STDOUT_FILENO, &byte, 1) < 0 &&
                         write(STDERR_FILENO, &byte, 1) < 0;
    _exit(useless && open("/dev/null", O_RDONLY) > STDERR_FILENO ? 0 : 1);
  }
  int status = -1;
  ASSERT_EQ(waitpid(process, &status, 0), process);
  EXPECT_EQ(status, 0);
}

TEST(MissingStandardStreams, ThoseThatAreThereStay) {
  const int free_before = dup(STDIN_FILENO);
  close(free_before);
  OccupyMissingStandardStreams();
  const int free_after = dup(STDIN_FILENO);
  close(free_after);
  EXPECT_EQ(free_after, free_before);
}

}  // namespace
}  // namespace morvex::test
