// Where the server listens.

#include <gtest/gtest.h>
#include <netinet/in.h>

#include <filesystem>
#include <string>

#include "tests/demo/http_client.h"
#include "tests/demo/running_server.h"
#include "tests/demo/temporary_folder.h"

namespace orvalle::demo {
namespace {

class PortsTest : public testing::Test {
 protected:
  PortsTest() { folder_.write("index.html", "<!doctype html>"); }

  TemporaryFolder folder_;
};

/// Keeps a port of one address family busy.
class BusyPort {
 public:
  explicit BusyPort(int family) : socket_(::socket(family, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_storage address{};
    address.ss_family = static_cast<sa_family_t>(family);
    if (family == AF_INET) reinterpret_cast<sockaddr_in*>(&address)->sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (family == AF_INET6) reinterpret_cast<sockaddr_in6*>(&address)->sin6_addr = in6addr_loopback;
    socklen_t length = family == AF_INET ? sizeof(sockaddr_in) : sizeof(sockaddr_in6);
    if (bind(socket_, reinterpret_cast<sockaddr*>(&address), length) != 0 || listen(socket_, 1) != 0) return;
    getsockname(socket_, reinterpret_cast<sockaddr*>(&address), &length);
    port_ = ntohs(family == AF_INET ? reinterpret_cast<sockaddr_in*>(&address)->sin_port
                                    : reinterpret_cast<sockaddr_in6*>(&address)->sin6_port);
  }
  BusyPort(const BusyPort&) = delete;
  BusyPort& operator=(const BusyPort&) = delete;
  ~BusyPort() { close(socket_); }

  /// 0 when the machine does not have the family.
  unsigned port() const { return port_; }

 private:
  int socket_;
  unsigned port_ = 0;
};

TEST_F(PortsTest, listensOnTheLoopbackAddressesAndOnNoOther) {
  const RunningServer server(folder_.path(), PortRange{0, 0});
  EXPECT_EQ(server.address(), "http://localhost:" + std::to_string(server.port()) + "/");
  EXPECT_EQ(ask(server.port(), "GET", "/", "", "localhost", "127.0.0.1").status, 200);
  if (BusyPort(AF_INET6).port()) {
    EXPECT_EQ(ask(server.port(), "GET", "/", "", "localhost", "::1").status, 200);
  }
  EXPECT_FALSE(Connection("127.0.0.2", server.port()).connected());
}

TEST_F(PortsTest, takesTheNextPortWhenEitherFamilyHasTheFirstInUse) {
  for (const int family : {AF_INET, AF_INET6}) {
    const BusyPort busy(family);
    if (!busy.port()) continue;
    const RunningServer other(folder_.path(), PortRange{busy.port(), busy.port() + 99});
    EXPECT_GT(other.port(), busy.port());
    EXPECT_EQ(ask(other.port(), "GET", "/").status, 200);
  }
}

TEST_F(PortsTest, givesUpWhenEveryPortIsInUse) {
  const BusyPort busy(AF_INET);
  const RunningServer other(folder_.path(), PortRange{busy.port(), busy.port()});
  EXPECT_EQ(other.address(), "");
}

}  // namespace
}  // namespace orvalle::demo
