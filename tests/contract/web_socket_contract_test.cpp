#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "platform/memory/memory_link.h"
#include "tests/contract/frame_server.h"
#include "tests/contract/loop.h"
#include "tests/contract/native.h"
#include "tests/contract/socket_owner.h"

/// What every websocket does, whatever makes it.
namespace orvalle::contract {
namespace {

/// The twin, and the server's side of it.
class MemoryWorld {
 public:
  platform::WebSockets& sockets() { return sockets_; }
  std::string url() const { return "ws://server/"; }
  template <typename Done>
  bool until(Done done) {
    return done();
  }
  void wait() {}
  void awaitHandshake() {}
  void accept() { state().accept(); }
  void sendText(const std::string& text) { state().sendText(text); }
  void breakOff() { state().lose(); }
  std::vector<std::string> received() { return state().sent; }
  bool gone() { return state().over; }
  int closeCode() { return state().open ? state().cancelCode : 0; }

 private:
  platform::memory::WebSocketState& state() { return *sockets_.all.back(); }
  platform::memory::MemoryWebSockets sockets_;
};

/// The native one, and a real server.
class NativeWorld {
 public:
  platform::WebSockets& sockets() { return *sockets_; }
  std::string url() const { return server_.url(); }
  template <typename Done>
  bool until(Done done) {
    return runUntil(done);
  }
  void wait() { runFor(std::chrono::milliseconds(150)); }
  void awaitHandshake() {
    ASSERT_TRUE(runUntil([&] { return !server_.clients().empty() && server_.client().asked(); }));
  }
  void accept() {
    awaitHandshake();
    server_.client().accept();
  }
  void sendText(const std::string& text) { server_.client().sendFrame(kText, text); }
  void breakOff() { server_.client().reset(); }
  std::vector<std::string> received() {
    std::vector<std::string> texts;
    for (const auto& frame : server_.client().frames()) {
      if (frame.opcode == kText) texts.push_back(frame.payload);
    }
    return texts;
  }
  bool gone() { return server_.client().gone(); }
  int closeCode() { return server_.client().closeCode(); }

 private:
  std::unique_ptr<platform::WebSockets> sockets_ = native::makeWebSockets();
  FrameServer server_;
};

template <typename World>
class WebSocketContract : public ::testing::Test {
 protected:
  using Events = std::vector<std::string>;

  void connect() { owner_.connect(world_.sockets(), world_.url()); }
  void open() {
    connect();
    world_.accept();
    ASSERT_TRUE(world_.until([&] { return owner_.events() == Events{"open"}; }));
  }
  /// Whether these are the events, and remain so.
  bool tells(const Events& events) {
    world_.until([&] { return owner_.events().size() >= events.size(); });
    world_.wait();
    return owner_.events() == events;
  }

