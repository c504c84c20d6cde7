// The watched process installs a call filter and sends the filter's listener to the test through a
// pair of sockets. The filter passes file calls to the listener. Each of these calls waits until
// the test answers it.
#include "tests/system/call_gate.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <poll.h>
#include <signal.h>
#include <stddef.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <string_view>

namespace morvex::system_test {
namespace {

struct WatchedCall {
  int number;
  const char* name;
};

// A call of rt_sigaction shows that the program is at work. From then on, the other calls are
// counted.
constexpr WatchedCall kCalls[] = {
    {SYS_rt_sigaction, "rt_sigaction"},
    {SYS_openat, "openat"},
    {SYS_close, "close"},
    {SYS_newfstatat, "newfstatat"},
    {SYS_fstat, "fstat"},
    {SYS_readlinkat, "readlinkat"},
    {SYS_faccessat, "faccessat"},
    {SYS_getdents64, "getdents64"},
    {SYS_statfs, "statfs"},
    {SYS_read, "read"},
    {SYS_pread64, "pread64"},
    {SYS_write, "write"},
    {SYS_pwrite64, "pwrite64"},
    {SYS_copy_file_range, "copy_file_range"},
    {SYS_lseek, "lseek"},
    {SYS_ftruncate, "ftruncate"},
    {SYS_fsync, "fsync"},
    {SYS_fcntl, "fcntl"},
    {SYS_flock, "flock"},
    {SYS_fchmod, "fchmod"},
    {SYS_fchown, "fchown"},
    {SYS_utimensat, "utimensat"},
    {SYS_mkdirat, "mkdirat"},
    {SYS_linkat, "linkat"},
    {SYS_renameat2, "renameat2"},
    {SYS_unlinkat, "unlinkat"},
#ifdef SYS_renameat
    {SYS_renameat, "renameat"},
#endif
#ifdef SYS_readlink
    {SYS_readlink, "readlink"},
#endif
};
constexpr std::size_t kCallCount = std::size(kCalls);

constexpr int kNotStarted = 127;
constexpr int kLookMilliseconds = 50;

// Returns the filter's rule: pass the watched calls to the listener, allow all others.
std::array<sock_filter, kCallCount + 3> Filter() {
  std::array<sock_filter, kCallCount + 3> filter{};
  filter[0] = BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr));
  for (std::size_t i = 0; i < kCallCount; ++i) {
    const auto to_the_last = static_cast<unsigned char>(kCallCount - i);
    filter[i + 1] = BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<unsigned>(kCalls[i].number),
                             to_the_last, 0);
  }
  filter[kCallCount + 1] = BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW);
  filter[kCallCount + 2] = BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_USER_NOTIF);
  return filter;
}

// Returns the listener's descriptor, or -1.
int InstallFilter() {
  auto filter = Filter();
  const sock_fprog program{static_cast<unsigned short>(filter.size()), filter.data()};
  if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0) return -1;
  return static_cast<int>(
      syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER, SECCOMP_FILTER_FLAG_NEW_LISTENER, &program));
}

// A message of one byte that can carry a descriptor.
struct Message {
  Message() {
    header.msg_iov = &piece;
    header.msg_iovlen = 1;
    header.msg_control = control;
    header.msg_controllen = sizeof control;
  }
  char byte = 0;
  iovec piece{&byte, 1};
  alignas(cmsghdr) char control[CMSG_SPACE(sizeof(int))] = {};
  msghdr header{};
};

bool SendDescriptor(int socket, int descriptor) {
  Message message;
  cmsghdr* part = CMSG_FIRSTHDR(&message.header);
  part->cmsg_level = SOL_SOCKET;
  part->cmsg_type = SCM_RIGHTS;
  part->cmsg_len = CMSG_LEN(sizeof(int));
  std::memcpy(CMSG_DATA(part), &descriptor, sizeof descriptor);
  return sendmsg(socket, &message.header, 0) == 1;
}

