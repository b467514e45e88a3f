#pragma once

#include <gtk/gtk.h>

#include <memory>
#include <string>

#include "platform/linux/factory.h"
#include "platform/memory/memory_diary.h"
#include "tests/contract/foreign_window.h"
#include "tests/contract/window_home.h"

namespace orvalle::contract {

class MemoryFrontmostRig {
 public:
  platform::Frontmost& frontmost() { return frontmost_; }
  void use(const std::string& application, const std::string& title) {
    frontmost_.name = application;
    frontmost_.title = title.empty() ? std::nullopt : std::optional(title);
  }
  void leave() {
    frontmost_.name.reset();
    frontmost_.title.reset();
  }

 private:
  platform::memory::MemoryFrontmost frontmost_;
};

class X11FrontmostRig {
 public:
  platform::Frontmost& frontmost() { return *frontmost_; }
  void use(const std::string& application, const std::string& title) {
    // One after the other: a window manager need not bring a new window before that of another program.
    window_.reset();
    ForeignFace face;
    face.windowClass = "rig" + std::string(1, '\0') + application + '\0';
    face.name = title;
    window_ = std::make_unique<ForeignWindow>(face);
  }
  void leave() {
    window_.reset();
    runUntil([this] { return !frontmost_->applicationName(); });
  }

 private:
  WindowHome home_;
  std::unique_ptr<platform::Frontmost> frontmost_ = platform::linuxos::makeFrontmost();
  std::unique_ptr<ForeignWindow> window_;
};

}  // namespace orvalle::contract
