#import "platform/macos/look_later.h"

#import <dispatch/dispatch.h>

namespace orvalle::platform::macos {

void LookLater::ask() {
  if (asked_) return;
  asked_ = true;
  const std::function<void()> look = liveness_.guard([this] {
    asked_ = false;
    work_();
  });
  dispatch_async(dispatch_get_main_queue(), ^{
    look();
  });
}

}  // namespace orvalle::platform::macos
