// Whatever comes over the wire: the channel takes it or leaves it, and goes on as before.

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "link/realtime_channel.h"
#include "platform/memory/memory_link.h"
#include "platform/memory/memory_stores.h"
#include "platform/memory/virtual_time.h"

namespace {

using namespace orvalle;

/// A channel that has joined, once for all frames.
struct Link {
  Link() {
    config.setUrl("https://p.example");
    config.setAnonKey("anon");
    config.setChannelKey("K");
    channel.onState = [this](const link::Snapshot& snapshot) { take(snapshot); };
    channel.onConnection = [this](bool connected) { told += connected ? 1 : 1000; };
    channel.connect();
    server().accept();
    server().sendText(R"({"event":"phx_reply"})");
  }

  platform::memory::WebSocketState& server() { return *sockets.all.back(); }

  void take(const link::Snapshot& snapshot) {
    ++states;
    for (const double minutes : {snapshot.elapsedMin, snapshot.remainingMin, snapshot.plannedMin}) {
      if (!std::isfinite(minutes)) std::abort();
    }
  }

  platform::memory::VirtualTime time;
  platform::memory::MemoryDefaults defaults;
  link::Config config{defaults};
  platform::memory::MemoryWebSockets sockets;
  link::RealtimeChannel channel{config, sockets, time};
  int told = 0;
  int states = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static Link link;
  const int before = link.states;
  link.server().sendText(std::string(reinterpret_cast<const char*>(data), size));
  // One state at most; no connection comes or goes by a frame, and nothing is answered.
  if (link.states > before + 1 || link.told != 1 || link.sockets.all.size() != 1 ||
      link.server().sent.size() != 1)
    std::abort();
  return 0;
}
