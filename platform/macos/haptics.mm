#include "platform/haptics.h"

#import <AppKit/AppKit.h>

#import "platform/macos/factory.h"

namespace orvalle::platform::macos {
namespace {

class TrackpadHaptics final : public Haptics {
 public:
  void perform(HapticPattern pattern) override {
    [[NSHapticFeedbackManager defaultPerformer]
        performFeedbackPattern:pattern == HapticPattern::Alignment ? NSHapticFeedbackPatternAlignment
                                                                   : NSHapticFeedbackPatternLevelChange
               performanceTime:NSHapticFeedbackPerformanceTimeNow];
  }
};

}  // namespace

std::unique_ptr<Haptics> makeHaptics() {
  return std::make_unique<TrackpadHaptics>();
}

}  // namespace orvalle::platform::macos
