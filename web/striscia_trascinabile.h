#pragma once

#include "platform/title_strip.h"

namespace orvalle::web {

/// What a hidden title bar did, for the strip over the page: a press drags the window, a double click does
/// what the user has set for title bars.
class StrisciaTrascinabile {
 public:
  /// Height in points, also the height in pixels that the page keeps free.
  static constexpr int altezza = 38;

  /// `strip` must outlive this.
  explicit StrisciaTrascinabile(platform::TitleStrip& strip);
  StrisciaTrascinabile(const StrisciaTrascinabile&) = delete;
  StrisciaTrascinabile& operator=(const StrisciaTrascinabile&) = delete;
  ~StrisciaTrascinabile();

 private:
  void mouseDown(int clickCount);
  void doppioClic();

  platform::TitleStrip& strip_;
};

}  // namespace orvalle::web
