#pragma once

#include <optional>
#include <string_view>

#include "demo/server/http_exchange.h"
#include "demo/server/page_folder.h"
#include "demo/server/pairing_keys.h"

namespace orvalle::demo {

/// What the web application answers to each request: its own small interface under "/api/", the program's
/// updates under "/mac/" where there are any, the files of the page, and the page itself for every route of
/// the application. Knows nothing of sockets.
class Site {
 public:
  Site(PageFolder page, PairingKeys keys, std::optional<PageFolder> updates = {});

  /// The full answer, security headers included.
  Response answer(const Request& request) const;

 private:
  Response route(const Request& request) const;
  Response update(std::string_view name) const;
  Response pairing(const Request& request) const;
  Response pageAt(std::string_view path, const Request& request) const;

  PageFolder page_;
  PairingKeys keys_;
  std::optional<PageFolder> updates_;
};

}  // namespace orvalle::demo
