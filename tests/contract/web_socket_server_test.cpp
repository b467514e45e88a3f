#include <gtest/gtest.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <filesystem>
#include <iterator>
#include <thread>

#include "platform/linux/factory.h"
#include "tests/contract/frame_server.h"
#include "tests/contract/loop.h"
#include "tests/contract/socket_owner.h"

/// The native websocket against servers that do what servers do, and what they should not.
namespace orvalle::contract {
namespace {

using namespace std::chrono_literals;
using Events = std::vector<std::string>;
using Strings = std::vector<std::string>;

constexpr std::size_t kMiB = 1024 * 1024;

class WebSocketServer : public ::testing::Test {
 protected:
  /// Asks for a connection and waits until the server has the request.
  void connect(const std::string& url) {
    owner_.connect(*sockets_, url);
    ASSERT_TRUE(runUntil([&] { return !server_.clients().empty() && server_.client().asked(); }));
  }
  void open() {
    connect(server_.url());
    server_.client().accept();
    ASSERT_TRUE(tells({"open"}, 0ms));
  }
  /// Whether these are the events, and remain so.
  bool tells(const Events& events, std::chrono::milliseconds quiet = 150ms) {
    runUntil([&] { return owner_.events().size() >= events.size(); });
    runFor(quiet);
    return owner_.events() == events;
  }

