#pragma once

#import <AppKit/AppKit.h>

#include <memory>
#include <string>

#import "platform/macos/factory.h"
#import "platform/macos/text.h"

namespace orvalle::contract {

/// A text on the clipboard, as another program may put it there.
class NativeBoard {
 public:
  NativeBoard() { empty(); }
  platform::Pasteboard& board() { return *board_; }
  void copy(const std::string& text) {
    empty();
    [[NSPasteboard generalPasteboard] setString:platform::macos::nativeText(text)
                                        forType:NSPasteboardTypeString];
  }
  void empty() { [[NSPasteboard generalPasteboard] clearContents]; }

 private:
  std::unique_ptr<platform::Pasteboard> board_ = platform::macos::makePasteboard();
};

}  // namespace orvalle::contract
