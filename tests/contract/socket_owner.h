#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/web_socket.h"

namespace orvalle::contract {

/// Keeps one websocket, writes down what it tells, and sees that it tells nothing from inside a call.
class SocketOwner {
 public:
  void connect(platform::WebSockets& sockets, const std::string& url) {
    platform::WebSocketEvents events;
    events.onOpen = [this] { note("open"); };
    events.onText = [this](const std::string& text) { note("text " + text); };
    events.onLost = [this] { note("lost"); };
    calling_ = true;
    socket_ = std::make_unique<Watched>(sockets.connect(url, std::move(events)), calling_);
    calling_ = false;
  }
  platform::WebSocket& socket() { return *socket_; }
  void drop() { socket_.reset(); }
  const std::vector<std::string>& events() const { return events_; }

  /// Run inside every event.
  std::function<void(const std::string& event)> then;

 private:
  class Watched : public platform::WebSocket {
   public:
    Watched(std::unique_ptr<platform::WebSocket> socket, bool& calling)
        : socket_(std::move(socket)), calling_(calling) {}
    ~Watched() override {
      call([this] { socket_.reset(); });
    }
    void sendText(const std::string& text) override {
      call([&] { socket_->sendText(text); });
    }
    void cancel(int code) override {
      call([&] { socket_->cancel(code); });
    }

   private:
    template <typename Call>
    void call(Call call) {
      calling_ = true;
      call();
      calling_ = false;
    }
    std::unique_ptr<platform::WebSocket> socket_;
    bool& calling_;
  };

  void note(const std::string& event) {
    EXPECT_FALSE(calling_) << event << " from inside a call";
    events_.push_back(event);
    if (then) then(event);
  }

  bool calling_ = false;
  std::vector<std::string> events_;
  std::unique_ptr<Watched> socket_;
};

}  // namespace orvalle::contract
