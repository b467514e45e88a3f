#include "platform/processes.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>

#include "platform/linux/factory.h"
#include "tests/contract/loop.h"

/// Other processes, for real.
namespace orvalle::contract {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

class ProcessesTest : public ::testing::Test {
 protected:
  ProcessesTest() {
    auto pattern = (fs::temp_directory_path() / "orvalle-processes-XXXXXX").string();
    folder = ::mkdtemp(pattern.data());
  }
  ~ProcessesTest() override { fs::remove_all(folder); }

  platform::ProcessOutcome run(const std::string& script) { return run("/bin/sh", {"-c", script}); }
  platform::ProcessOutcome run(const fs::path& program, const std::vector<std::string>& arguments) {
    std::optional<platform::ProcessOutcome> outcome;
    const auto running = processes->run(program, arguments, [&](const auto& got) { outcome = got; });
    EXPECT_FALSE(outcome) << "told inside the call";
    EXPECT_TRUE(runUntil([&] { return outcome.has_value(); }, 30s));
    return outcome.value_or(platform::ProcessOutcome());
  }
  std::string read(const std::string& name) const {
    std::ifstream file(folder / name);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  std::unique_ptr<platform::Processes> processes = platform::linuxos::makeProcesses();
  fs::path folder;
};

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

TEST_F(ProcessesTest, leaveNothingToReadAndNobodyToAsk) {
  const auto outcome = run("cat; (: </dev/tty) 2>/dev/null || echo nessuno");
  EXPECT_EQ(outcome.output, "nessuno\n");
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
    const auto stat = "/proc/" + std::to_string(pid) + "/stat";
    EXPECT_TRUE(runUntil([&] {
      std::ifstream state(stat);
      std::string words((std::istreambuf_iterator<char>(state)), {});
      return words.empty() || words.find(") Z") != std::string::npos;
    })) << pid;
  }
  runFor(50ms);
}

TEST_F(ProcessesTest, startOneThatHoldsNothingOfOurs) {
  ASSERT_EQ(processes->startDetached("/bin/sh", {"-c",
                                                 "readlink /proc/$$/fd/0 >\"$0.new\"; ps -o sid= -p $$ "
                                                 ">>\"$0.new\"; echo $$ >>\"$0.new\"; mv \"$0.new\" \"$0\"",
                                                 folder / "detto"}),
            std::nullopt);
  ASSERT_TRUE(runUntil([&] { return fs::exists(folder / "detto"); }));
  std::ifstream file(folder / "detto");
  std::string input;
  int session = 0;
  int own = -1;
  file >> input >> session >> own;
  EXPECT_EQ(input, "/dev/null");
  EXPECT_EQ(session, own);
  EXPECT_NE(session, ::getsid(0));
}

TEST_F(ProcessesTest, sayWhyOneCannotBeStarted) {
  EXPECT_NE(processes->startDetached(folder / "non esiste", {}), std::nullopt);
}

TEST_F(ProcessesTest, knowTheirOwnNumber) {
  EXPECT_EQ(processes->ownId(), ::getpid());
}

}  // namespace
}  // namespace orvalle::contract
