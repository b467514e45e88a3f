// Handles the same state broadcast over and over, from its text to the owner's callback, and prints the
// nanoseconds that one takes in the best of fifty stretches, which no other program disturbed: TEXT-FILE
// COUNT.

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>

#include "link/realtime_channel.h"
#include "platform/memory/memory_link.h"
#include "platform/memory/memory_stores.h"
#include "platform/memory/virtual_time.h"

int main(int argc, char** argv) {
  using namespace orvalle;
  int count = 0;
  if (argc != 3 || std::from_chars(argv[2], argv[2] + std::strlen(argv[2]), count).ec != std::errc() ||
      count < 1) {
    std::fprintf(stderr, "usage: frames TEXT-FILE COUNT\n");
    return 2;
  }
  std::ifstream file(argv[1], std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(file), {}};

  platform::memory::VirtualTime time;
  platform::memory::MemoryDefaults defaults;
  platform::memory::MemoryWebSockets sockets;
  link::Config config(defaults);
  config.setUrl("https://p.example");
  config.setAnonKey("anon");
  config.setChannelKey("K");
  link::RealtimeChannel channel(config, sockets, time);
  int states = 0;
  channel.onState = [&](const link::Snapshot&) { ++states; };
  channel.connect();
  auto& server = *sockets.all.back();
  server.accept();

  using Nanoseconds = std::chrono::duration<double, std::nano>;
  constexpr int kStretches = 50;
  const int stretch = count / kStretches + 1;
  auto best = Nanoseconds::max();
  for (int i = 0; i < kStretches; ++i) {
    const auto start = std::chrono::steady_clock::now();
    for (int j = 0; j < stretch; ++j) server.sendText(text);
    best = std::min<Nanoseconds>(best, (std::chrono::steady_clock::now() - start) / stretch);
  }
  if (states != kStretches * stretch) {
    std::fprintf(stderr, "frames: only %d states arrived\n", states);
    return 1;
  }
  std::printf("%.0f\n", best.count());
}
