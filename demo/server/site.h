#pragma once

#include <string_view>

#include "demo/server/http_exchange.h"
#include "demo/server/page_folder.h"
#include "demo/server/pairing_keys.h"

namespace orvalle::demo {

/// What the web application answers to each request: its own small interface under "/api/", the files of the
/// page, and the page itself for every route of the application. Knows nothing of sockets.
class Site {
 public:
  Site(PageFolder page, PairingKeys keys);

  /// The full answer, security headers included.
  Response answer(const Request& request) const;

 private:
  Response route(const Request& request) const;
  Response pairing(const Request& request) const;
  Response pageAt(std::string_view path, const Request& request) const;

  PageFolder page_;
  PairingKeys keys_;
};

}  // namespace orvalle::demo
