#include "platform/macos/restart_command.h"

#include <gtest/gtest.h>

namespace orvalle::platform::macos {
namespace {

TEST(RestartCommand, opensANewOneAfterASecondAndQuotesThePath) {
  const auto command = restartCommand("/Applications/La mia/Orvalle.app");
  EXPECT_EQ(command.path, "/bin/sh");
  EXPECT_EQ(command.arguments, (std::vector<std::string>{
                                   "-c", "sleep 1; /usr/bin/open -n \"/Applications/La mia/Orvalle.app\""}));
}

}  // namespace
}  // namespace orvalle::platform::macos
