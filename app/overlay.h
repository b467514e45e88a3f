#pragma once

#include <memory>
#include <string>

#include "base/liveness.h"
#include "platform/platform.h"

namespace orvalle::app {

/// The small panel that floats over all programs with the session's time and label. Its place is remembered.
class Overlay {
 public:
  /// Builds the panel at its remembered place, else 20 points from the top right corner of the usable screen.
  /// Hidden.
  explicit Overlay(const platform::Platform& platform);
  Overlay(const Overlay&) = delete;
  Overlay& operator=(const Overlay&) = delete;

  /// The text, in red when the session is over its planned end, else in white.
  void update(const std::string& text, bool over);
  /// On the screen, without making the program the active one, or off it.
  void show(bool visible);

 private:
  void place(const platform::Screen& screen);

  platform::Defaults& defaults_;
  std::unique_ptr<platform::Panel> panel_;
  base::Liveness liveness_;
};

}  // namespace orvalle::app
