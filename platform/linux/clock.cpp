#include "platform/clock.h"

#include "platform/linux/factory.h"

namespace orvalle::platform::linuxos {
namespace {

class SystemClock final : public Clock {
 public:
  WallTime now() const override { return std::chrono::system_clock::now(); }
};

}  // namespace

std::unique_ptr<Clock> makeClock() {
  return std::make_unique<SystemClock>();
}

}  // namespace orvalle::platform::linuxos
