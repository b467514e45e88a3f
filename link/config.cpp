#include "link/config.h"

#include "base/url.h"

namespace orvalle::link {

std::optional<std::string> Config::socketURL() const {
  auto parts = base::UrlComponents::parse(url());
  if (!parts) return {};
  parts->scheme = parts->scheme == "http" ? "ws" : "wss";
  parts->path = "/realtime/v1/websocket";
  parts->setQueryItems({{"apikey", anonKey()}, {"vsn", "1.0.0"}});
  return parts->text();
}

}  // namespace orvalle::link