// Returns the received descriptor, or -1.
int ReceiveDescriptor(int socket) {
  Message message;
  if (recvmsg(socket, &message.header, MSG_CMSG_CLOEXEC) != 1) return -1;
  const cmsghdr* part = CMSG_FIRSTHDR(&message.header);
  if (part == nullptr || part->cmsg_type != SCM_RIGHTS) return -1;
  int descriptor = -1;
  std::memcpy(&descriptor, CMSG_DATA(part), sizeof descriptor);
  return descriptor;
}

const char* NameOf(int number) {
  const auto* call = std::find_if(std::begin(kCalls), std::end(kCalls),
                                  [&](const WatchedCall& known) { return known.number == number; });
  return call == std::end(kCalls) ? "?" : call->name;
}

bool IsPipe(pid_t process, unsigned long long descriptor) {
  char end[32] = {};
  const std::string link = "/proc/" + std::to_string(process) + "/fd/" + std::to_string(descriptor);
  return readlink(link.c_str(), end, sizeof end - 1) > 0 &&
         std::string_view(end).starts_with("pipe:");
}

// Returns whether the call is on a file of the run. Writing to the standard streams is not, and
// neither are calls on pipes, through which the sanitizers examine memory.
bool IsOnAFile(pid_t process, const seccomp_data& call) {
  if (call.nr == SYS_write && call.args[0] <= STDERR_FILENO) return false;
  const bool may_be_pipe = call.nr == SYS_write || call.nr == SYS_read || call.nr == SYS_close;
  return !may_be_pipe || !IsPipe(process, call.args[0]);
}

}  // namespace

CallGate::CallGate(int call, int code) : wanted_(call), code_(code) {
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends_) != 0) {
    ADD_FAILURE() << "no pair of sockets: " << std::strerror(errno);
  }
}

CallGate::~CallGate() {
  for (const int end : ends_) close(end);
}

bool CallGate::IsPossibleHere() {
  const pid_t process = fork();
  if (process == 0) _exit(InstallFilter() >= 0 ? 0 : 1);
  int status = 0;
  return process > 0 && waitpid(process, &status, 0) == process && status == 0;
}

void CallGate::Install() const {
  const int listener = InstallFilter();
  if (listener < 0 || !SendDescriptor(ends_[1], listener)) _exit(kNotStarted);
  fcntl(listener, F_SETFD, FD_CLOEXEC);
}

void CallGate::Watch(pid_t process) {
  const int listener = ReceiveDescriptor(ends_[0]);
  ASSERT_GE(listener, 0) << "the process has sent no listener";
  while (AnswerOne(listener, process)) {
  }
  close(listener);
}

bool CallGate::AnswerOne(int listener, pid_t process) {
  pollfd waiting{listener, POLLIN, 0};
  const int ready = poll(&waiting, 1, kLookMilliseconds);
  if (ready > 0 && (waiting.revents & POLLHUP) != 0) return false;
  if (ready <= 0 || (waiting.revents & POLLIN) == 0) return true;
  seccomp_notif asked{};
  if (ioctl(listener, SECCOMP_IOCTL_NOTIF_RECV, &asked) != 0) return true;

  seccomp_notif_resp answer{};
  answer.id = asked.id;
  answer.flags = SECCOMP_USER_NOTIF_FLAG_CONTINUE;
  if (asked.data.nr == SYS_rt_sigaction) {
    at_work_ = at_work_ || asked.data.args[0] == SIGINT;
  } else if (at_work_ && IsOnAFile(process, asked.data) && ++calls_ == wanted_) {
    struck_ = NameOf(asked.data.nr);
    if (code_ == 0) {
      kill(process, SIGKILL);
      return true;
    }
    answer.flags = 0;
    answer.error = -code_;
  }
  ioctl(listener, SECCOMP_IOCTL_NOTIF_SEND, &answer);
  return true;
}

}  // namespace morvex::system_test
