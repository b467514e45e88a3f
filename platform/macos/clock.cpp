#include "platform/clock.h"

#include "platform/macos/factory.h"

namespace orvalle::platform::macos {
namespace {

class SystemClock final : public Clock {
 public:
  WallTime now() const override { return std::chrono::system_clock::now(); }
};

}  // namespace

std::unique_ptr<Clock> makeClock() {
  return std::make_unique<SystemClock>();
}

}  // namespace orvalle::platform::macos
