#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>

#include "platform/linux/factory.h"
#include "tests/contract/frame_server.h"
#include "tests/contract/loop.h"
#include "tests/contract/socket_owner.h"

/// A server that vanishes from the network without a word, as from a laptop that is carried away. Runs in a
/// process of its own, which it takes into networks of its own; lasts more than a minute.
namespace orvalle::contract {
namespace {

using namespace std::chrono_literals;
using Events = std::vector<std::string>;

constexpr char kClientAddress[] = "10.77.0.1";
constexpr char kServerAddress[] = "10.77.0.2";

/// Moves this process into an empty network; as an ordinary user where the system lets users have networks.
bool enterOwnNetwork() {
  if (::unshare(CLONE_NEWNET) == 0) return true;
  const auto user = std::to_string(::geteuid());
  const auto group = std::to_string(::getegid());
  if (::unshare(CLONE_NEWUSER | CLONE_NEWNET) != 0) return false;
  std::ofstream("/proc/self/setgroups") << "deny";
  std::ofstream("/proc/self/uid_map") << "0 " + user + " 1";
  std::ofstream("/proc/self/gid_map") << "0 " + group + " 1";
  return true;
}

/// The network that this process is in, to be entered again.
class Network {
 public:
  Network() : descriptor_(::open("/proc/thread-self/ns/net", O_RDONLY | O_CLOEXEC)) {}
  Network(const Network&) = delete;
  Network& operator=(const Network&) = delete;
  ~Network() { ::close(descriptor_); }

  void enter() const { ASSERT_EQ(::setns(descriptor_, CLONE_NEWNET), 0) << std::strerror(errno); }
  std::string path() const {
    return "/proc/" + std::to_string(::getpid()) + "/fd/" + std::to_string(descriptor_);
  }

 private:
  int descriptor_;
};

void run(const std::string& command) {
  ASSERT_EQ(std::system(command.c_str()), 0) << command;
}

TEST(WebSocketSilence, losesAServerThatHasVanished) {
  if (!enterOwnNetwork()) GTEST_SKIP() << "no network of our own: " << std::strerror(errno);
  const Network clients;
  ASSERT_EQ(::unshare(CLONE_NEWNET), 0) << std::strerror(errno);
  const Network servers;
  clients.enter();
  run("ip link add here type veth peer name there netns " + servers.path());
  run("ip address add " + std::string(kClientAddress) + "/24 dev here && ip link set here up");
  servers.enter();
  run("ip address add " + std::string(kServerAddress) + "/24 dev there && ip link set there up");
  FrameServer server(kServerAddress);
  clients.enter();
  if (HasFatalFailure()) return;

  const auto sockets = platform::linuxos::makeWebSockets();
  SocketOwner talker, listener;
  for (auto* owner : {&talker, &listener}) {
    const auto before = server.clients().size();
    owner->connect(*sockets, server.url());
    ASSERT_TRUE(runUntil([&] { return server.clients().size() > before && server.client().asked(); }));
    server.client().accept();
    ASSERT_TRUE(runUntil([&] { return owner->events() == Events{"open"}; }));
  }
  talker.socket().sendText("before");
  ASSERT_TRUE(runUntil([&] { return !server.clients().front()->frames().empty(); }));

  servers.enter();
  run("ip route add blackhole " + std::string(kClientAddress) + "/32");
  clients.enter();
  const gint64 start = g_get_monotonic_time();
  talker.socket().sendText("after");
  for (const auto* owner : {&talker, &listener}) {
    ASSERT_TRUE(runUntil([&] { return owner->events().size() > 1; }, 90s));
    const auto seconds = static_cast<double>(g_get_monotonic_time() - start) / 1e6;
    std::printf("%s lost after %.0f s\n", owner == &talker ? "talker" : "listener", seconds);
    EXPECT_GT(seconds, 45);
    EXPECT_LT(seconds, 75);
    EXPECT_EQ(owner->events(), (Events{"open", "lost"}));
  }
}

}  // namespace
}  // namespace orvalle::contract
