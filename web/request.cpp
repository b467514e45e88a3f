#include "web/request.h"

#include <utility>

#include "web/request_table.h"

namespace orvalle::web {

Request::Request(const base::Json& body, const Desktop& desktop, Reply reply, std::function<void()> next)
    : body_(body), desktop_(desktop), reply_(std::move(reply)), next_(std::move(next)) {}

std::string Request::text(std::string_view key, const std::string& fallback) const {
  return optionalText(key).value_or(fallback);
}

std::optional<std::string> Request::optionalText(std::string_view key) const {
  return base::jsonText(base::jsonMember(body_, key));
}

bool Request::boolean(std::string_view key, bool fallback) const {
  return base::jsonBoolean(base::jsonMember(body_, key)).value_or(fallback);
}

Request::Reply Request::answerLater() const {
  return [&loop = desktop_.platform.loop, reply = reply_](const std::string& text) {
    loop.post([reply, text] { reply(text); });
  };
}

Request::Reply Request::answerInTurn() {
  return [reply = reply_, next = std::exchange(next_, nullptr)](const std::string& text) {
    reply(text);
    next();
  };
}

void Request::handle(std::string_view tipo) {
  for (const auto& row : requestTable()) {
    if (row.tipo == tipo) {
      row.handle(*this);
      break;
    }
  }
  if (next_) next_();
}

}  // namespace orvalle::web