  std::unique_ptr<platform::WebSockets> sockets_ = platform::linuxos::makeWebSockets();
  FrameServer server_;
  SocketOwner owner_;
};

std::size_t openDescriptors() {
  const std::filesystem::directory_iterator all("/proc/self/fd");
  return static_cast<std::size_t>(std::distance(begin(all), end(all)));
}

/// This process's end of a connection from the given local port; -1 where there is none.
int descriptorOfPort(int port) {
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    const int descriptor = std::stoi(entry.path().filename());
    sockaddr_in own{};
    socklen_t size = sizeof own;
    if (::getsockname(descriptor, reinterpret_cast<sockaddr*>(&own), &size) == 0 &&
        own.sin_family == AF_INET && ntohs(own.sin_port) == port)
      return descriptor;
  }
  return -1;
}

int tcpOption(int descriptor, int option) {
  int value = 0;
  socklen_t size = sizeof value;
  return ::getsockopt(descriptor, IPPROTO_TCP, option, &value, &size) == 0 ? value : -1;
}

// What is asked

TEST_F(WebSocketServer, asksForThatAddressAndNothingElse) {
  connect(server_.url());
  const auto& request = server_.client().request();
  EXPECT_EQ(request.substr(0, request.find("\r\n")), "GET /socket?apikey=abc&vsn=1.0.0 HTTP/1.1");
  for (const char* header : {"Origin:", "Sec-WebSocket-Protocol:", "Sec-WebSocket-Extensions:", "Cookie:",
                             "Authorization:", "Referer:"})
    EXPECT_EQ(request.find(header), std::string::npos) << header;
}

TEST_F(WebSocketServer, keepsNoCookies) {
  connect(server_.url());
  server_.client().send("HTTP/1.1 403 Forbidden\r\nSet-Cookie: id=1; Path=/\r\nContent-Length: 0\r\n\r\n");
  ASSERT_TRUE(tells({"lost"}));
  owner_.connect(*sockets_, server_.url());
  ASSERT_TRUE(runUntil([&] { return server_.clients().size() == 2 && server_.client().asked(); }));
  EXPECT_EQ(server_.client().request().find("Cookie:"), std::string::npos);
}

TEST_F(WebSocketServer, makesTheKernelNoticeADeadPeer) {
  open();
  const int descriptor = descriptorOfPort(server_.client().remotePort());
  ASSERT_GE(descriptor, 0);
  EXPECT_EQ(tcpOption(descriptor, TCP_USER_TIMEOUT), 60'000);
  int keepsAlive = 0;
  socklen_t size = sizeof keepsAlive;
  ::getsockopt(descriptor, SOL_SOCKET, SO_KEEPALIVE, &keepsAlive, &size);
  EXPECT_EQ(keepsAlive, 1);
  EXPECT_EQ(tcpOption(descriptor, TCP_KEEPIDLE), 30);
  EXPECT_EQ(tcpOption(descriptor, TCP_KEEPINTVL), 10);
}

// Connections that cannot be made

TEST_F(WebSocketServer, losesWhatNoWebSocketCanConnectTo) {
  const auto port = std::to_string(server_.port());
  testing::internal::CaptureStderr();
  for (const std::string& url :
       {std::string(), std::string("localhost:4000"), std::string("ws:"), std::string("ws://"),
        std::string("ws:///path?apikey=secret"), std::string("ws://[::1"), std::string("ws://a b/"),
        std::string("ws://:80/"), std::string("ws://host:99999/?apikey=secret"), std::string("://host/"),
        std::string("ws://ex%zzample/"), std::string("\xFF\xFE"), std::string("ws://\xFF/?apikey=secret"),
        std::string("file:///etc/passwd"), "http://127.0.0.1:" + port + "/",
        "https://127.0.0.1:" + port + "/", "//127.0.0.1:" + port + "/"}) {
    SocketOwner owner;
    owner.connect(*sockets_, url);
    EXPECT_TRUE(runUntil([&] { return !owner.events().empty(); })) << url;
    runFor(20ms);
    EXPECT_EQ(owner.events(), Events{"lost"}) << url;
  }
  EXPECT_TRUE(server_.clients().empty());
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(WebSocketServer, losesARefusedConnection) {
  std::string url;
  {
    const FrameServer other;
    url = other.url();
  }
  owner_.connect(*sockets_, url);
  EXPECT_TRUE(tells({"lost"}));
}

TEST_F(WebSocketServer, losesAHostWithoutAddress) {
  owner_.connect(*sockets_, "ws://no-such-host.invalid/");
  EXPECT_TRUE(tells({"lost"}));
}

TEST_F(WebSocketServer, losesWhatTheServerDoesNotAccept) {
  testing::internal::CaptureStderr();
  for (const char* answer :
       {"HTTP/1.1 401 Unauthorized\r\nWWW-Authenticate: Basic realm=\"x\"\r\nContent-Length: 0\r\n\r\n",
        "HTTP/1.1 403 Forbidden\r\nContent-Length: 2\r\n\r\nno",
        "HTTP/1.1 404 Not Found\r\nTransfer-Encoding: chunked\r\n\r\n0\r\n\r\n",
        "HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n",
        "HTTP/1.1 500 Internal Server Error\r\nConnection: close\r\n\r\n",
        "HTTP/1.1 101 Switching Protocols\r\nUpgrade: websocket\r\nConnection: Upgrade\r\n"
        "Sec-WebSocket-Accept: AAAA\r\n\r\n",
        "\r\n\r\n", "garbage \x80\xFF\r\n\r\n"}) {
    SocketOwner owner;
    const auto before = server_.clients().size();
    owner.connect(*sockets_, server_.url());
    ASSERT_TRUE(runUntil([&] { return server_.clients().size() > before && server_.client().asked(); }));
    server_.client().send(answer);
    server_.client().close();
    EXPECT_TRUE(runUntil([&] { return !owner.events().empty(); })) << answer;
    runFor(50ms);
    EXPECT_EQ(owner.events(), Events{"lost"}) << answer;
    EXPECT_TRUE(runUntil([&] { return server_.client().gone(); })) << answer;
    EXPECT_EQ(server_.clients().size(), before + 1) << answer;
  }
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(WebSocketServer, doesNotKeepAConnectionThatRefuses) {
  connect(server_.url());
  server_.client().send("HTTP/1.1 403 Forbidden\r\nContent-Length: 0\r\n\r\n");
  EXPECT_TRUE(tells({"lost"}, 0ms));
  EXPECT_TRUE(runUntil([&] { return server_.client().gone(); }, 1s));
}

TEST_F(WebSocketServer, doesNotFollowTheServerElsewhere) {
  const FrameServer other;
  connect(server_.url());
  auto location = other.url();
  server_.client().send("HTTP/1.1 302 Found\r\nContent-Length: 0\r\nLocation: " + location + "\r\n\r\n");
  EXPECT_TRUE(tells({"lost"}));
  EXPECT_TRUE(other.clients().empty());
  EXPECT_EQ(server_.clients().size(), 1u);
}

/// A server that answers nothing, one that answers a little at a time, one that takes no connection, and,
/// for comparison, a good one that has nothing to say.
TEST_F(WebSocketServer, givesUpOnlyOnHandshakes) {
  const int full = ::socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  ASSERT_EQ(::bind(full, reinterpret_cast<sockaddr*>(&address), size), 0);
  ASSERT_EQ(::listen(full, 0), 0);
  ASSERT_EQ(::getsockname(full, reinterpret_cast<sockaddr*>(&address), &size), 0);
  const int filler = ::socket(AF_INET, SOCK_STREAM, 0);
  ASSERT_EQ(::connect(filler, reinterpret_cast<sockaddr*>(&address), size), 0);

  open();
  const FrameServer silent;
  FrameServer slow;
  SocketOwner unanswered, encrypted, halfAnswered, notTaken;
  std::string answer = "HTTP/1.1 101 Switching Protocols\r\n";
  const gint64 start = g_get_monotonic_time();
  unanswered.connect(*sockets_, silent.url());
  encrypted.connect(*sockets_, "wss" + silent.url().substr(2));
  halfAnswered.connect(*sockets_, slow.url());
  notTaken.connect(*sockets_, "ws://127.0.0.1:" + std::to_string(ntohs(address.sin_port)) + "/");
  while (g_get_monotonic_time() - start < 8'500'000) {
    if (!slow.clients().empty()) slow.client().send(answer.substr(0, 1));
    answer.erase(0, 1);
    runFor(500ms);
  }
  const auto handshakes = {&unanswered, &encrypted, &halfAnswered, &notTaken};
  for (const auto* owner : handshakes) EXPECT_TRUE(owner->events().empty());
  for (const auto* owner : handshakes) {
    EXPECT_TRUE(runUntil([&] { return !owner->events().empty(); }, 3s));
    EXPECT_EQ(owner->events(), Events{"lost"});
  }
  runFor(500ms);
  EXPECT_TRUE(runUntil([&] { return silent.clients().front()->gone() && slow.client().gone(); }));
  EXPECT_EQ(owner_.events(), Events{"open"});
  server_.client().sendFrame(kText, "still here");
  EXPECT_TRUE(tells({"open", "text still here"}));
  ::close(filler);
  ::close(full);
}

// Ends

TEST_F(WebSocketServer, losesWhatTheServerCloses) {
  for (const int code : {1000, 1001, 1011, 4000}) {
    SocketOwner owner;
    const auto before = server_.clients().size();
    owner.connect(*sockets_, server_.url());
    ASSERT_TRUE(runUntil([&] { return server_.clients().size() > before && server_.client().asked(); }));
    server_.client().accept();
    ASSERT_TRUE(runUntil([&] { return owner.events() == Events{"open"}; }));
    // The server leaves it at that and waits for us to end it.
    server_.client().sendClose(code);
    EXPECT_TRUE(runUntil([&] { return owner.events().size() == 2; }, 1s)) << code;
    EXPECT_TRUE(runUntil([&] { return server_.client().gone(); }, 3s)) << code;
    EXPECT_EQ(owner.events(), (Events{"open", "lost"})) << code;
    EXPECT_EQ(server_.client().closeCode(), code);
  }
}

TEST_F(WebSocketServer, losesWhatTheServerClosesWithoutACode) {
  open();
  server_.client().sendFrame(kClose, "");
  EXPECT_TRUE(tells({"open", "lost"}));
}

TEST_F(WebSocketServer, losesAConnectionThatIsReset) {
  open();
  server_.client().reset();
  EXPECT_TRUE(tells({"open", "lost"}));
}

TEST_F(WebSocketServer, losesAConnectionThatEndsWithoutAWord) {
  open();
  server_.client().close();
  EXPECT_TRUE(tells({"open", "lost"}));
}

TEST_F(WebSocketServer, toldTheLossWhenSendingMeetsAReset) {
  open();
  server_.client().reset();
  // The reset may be noticed by a write from inside our own call.
  for (int i = 0; i < 3; ++i) owner_.socket().sendText(std::string(100'000, 'x'));
  EXPECT_TRUE(tells({"open", "lost"}));
}

TEST_F(WebSocketServer, sendsNothingWhileItEnds) {
  open();
  testing::internal::CaptureStderr();
  server_.client().close();
  for (int i = 0; i < 1000 && owner_.events().size() == 1; ++i) {
    g_main_context_iteration(nullptr, FALSE);
    owner_.socket().sendText("too late");
  }
  EXPECT_TRUE(tells({"open", "lost"}));
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(WebSocketServer, cancelsALossThatHasNotBeenTold) {
  open();
  server_.client().reset();
  ::usleep(20'000);
  // One turn at a time: the loss is found in one and told in another.
  for (int i = 0; i < 100 && owner_.events().size() == 1; ++i) {
    g_main_context_iteration(nullptr, FALSE);
    if (descriptorOfPort(server_.client().remotePort()) < 0) owner_.socket().cancel(1001);
  }
  EXPECT_TRUE(tells({"open"}));
}

TEST_F(WebSocketServer, doesNotWaitForAServerThatIgnoresTheClose) {
  open();
  owner_.drop();
  ASSERT_TRUE(runUntil([&] { return server_.client().closeCode() == 1001; }, 1s));
  EXPECT_TRUE(runUntil([&] { return server_.client().gone(); }, 3s));
}

TEST_F(WebSocketServer, sendsWhatWaitsBeforeTheClose) {
  open();
  const std::string text(2 * kMiB, 'x');
  owner_.socket().sendText(text);
  owner_.socket().cancel(1001);
  ASSERT_TRUE(runUntil([&] { return server_.client().closeCode() == 1001; }));
  ASSERT_EQ(server_.client().frames().size(), 2u);
  EXPECT_EQ(server_.client().frames().front().payload, text);
}

TEST_F(WebSocketServer, leavesNothingBehind) {
  const auto round = [&] {
    for (int way = 0; way < 5; ++way) {
      const auto before = server_.clients().size();
      SocketOwner owner;
      owner.connect(*sockets_, server_.url());
      ASSERT_TRUE(runUntil([&] { return server_.clients().size() > before && server_.client().asked(); }));
      if (way == 0) server_.client().send("HTTP/1.1 403 Forbidden\r\nContent-Length: 0\r\n\r\n");
      if (way == 1) continue;
      if (way > 1) server_.client().accept();
      ASSERT_TRUE(runUntil([&] { return !owner.events().empty(); }));
      if (way == 2) server_.client().sendClose(1000);
      if (way == 3) server_.client().reset();
      runFor(5ms);
    }
  };
  const auto settle = [&] {
    runFor(1500ms);
    server_.forgetClients();
    runFor(100ms);
  };
  round();
  settle();
  const auto before = openDescriptors();
  for (int i = 0; i < 10; ++i) round();
  settle();
  EXPECT_EQ(openDescriptors(), before);
}

// Messages

TEST_F(WebSocketServer, hearsWhatCameWithTheHandshake) {
  connect(server_.url());
  server_.client().accept(Client::frame(kText, "first") + Client::frame(kText, "second"));
  EXPECT_TRUE(tells({"open", "text first", "text second"}));
}

TEST_F(WebSocketServer, hearsWhatCameBeforeTheEnd) {
  open();
  server_.client().sendFrame(kText, "first");
  server_.client().sendFrame(kText, "second");
  server_.client().close();
  EXPECT_TRUE(tells({"open", "text first", "text second", "lost"}));
}

TEST_F(WebSocketServer, waitsForTheRestOfAFrame) {
  open();
  const auto frame = Client::frame(kText, "whole");
  server_.client().send(frame.substr(0, 4));
  ASSERT_TRUE(tells({"open"}, 500ms));
  server_.client().send(frame.substr(4));
  EXPECT_TRUE(tells({"open", "text whole"}));
  server_.client().send(frame.substr(0, 4));
  server_.client().close();
  EXPECT_TRUE(tells({"open", "text whole", "lost"}));
}

TEST_F(WebSocketServer, putsFragmentsTogether) {
  open();
  // The cut goes through a character, and a ping comes in between.
  const std::string text = "città → 🍅";
  server_.client().sendFrame(kText, text.substr(0, 5), false);
  server_.client().sendFrame(kPing, "are you there");
  server_.client().sendFrame(kContinuation, text.substr(5, 6), false);
  server_.client().sendFrame(kContinuation, text.substr(11), true);
  EXPECT_TRUE(tells({"open", "text " + text}));
  ASSERT_EQ(server_.client().frames().size(), 1u);
  EXPECT_EQ(server_.client().frames().front().opcode, 10);
  EXPECT_EQ(server_.client().frames().front().payload, "are you there");
}

TEST_F(WebSocketServer, dropsBinaryMessages) {
  open();
  server_.client().sendFrame(kBinary, "binary");
  server_.client().sendFrame(kBinary, "in ", false);
  server_.client().sendFrame(kContinuation, "two", true);
  server_.client().sendFrame(kText, "text");
  EXPECT_TRUE(tells({"open", "text text"}));
}

TEST_F(WebSocketServer, takesGreatMessages) {
  open();
  for (const auto size : {7 * kMiB, 8 * kMiB}) {
    const std::string text(size, 'x');
    server_.client().sendFrame(kText, text);
    ASSERT_TRUE(runUntil([&] { return owner_.events().back().size() == 5 + size; }));
    EXPECT_EQ(owner_.events().back(), "text " + text);
  }
  server_.client().sendFrame(kText, "after");
  EXPECT_TRUE(runUntil([&] { return owner_.events().back() == "text after"; }));
}

TEST_F(WebSocketServer, losesAMessageThatIsTooGreat) {
  open();
  server_.client().sendFrame(kText, std::string(8 * kMiB + 1, 'x'));
  EXPECT_TRUE(tells({"open", "lost"}));
  EXPECT_TRUE(runUntil([&] { return server_.client().gone(); }, 3s));
}

TEST_F(WebSocketServer, losesFragmentsThatAreTooGreatTogether) {
  open();
  server_.client().sendFrame(kText, std::string(5 * kMiB, 'x'), false);
  server_.client().sendFrame(kContinuation, std::string(4 * kMiB, 'x'), true);
  EXPECT_TRUE(tells({"open", "lost"}));
  EXPECT_TRUE(runUntil([&] { return server_.client().gone(); }, 3s));
}

TEST_F(WebSocketServer, losesAServerThatBreaksTheProtocol) {
  const Strings breaches = {
      Client::frame(kText, "\xC3"),                        // half a character
      Client::frame(kText, "\xED\xA0\x80"),                // a surrogate
      Client::frame(kText, "\xC0\x80"),                    // an overlong zero
      Client::frame(kContinuation, "of what"),             // no beginning
      "\xC1\x04text",                                      // compressed, which nobody agreed on
      "\x83\x04text",                                      // of no known kind
      std::string("\x81\x84\0\0\0\0text", 10),             // masked, as only clients do
      std::string("\x81\x7F\x7F\xFF\xFF\xFF\0\0\0\0", 10)  // as long as nothing can be
  };
  testing::internal::CaptureStderr();
  for (std::size_t i = 0; i < breaches.size(); ++i) {
    SocketOwner owner;
    owner.connect(*sockets_, server_.url());
    ASSERT_TRUE(runUntil([&] { return server_.clients().size() > i && server_.client().asked(); }));
    server_.client().accept();
    ASSERT_TRUE(runUntil([&] { return owner.events() == Events{"open"}; }));
    server_.client().send(breaches[i]);
    EXPECT_TRUE(runUntil([&] { return owner.events().size() > 1; })) << i;
    runFor(50ms);
    EXPECT_EQ(owner.events(), (Events{"open", "lost"})) << i;
  }
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(WebSocketServer, doesNotSendWhatIsNoText) {
  open();
  testing::internal::CaptureStderr();
  owner_.socket().sendText("\xC3");
  owner_.socket().sendText("good");
  ASSERT_TRUE(runUntil([&] { return !server_.client().frames().empty(); }));
  EXPECT_EQ(server_.client().frames().front().payload, "good");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

/// Sends for as long as the other side takes it, from a thread of its own.
class Flood {
 public:
  Flood(int descriptor, std::string bytes)
      : bytes_(std::move(bytes)), thread_([this, descriptor] {
          std::size_t sent = 0;
          while (sent < bytes_.size()) {
            pollfd ready = {descriptor, POLLOUT, 0};
            ::poll(&ready, 1, 1000);
            const auto count = ::send(descriptor, bytes_.data() + sent, bytes_.size() - sent, MSG_NOSIGNAL);
            if (count > 0) sent += static_cast<std::size_t>(count);
            if (count < 0 && errno != EAGAIN) return;
          }
        }) {}
  ~Flood() { thread_.join(); }

 private:
  std::string bytes_;
  std::thread thread_;
};

TEST_F(WebSocketServer, leavesTheLoopTimeInAFlood) {
  constexpr std::size_t kTexts = 20'000;
  open();
  std::string bytes;
  for (std::size_t i = 0; i < kTexts; ++i) bytes += Client::frame(kText, std::string(600, 'x'));
  int turns = 0;
  const guint timer = g_timeout_add(
      10,
      [](gpointer data) -> gboolean {
        ++*static_cast<int*>(data);
        return G_SOURCE_CONTINUE;
      },
      &turns);
  owner_.then = [](const std::string&) { g_usleep(50); };
  const Flood flood(server_.client().descriptor(), std::move(bytes));
  ASSERT_TRUE(runUntil([&] { return owner_.events().size() > 1; }));
  const int before = turns;
  EXPECT_TRUE(runUntil([&] { return owner_.events().size() == 1 + kTexts; }, 60s));
  // The texts take more than a second to handle.
  EXPECT_GT(turns - before, 30);
  g_source_remove(timer);
}

}  // namespace
}  // namespace orvalle::contract
