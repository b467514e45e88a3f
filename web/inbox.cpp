#include "web/inbox.h"

#include <memory>
#include <optional>
#include <utility>

namespace orvalle::web {
namespace {

/// From this many bytes on, reading a message takes longer than a frame on the screen.
constexpr std::size_t kVeryLong = 4 * 1024 * 1024;

}  // namespace

Inbox::Inbox(platform::Background& background, Handler handler)
    : background_(background), handler_(std::move(handler)) {}

void Inbox::take(std::string json) {
  waiting_.push_back(std::move(json));
  handleWaiting();
}

void Inbox::handleWaiting() {
  // What was handled at once comes back here through `next`: a loop, so that a long queue is no deep stack.
  if (looping_) return;
  looping_ = true;
  while (!busy_ && !waiting_.empty()) {
    auto json = std::move(waiting_.front());
    waiting_.pop_front();
    busy_ = true;
    if (json.size() < kVeryLong) {
      handle(base::parseJson(json));
    } else {
      readBeside(std::move(json));
    }
  }
  looping_ = false;
}

void Inbox::readBeside(std::string json) {
  const auto body = std::make_shared<std::optional<base::Json>>();
  background_.run([body, json = std::move(json)] { *body = base::parseJson(json); },
                  liveness_.guard([this, body] { handle(*body); }));
}

void Inbox::handle(const std::optional<base::Json>& body) {
  if (!body) return next();
  handler_(*body, liveness_.guard([this] { next(); }));
}

void Inbox::next() {
  busy_ = false;
  handleWaiting();
}

}  // namespace orvalle::web
