#include "platform/input_idle.h"

#import <ApplicationServices/ApplicationServices.h>

#include <algorithm>
#include <cmath>

#include "platform/macos/factory.h"

namespace orvalle::platform::macos {
namespace {

/// Of every program in the session, and without a permission.
class EventSource final : public InputIdle {
 public:
  double secondsSinceInput() override {
    const double seconds =
        CGEventSourceSecondsSinceLastEventType(kCGEventSourceStateCombinedSessionState, kCGAnyInputEventType);
    return std::isfinite(seconds) ? std::max(seconds, 0.0) : 0.0;
  }
};

}  // namespace

std::unique_ptr<InputIdle> makeInputIdle() {
  return std::make_unique<EventSource>();
}

}  // namespace orvalle::platform::macos
