#include "platform/processes.h"

#include <unistd.h>

#include <csignal>
#include <fstream>

#include "tests/contract/processes_rig.h"

/// Other processes, for real.
namespace orvalle::contract {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

TEST_F(ProcessesTest, givesOutputAndErrorsTogetherAndTheStatus) {
  const auto outcome = run("echo uno; echo due >&2; echo tre; exit 3");
  EXPECT_EQ(outcome.launchError, std::nullopt);
  EXPECT_EQ(outcome.status, 3);
  EXPECT_EQ(outcome.output, "uno\ndue\ntre\n");
  EXPECT_EQ(run("true").status, 0);
  EXPECT_EQ(run("true").output, "");
}

TEST_F(ProcessesTest, passesArgumentsAsTheyAre) {
  EXPECT_EQ(run("/usr/bin/printf", {"%s|", "due parole", "$HOME", "\"'`\\", "", "è"}).output,
            "due parole|$HOME|\"'`\\||è|");
}

TEST_F(ProcessesTest, readsMuchWhileTheProcessRuns) {
  const auto outcome = run("head -c 3000000 /dev/zero");
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.output.size(), 3'000'000u);
}

TEST_F(ProcessesTest, takesASignalForAFailure) {
  EXPECT_EQ(run("kill -9 $$").status, 128 + SIGKILL);
}

TEST_F(ProcessesTest, saysWhyAProgramCannotBeStarted) {
  const auto outcome = run(folder / "non esiste", {});
  ASSERT_TRUE(outcome.launchError);
  EXPECT_NE(outcome.launchError->find("non esiste"), std::string::npos) << *outcome.launchError;
}

TEST_F(ProcessesTest, endWithAllTheyStartedWhenCancelled) {
  const auto pids = folder / "pids";
  auto running = processes->run(
      "/bin/sh",
      {"-c", "sleep 60 & echo $! >\"$0.new\"; echo $$ >>\"$0.new\"; mv \"$0.new\" \"$0\"; wait", pids},
      [](const auto&) { ADD_FAILURE() << "told"; });
  ASSERT_TRUE(runUntil([&] { return fs::exists(pids); }));
  running.reset();
  std::ifstream file(pids);
  for (pid_t pid = 0; file >> pid;) {
    // One that nobody has waited for yet is gone as well.
    EXPECT_TRUE(runUntil([&] {
      const auto state = run("/bin/ps", {"-o", "stat=", "-p", std::to_string(pid)}).output;
      return state.empty() || state.front() == 'Z';
    })) << pid;
  }
  runFor(50ms);
}

TEST_F(ProcessesTest, sayWhyOneCannotBeStarted) {
  EXPECT_NE(processes->startDetached(folder / "non esiste", {}), std::nullopt);
}

TEST_F(ProcessesTest, knowTheirOwnNumber) {
  EXPECT_EQ(processes->ownId(), ::getpid());
}

}  // namespace
}  // namespace orvalle::contract
