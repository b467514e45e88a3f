#include "tests/fault/killed_process.h"

#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <stdexcept>

namespace orvalle::fault {
namespace {

int waitFor(pid_t child) {
  int status = 0;
  if (::waitpid(child, &status, 0) != child) throw std::runtime_error("the process is lost");
  return status;
}

}  // namespace

bool killAfter(int call, const std::function<void()>& work) {
  const pid_t child = ::fork();
  if (child < 0) throw std::runtime_error("no process");
  if (child == 0) {
    ::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
    ::raise(SIGSTOP);
    work();
    ::_exit(0);
  }
  int status = waitFor(child);
  for (int count = 0; count < call && WIFSTOPPED(status); ++count) {
    // The way into a call, and the way out of it.
    for (int half = 0; half < 2 && WIFSTOPPED(status); ++half) {
      ::ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
      status = waitFor(child);
    }
  }
  if (!WIFSTOPPED(status)) return false;
  ::kill(child, SIGKILL);
  waitFor(child);
  return true;
}

}  // namespace orvalle::fault
