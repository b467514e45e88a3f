#include <unistd.h>

#include <fstream>

#include "tests/contract/processes_rig.h"

/// What processes find around them, as only this system shows it.
namespace orvalle::contract {
namespace {

namespace fs = std::filesystem;

TEST_F(ProcessesTest, leaveNothingToReadAndNobodyToAsk) {
  const auto outcome = run("cat; (: </dev/tty) 2>/dev/null || echo nessuno");
  EXPECT_EQ(outcome.output, "nessuno\n");
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

}  // namespace
}  // namespace orvalle::contract
