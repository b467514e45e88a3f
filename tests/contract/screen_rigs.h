#pragma once

#include <optional>

#include "platform/memory/memory_desktop.h"

namespace orvalle::contract {

class MemoryScreenRig {
 public:
  platform::Screen& screen() { return screen_; }
  std::optional<base::Rect> whole() { return base::Rect{{0, 0}, {1440, 900}}; }

 private:
  platform::memory::MemoryScreen screen_;
};

}  // namespace orvalle::contract

#ifdef __APPLE__
#import "tests/contract/screen_rig_macos.h"
#else
#include "tests/contract/screen_rig_linux.h"
#endif
