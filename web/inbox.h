#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <string>

#include "base/json.h"
#include "base/liveness.h"
#include "platform/background.h"

namespace orvalle::web {

/// The page's messages, handled one at a time in the order of their arrival. A very long one is read beside
/// the main loop, and one that takes its time holds up those behind it: to the page it looks as if each were
/// dealt with at once, and the interface never waits.
class Inbox {
 public:
  /// Handles one message and calls `next` once, when those behind it may have their turn: on the
  /// main loop, inside the call or later. `next` does nothing once the inbox is gone.
  using Handler = std::function<void(const base::Json& body, std::function<void()> next)>;

  /// `background` must outlive this.
  Inbox(platform::Background& background, Handler handler);
  Inbox(const Inbox&) = delete;
  Inbox& operator=(const Inbox&) = delete;

  /// Takes in a JSON document. Whatever is none is dropped.
  void take(std::string json);

 private:
  void handleWaiting();
  void readBeside(std::string json);
  void handle(const std::optional<base::Json>& body);
  void next();

  platform::Background& background_;
  Handler handler_;
  std::deque<std::string> waiting_;
  /// A message is being handled.
  bool busy_ = false;
  /// The loop over the waiting messages runs further up the stack.
  bool looping_ = false;
  base::Liveness liveness_;
};

}  // namespace orvalle::web
