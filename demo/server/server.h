#pragma once

#include <libsoup/soup.h>

#include <memory>
#include <string>

#include "demo/server/realtime_endpoint.h"
#include "demo/server/site.h"

namespace orvalle::demo {

/// The ports to try, first to last. A first port of 0 leaves the choice to the system.
struct PortRange {
  unsigned first = 4717;
  unsigned last = 4816;
};

/// Serves a site over HTTP, and the realtime service over websockets, on the loopback interface, on IPv4 and
/// on IPv6 where the machine has it. Runs on the main context that was the thread's default when it was
/// started; stops when it is destroyed, on that thread.
class Server {
 public:
  /// Listens on the first port of the range that is free on both address families; null when none is.
  static std::unique_ptr<Server> start(Site site, PortRange ports, RealtimeOptions realtime);

  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;
  ~Server();

  /// The address to open, for example "http://localhost:4717/".
  std::string address() const;
  unsigned port() const { return port_; }

 private:
  Server(Site site, RealtimeOptions realtime);
  bool listen(unsigned port);

  struct Stop {
    void operator()(SoupServer* server) const;
  };

  Site site_;
  std::unique_ptr<SoupServer, Stop> server_;
  RealtimeEndpoint realtime_;
  unsigned port_ = 0;
};

}  // namespace orvalle::demo