  World world_;
  SocketOwner owner_;
};

using Worlds = ::testing::Types<MemoryWorld, NativeWorld>;

class WorldNames {
 public:
  template <typename World>
  static std::string GetName(int) {
    return std::is_same_v<World, MemoryWorld> ? "Memory" : "Native";
  }
};

TYPED_TEST_SUITE(WebSocketContract, Worlds, WorldNames);

TYPED_TEST(WebSocketContract, opensWhenTheServerAccepts) {
  this->connect();
  this->world_.awaitHandshake();
  EXPECT_TRUE(this->tells({}));
  this->world_.accept();
  EXPECT_TRUE(this->tells({"open"}));
}

TYPED_TEST(WebSocketContract, bringsTextsBothWaysInOrder) {
  this->open();
  const std::vector<std::string> texts = {"uno", "", "città → 🍅", std::string("a\0b", 3)};
  for (const auto& text : texts) this->world_.sendText(text);
  EXPECT_TRUE(this->tells({"open", "text uno", "text ", "text città → 🍅", std::string("text a\0b", 8)}));
  for (const auto& text : texts) this->owner_.socket().sendText(text);
  EXPECT_TRUE(this->world_.until([&] { return this->world_.received() == texts; }));
}

TYPED_TEST(WebSocketContract, dropsWhatIsSentBeforeTheHandshake) {
  this->connect();
  this->owner_.socket().sendText("too early");
  this->world_.accept();
  ASSERT_TRUE(this->tells({"open"}));
  this->owner_.socket().sendText("in time");
  EXPECT_TRUE(this->world_.until([&] { return !this->world_.received().empty(); }));
  EXPECT_EQ(this->world_.received(), std::vector<std::string>{"in time"});
}

TYPED_TEST(WebSocketContract, tellsALossOnceAndLast) {
  this->open();
  this->world_.breakOff();
  EXPECT_TRUE(this->tells({"open", "lost"}));
  this->owner_.socket().sendText("nobody is there");
  this->owner_.socket().cancel(1001);
  EXPECT_TRUE(this->tells({"open", "lost"}));
}

TYPED_TEST(WebSocketContract, tellsAConnectionThatCannotBeMadeAsLost) {
  this->connect();
  this->world_.awaitHandshake();
  this->world_.breakOff();
  EXPECT_TRUE(this->tells({"lost"}));
}

TYPED_TEST(WebSocketContract, cancelsWithTheCodeAndSaysNothing) {
  this->open();
  this->owner_.socket().cancel(4321);
  this->owner_.socket().sendText("too late");
  EXPECT_TRUE(this->world_.until([&] { return this->world_.closeCode() == 4321 && this->world_.gone(); }));
  EXPECT_TRUE(this->world_.received().empty());
  EXPECT_TRUE(this->tells({"open"}));
}

TYPED_TEST(WebSocketContract, cancelsOnce) {
  this->open();
  this->owner_.socket().cancel(4321);
  this->owner_.socket().cancel(1001);
  this->owner_.drop();
  EXPECT_TRUE(this->world_.until([&] { return this->world_.closeCode() == 4321; }));
  EXPECT_TRUE(this->tells({"open"}));
}

TYPED_TEST(WebSocketContract, cancelsWhileConnecting) {
  this->connect();
  this->world_.awaitHandshake();
  this->owner_.socket().cancel(1001);
  EXPECT_TRUE(this->world_.until([&] { return this->world_.gone(); }));
  EXPECT_TRUE(this->tells({}));
}

TYPED_TEST(WebSocketContract, staysSilentWhenTheServerAnswersACancelledHandshake) {
  this->connect();
  this->world_.awaitHandshake();
  this->owner_.socket().cancel(1001);
  this->world_.accept();
  EXPECT_TRUE(this->tells({}));
}

TYPED_TEST(WebSocketContract, cancelsByDestruction) {
  this->open();
  this->owner_.drop();
  EXPECT_TRUE(this->world_.until([&] { return this->world_.closeCode() == 1001 && this->world_.gone(); }));
  EXPECT_TRUE(this->tells({"open"}));
}

TYPED_TEST(WebSocketContract, cancelsAHandshakeByDestruction) {
  this->connect();
  this->world_.awaitHandshake();
  this->owner_.drop();
  EXPECT_TRUE(this->world_.until([&] { return this->world_.gone(); }));
  EXPECT_TRUE(this->tells({}));
}

TYPED_TEST(WebSocketContract, mayBeCancelledWhenItOpens) {
  this->owner_.then = [&](const std::string&) { this->owner_.socket().cancel(1001); };
  this->connect();
  this->world_.accept();
  ASSERT_TRUE(this->tells({"open"}));
  this->world_.sendText("nobody listens");
  EXPECT_TRUE(this->tells({"open"}));
  EXPECT_EQ(this->world_.closeCode(), 1001);
}

TYPED_TEST(WebSocketContract, mayBeDestroyedWhenItOpens) {
  this->owner_.then = [&](const std::string&) { this->owner_.drop(); };
  this->connect();
  this->world_.accept();
  ASSERT_TRUE(this->tells({"open"}));
  EXPECT_EQ(this->world_.closeCode(), 1001);
}

TYPED_TEST(WebSocketContract, mayBeCancelledByAText) {
  this->open();
  this->owner_.then = [&](const std::string&) { this->owner_.socket().cancel(1001); };
  this->world_.sendText("first");
  this->world_.sendText("second");
  this->world_.wait();
  this->world_.breakOff();
  EXPECT_TRUE(this->tells({"open", "text first"}));
}

TYPED_TEST(WebSocketContract, mayBeDestroyedByAText) {
  this->open();
  this->owner_.then = [&](const std::string&) { this->owner_.drop(); };
  this->world_.sendText("first");
  this->world_.sendText("second");
  EXPECT_TRUE(this->tells({"open", "text first"}));
}

TYPED_TEST(WebSocketContract, mayBeDestroyedByItsLoss) {
  this->open();
  this->owner_.then = [&](const std::string&) { this->owner_.drop(); };
  this->world_.breakOff();
  EXPECT_TRUE(this->tells({"open", "lost"}));
}

TYPED_TEST(WebSocketContract, answersFromInsideAnEvent) {
  this->owner_.then = [&](const std::string& event) { this->owner_.socket().sendText("after " + event); };
  this->connect();
  this->world_.accept();
  ASSERT_TRUE(this->tells({"open"}));
  this->world_.sendText("ciao");
  const std::vector<std::string> answers = {"after open", "after text ciao"};
  EXPECT_TRUE(this->world_.until([&] { return this->world_.received() == answers; }));
}

TYPED_TEST(WebSocketContract, hasNoNeedOfListeners) {
  const auto socket = this->world_.sockets().connect(this->world_.url(), {});
  this->world_.accept();
  this->world_.wait();
  this->world_.sendText("ciao");
  this->world_.wait();
  this->world_.breakOff();
  this->world_.wait();
  socket->sendText("nobody is there");
}

}  // namespace
}  // namespace orvalle::contract
