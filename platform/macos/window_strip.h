#pragma once

#import <AppKit/AppKit.h>

#include "platform/title_strip.h"

@class OrvalleStripView;

namespace orvalle::platform::macos {

/// The strip over the top of a window's content.
class WindowStrip final : public TitleStrip {
 public:
  /// Over the upper edge of a content of this size.
  WindowStrip(NSSize contentSize, double height);
  WindowStrip(const WindowStrip&) = delete;
  WindowStrip& operator=(const WindowStrip&) = delete;
  ~WindowStrip() override;

  NSView* _Nonnull native() const;

  void performWindowDrag() override;
  void miniaturize() override;
  void zoom() override;
  std::optional<std::string> doubleClickAction() const override;

 private:
  OrvalleStripView* _Nonnull view_;
};

}  // namespace orvalle::platform::macos
