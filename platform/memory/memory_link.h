#pragma once

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "platform/pair_view.h"
#include "platform/pasteboard.h"
#include "platform/web_socket.h"

/// Twins of what the live link needs: tests play the server, the clipboard and the user.
namespace orvalle::platform::memory {

/// A connection as its server sees it.
struct WebSocketState {
  std::string url;
  WebSocketEvents events;
  std::vector<std::string> sent;
  bool open = false;
  /// Lost or cancelled: nothing is told any more.
  bool over = false;
  int cancelCode = 0;

  /// The server accepts the connection.
  void accept() {
    if (over || std::exchange(open, true)) return;
    if (events.onOpen) events.onOpen();
  }
  void sendText(const std::string& text) {
    if (open && !over && events.onText) events.onText(text);
  }
  /// The connection breaks, or could not be made.
  void lose() {
    if (std::exchange(over, true)) return;
    if (events.onLost) events.onLost();
  }
};

class MemoryWebSockets : public WebSockets {
 public:
  std::unique_ptr<WebSocket> connect(const std::string& url, WebSocketEvents events) override {
    auto state = std::make_shared<WebSocketState>();
    state->url = url;
    state->events = std::move(events);
    all.push_back(state);
    return std::make_unique<Socket>(std::move(state));
  }

  /// Every connection that was ever asked for, in order.
  std::vector<std::shared_ptr<WebSocketState>> all;

 private:
  class Socket : public WebSocket {
   public:
    explicit Socket(std::shared_ptr<WebSocketState> state) : state_(std::move(state)) {}
    ~Socket() override { cancel(1001); }
    void sendText(const std::string& text) override {
      if (state_->open && !state_->over) state_->sent.push_back(text);
    }
    void cancel(int code) override {
      if (std::exchange(state_->over, true)) return;
      state_->cancelCode = code;
    }

   private:
    std::shared_ptr<WebSocketState> state_;
  };
};

class MemoryPasteboard : public Pasteboard {
 public:
  void readText(std::function<void(const std::string&)> done) override { done(text); }
  std::string text;
};

/// What the pairing window shows.
struct PairViewState {
  PairViewSpec spec;
  std::vector<std::string> fields;
  std::string message;
  MessageColour messageColour = MessageColour::Label;
  bool visible = false;
  int timesPresented = 0;
  std::function<void(std::size_t button)> press;
};

class MemoryPairViews : public PairViews {
 public:
  std::unique_ptr<PairView> make(const PairViewSpec& spec) override {
    return std::make_unique<View>(spec, made);
  }
  /// The windows made so far; null pointers once destroyed.
  std::vector<PairViewState*> made;

 private:
  class View : public PairView {
   public:
    View(const PairViewSpec& spec, std::vector<PairViewState*>& made) : made_(made) {
      state_.spec = spec;
      state_.fields.resize(spec.fields.size());
      state_.press = [this](std::size_t button) {
        if (onButton) onButton(button);
      };
      made_.push_back(&state_);
    }
    ~View() override {
      std::replace(made_.begin(), made_.end(), &state_, static_cast<PairViewState*>(nullptr));
    }
    std::string fieldText(std::size_t field) const override { return state_.fields.at(field); }
    void setFieldText(std::size_t field, const std::string& text) override { state_.fields.at(field) = text; }
    void setMessage(const std::string& text, MessageColour colour) override {
      state_.message = text;
      state_.messageColour = colour;
    }
    void present() override {
      state_.visible = true;
      ++state_.timesPresented;
    }
    void orderOut() override { state_.visible = false; }

   private:
    std::vector<PairViewState*>& made_;
    PairViewState state_;
  };
};

}  // namespace orvalle::platform::memory
