#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "base/json.h"
#include "link/web_address.h"
#include "platform/platform.h"
#include "web/services.h"

namespace orvalle::web {

/// What requests of the page can reach. All of it outlives them.
struct Desktop {
  const platform::Platform& platform;
  const link::WebAddress& address;
  const Services& services;
};

/// A request of the page while it is handled: its arguments, and the ways to answer it. A request that needs
/// no answer uses none of these.
class Request {
 public:
  using Reply = std::function<void(const std::string& text)>;

  /// `reply` sends the answer, `next` lets the page's later messages have their turn. Both are called on the
  /// main loop, and may be called after their owner is gone.
  Request(const base::Json& body, const Desktop& desktop, Reply reply, std::function<void()> next);

  /// An argument; the fallback stands in for one that is missing or of another type.
  std::string text(std::string_view key, const std::string& fallback = "") const;
  std::optional<std::string> optionalText(std::string_view key) const;
  bool boolean(std::string_view key, bool fallback = false) const;

  const platform::Platform& platform() const { return desktop_.platform; }
  const link::WebAddress& address() const { return desktop_.address; }
  const Services& services() const { return desktop_.services; }

  /// Answers at once.
  void answer(const std::string& text) const { reply_(text); }
  /// The answer to be given later, once, on any thread, while the page goes on.
  Reply answerLater() const;
  /// The answer to be given later, once, on the main loop. The page's later messages wait for it.
  Reply answerInTurn();

  /// Handles the request named `tipo`; nothing happens when there is none of that name.
  void handle(std::string_view tipo);

 private:
  const base::Json& body_;
  Desktop desktop_;
  Reply reply_;
  /// Empty once somebody else has it.
  std::function<void()> next_;
};

}  // namespace orvalle::web
