#include "tests/fault/killed_tree.h"

#include <fcntl.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <map>
#include <optional>
#include <set>
#include <stdexcept>

namespace orvalle::fault {
namespace {

constexpr int kSystemCall = SIGTRAP | 0x80;

/// Those that change what lies on a disk. What they do to anything else is no harm: they count for nothing.
const std::set<long>& changing() {
  static const std::set<long> calls{
      SYS_write,     SYS_writev,    SYS_pwrite64, SYS_copy_file_range, SYS_sendfile,
      SYS_ftruncate, SYS_fallocate, SYS_unlinkat, SYS_renameat2,       SYS_mkdirat,
      SYS_symlinkat, SYS_linkat,    SYS_fchmod,   SYS_fchmodat,        SYS_utimensat,
#ifdef SYS_unlink
      SYS_unlink,    SYS_rmdir,     SYS_rename,   SYS_renameat,        SYS_mkdir,
      SYS_symlink,   SYS_link,      SYS_chmod,    SYS_creat,           SYS_truncate,
#endif
  };
  return calls;
}

bool creates(unsigned long flags) {
  return flags & (O_CREAT | O_TRUNC);
}

bool changes(const __ptrace_syscall_info& call) {
  const auto number = static_cast<long>(call.entry.nr);
  if (number == SYS_openat) return creates(call.entry.args[2]);
#ifdef SYS_open
  if (number == SYS_open) return creates(call.entry.args[1]);
#endif
  return changing().contains(number);
}

class Tree {
 public:
  explicit Tree(const std::vector<std::string>& command) {
    std::vector<char*> words;
    for (const auto& word : command) words.push_back(const_cast<char*>(word.c_str()));
    words.push_back(nullptr);
    const pid_t first = ::fork();
    if (first < 0) throw std::runtime_error("no process");
    if (first == 0) {
      ::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
      ::raise(SIGSTOP);
      ::execv(words[0], words.data());
      ::_exit(127);
    }
    ::waitpid(first, nullptr, 0);
    ::ptrace(PTRACE_SETOPTIONS, first, nullptr,
             PTRACE_O_TRACESYSGOOD | PTRACE_O_TRACEFORK | PTRACE_O_TRACEVFORK | PTRACE_O_TRACECLONE |
                 PTRACE_O_TRACEEXEC | PTRACE_O_EXITKILL);
    processes_[first] = false;
    goOn(first, 0);
  }
  Tree(const Tree&) = delete;
  Tree& operator=(const Tree&) = delete;
  ~Tree() {
    for (const auto& [id, inChange] : processes_) ::kill(id, SIGKILL);
    // One that has only just been started stops before it does anything.
    while (const auto id = wait()) ::kill(*id, SIGKILL);
  }

  /// Goes on until after the next change; false when all have ended.
  bool reachChange() {
    if (changed_) goOn(*changed_, 0);
    changed_.reset();
    while (const auto id = wait()) {
      const int signal = WSTOPSIG(status_);
      if (signal == kSystemCall && step(*id)) {
        changed_ = id;
        return true;
      }
      // That a process is new, or has become another program, is told to the tracer alone.
      const bool told = signal == kSystemCall || signal == SIGTRAP || signal == SIGSTOP;
      goOn(*id, told ? 0 : signal);
    }
    return false;
  }

 private:
  static void goOn(pid_t id, int signal) { ::ptrace(PTRACE_SYSCALL, id, nullptr, signal); }

  /// The next one that has stopped; absent when none is left. Asks the system, which knows of one that has
  /// just been started before we do: its parent may have ended by then.
  std::optional<pid_t> wait() {
    for (;;) {
      const pid_t id = ::waitpid(-1, &status_, __WALL);
      if (id < 0) return {};
      if (WIFSTOPPED(status_)) {
        processes_.try_emplace(id, false);
        return id;
      }
      processes_.erase(id);
    }
  }

  /// Into a system call, or out of it; true when it is out of one that has changed something.
  bool step(pid_t id) {
    __ptrace_syscall_info call{};
    ::ptrace(PTRACE_GET_SYSCALL_INFO, id, sizeof call, &call);
    bool& inChange = processes_[id];
    if (call.op == PTRACE_SYSCALL_INFO_ENTRY) {
      inChange = changes(call);
      return false;
    }
    return call.op == PTRACE_SYSCALL_INFO_EXIT && inChange && !call.exit.is_error;
  }

  /// Whether each is in a call that changes something.
  std::map<pid_t, bool> processes_;
  /// It has stopped after its change.
  std::optional<pid_t> changed_;
  int status_ = 0;
};

}  // namespace

bool killTreeAfterChange(int change, const std::vector<std::string>& command) {
  Tree tree(command);
  for (int count = 0; count < change; ++count) {
    if (!tree.reachChange()) return false;
  }
  return true;
}

}  // namespace orvalle::fault
