#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/memory/memory_desktop.h"

namespace orvalle::contract {

class MemoryAlertsRig {
 public:
  platform::Alerts& alerts() { return alerts_; }
  std::string message() { return alerts_.waiting.front().alert.message; }
  void press(std::size_t button) { alerts_.press(button); }
  bool open() { return !alerts_.waiting.empty(); }

 private:
  platform::memory::MemoryAlerts alerts_;
};

class MemoryOpenPanelRig {
 public:
  static constexpr bool kChooses = true;
  platform::OpenPanel& panel() { return panel_; }
  void choose(const std::string& path) { panel_.answer(std::vector<std::string>{path}); }
  void cancel() { panel_.answer(std::nullopt); }
  void settle() {}

 private:
  platform::memory::MemoryOpenPanel panel_;
};

}  // namespace orvalle::contract

#ifdef __APPLE__
#import "tests/contract/dialog_rig_macos.h"
#else
#include "tests/contract/dialog_rig_linux.h"
#endif
