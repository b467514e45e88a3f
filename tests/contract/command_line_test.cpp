#include "platform/linux/command_line.h"

#include <gtest/gtest.h>

namespace orvalle::platform::linuxos {
namespace {

using Addresses = std::vector<std::string>;
using Request = CommandLine::Request;

TEST(CommandLineTest, withoutArgumentsRuns) {
  const auto line = parseCommandLine({});
  EXPECT_EQ(line.request, Request::Run);
  EXPECT_TRUE(line.addresses.empty());
}

TEST(CommandLineTest, knowsItsOptions) {
  EXPECT_EQ(parseCommandLine({"--version"}).request, Request::Version);
  EXPECT_EQ(parseCommandLine({"--help"}).request, Request::Help);
  EXPECT_EQ(parseCommandLine({"--quit"}).request, Request::Quit);
  EXPECT_EQ(parseCommandLine({"--new-session"}).request, Request::NewSession);
  EXPECT_EQ(parseCommandLine({"--stop"}).request, Request::Stop);
  EXPECT_EQ(parseCommandLine({"--install"}).request, Request::Install);
  EXPECT_EQ(parseCommandLine({"--uninstall"}).request, Request::Uninstall);
  EXPECT_EQ(parseCommandLine({"--gapplication-service"}).request, Request::Service);
}

TEST(CommandLineTest, namesTheOptionThatItDoesNotKnow) {
  for (const std::string option : {"--versione", "--Version", "-v", "-", "--quit=1", "---"}) {
    const auto line = parseCommandLine({"orvalle:google", option});
    EXPECT_EQ(line.request, Request::Unknown);
    EXPECT_EQ(line.unknown, option);
  }
}

TEST(CommandLineTest, letsTheFirstOptionDecide) {
  EXPECT_EQ(parseCommandLine({"--quit", "--version", "--x"}).request, Request::Quit);
  EXPECT_EQ(parseCommandLine({"--x", "--quit"}).unknown, "--x");
}

TEST(CommandLineTest, keepsAddressesAsTheyAreWritten) {
  const Addresses addresses{"orvalle:google", "ORVALLE://Ritorno?codice=a%2Bb+c&x=%20", "",
                            "non un indirizzo"};
  const auto line = parseCommandLine(addresses);
  EXPECT_EQ(line.request, Request::Run);
  EXPECT_EQ(line.addresses, addresses);
}

TEST(CommandLineTest, takesNoOptionsAfterTwoDashes) {
  const auto line = parseCommandLine({"--", "--quit", "--", "a"});
  EXPECT_EQ(line.request, Request::Run);
  EXPECT_EQ(line.addresses, (Addresses{"--quit", "--", "a"}));
}

}  // namespace
}  // namespace orvalle::platform::linuxos
