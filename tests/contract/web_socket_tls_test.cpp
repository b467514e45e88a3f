#include <gtest/gtest.h>
#include <libsoup/soup.h>

#include <filesystem>

#include "platform/linux/factory.h"
#include "platform/linux/glib_ptr.h"
#include "tests/contract/certificate.h"
#include "tests/contract/loop.h"
#include "tests/contract/socket_owner.h"

/// The native websocket against a whole server of somebody else's making, with and without encryption.
namespace orvalle::contract {
namespace {

using namespace std::chrono_literals;
using platform::linuxos::GlibPtr;
using platform::linuxos::GObjectPtr;
using Events = std::vector<std::string>;

/// Answers every text with the same, and remembers how the client took its leave.
class EchoServer {
 public:
  EchoServer(const char* host, GTlsCertificate* certificate)
      : scheme_(certificate ? "wss" : "ws"),
        host_(host),
        server_(GObjectPtr<SoupServer>::adopt(soup_server_new("tls-certificate", certificate, nullptr))) {
    soup_server_add_websocket_handler(server_.get(), "/socket", nullptr, nullptr, opened, this, nullptr);
    // One family: a port that is free in one may be taken in the other.
    const int options = SOUP_SERVER_LISTEN_IPV4_ONLY | (certificate ? SOUP_SERVER_LISTEN_HTTPS : 0);
    soup_server_listen_local(server_.get(), 0, static_cast<SoupServerListenOptions>(options), nullptr);
  }
  EchoServer(const EchoServer&) = delete;
  EchoServer& operator=(const EchoServer&) = delete;
  ~EchoServer() {
    soup_server_disconnect(server_.get());
    if (connection_.get()) g_signal_handlers_disconnect_by_data(connection_.get(), this);
  }

  std::string url() const {
    GSList* uris = soup_server_get_uris(server_.get());
    const int port = g_uri_get_port(static_cast<GUri*>(uris->data));
    g_slist_free_full(uris, reinterpret_cast<GDestroyNotify>(g_uri_unref));
    return scheme_ + "://" + host_ + ":" + std::to_string(port) + "/socket";
  }
  SoupWebsocketConnection* connection() const { return connection_.get(); }
  int closeCode() const {
    return connection_ ? soup_websocket_connection_get_close_code(connection_.get()) : 0;
  }

 private:
  static void opened(SoupServer*, SoupServerMessage*, const char*, SoupWebsocketConnection* connection,
                     gpointer data) {
    auto& self = *static_cast<EchoServer*>(data);
    self.connection_ = GObjectPtr<SoupWebsocketConnection>::share(connection);
    soup_websocket_connection_set_max_incoming_payload_size(connection, 0);
    g_signal_connect(connection, "message", G_CALLBACK(answer), &self);
  }
  static void answer(SoupWebsocketConnection* connection, SoupWebsocketDataType type, GBytes* message,
                     gpointer) {
    soup_websocket_connection_send_message(connection, type, message);
  }

  std::string scheme_;
  std::string host_;
  GObjectPtr<SoupServer> server_;
  GObjectPtr<SoupWebsocketConnection> connection_;
};

class WebSocketEcho : public ::testing::Test {
 protected:
  void SetUp() override {
    certificate_ = makeCertificate("localhost");
    ASSERT_TRUE(certificate_) << "no certificate; is openssl installed?";
  }
  bool tells(const Events& events) {
    runUntil([&] { return owner_.events().size() >= events.size(); });
    runFor(100ms);
    return owner_.events() == events;
  }
  /// There and back, a great text too, and away with a code.
  void talk(EchoServer& server) {
    owner_.connect(*sockets_, server.url());
    ASSERT_TRUE(tells({"open"}));
    owner_.socket().sendText("città");
    ASSERT_TRUE(tells({"open", "text città"}));
    const std::string great(7 * 1024 * 1024, 'x');
    owner_.socket().sendText(great);
    ASSERT_TRUE(runUntil([&] { return owner_.events().size() == 3; }));
    EXPECT_EQ(owner_.events().back(), "text " + great);
    owner_.socket().cancel(1001);
    EXPECT_TRUE(runUntil([&] { return server.closeCode() == 1001; }));
    EXPECT_EQ(owner_.events().size(), 3u);
  }

  GObjectPtr<GTlsCertificate> certificate_;
  std::unique_ptr<platform::WebSockets> sockets_ = platform::linuxos::makeWebSockets();
  SocketOwner owner_;
};

TEST_F(WebSocketEcho, talksInTheOpen) {
  EchoServer server("127.0.0.1", nullptr);
  talk(server);
}

TEST_F(WebSocketEcho, talksToATrustedServer) {
  const Trust trust(certificate_.get());
  EchoServer server("localhost", certificate_.get());
  talk(server);
}

TEST_F(WebSocketEcho, losesAServerThatNobodyVouchesFor) {
  EchoServer server("localhost", certificate_.get());
  owner_.connect(*sockets_, server.url());
  EXPECT_TRUE(tells({"lost"}));
  EXPECT_FALSE(server.connection());
}

TEST_F(WebSocketEcho, losesATrustedServerOfAnotherName) {
  const Trust trust(certificate_.get());
  EchoServer server("127.0.0.1", certificate_.get());
  owner_.connect(*sockets_, server.url());
  EXPECT_TRUE(tells({"lost"}));
  EXPECT_FALSE(server.connection());
}

TEST_F(WebSocketEcho, losesAnEncryptedConnectionThatTheServerCloses) {
  const Trust trust(certificate_.get());
  EchoServer server("localhost", certificate_.get());
  owner_.connect(*sockets_, server.url());
  ASSERT_TRUE(tells({"open"}));
  soup_websocket_connection_close(server.connection(), 4000, "away");
  EXPECT_TRUE(tells({"open", "lost"}));
}

}  // namespace
}  // namespace orvalle::contract
