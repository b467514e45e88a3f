#include "platform/pasteboard.h"

#import <AppKit/AppKit.h>

#import "platform/macos/factory.h"
#import "platform/macos/text.h"

namespace orvalle::platform::macos {
namespace {

class GeneralPasteboard final : public Pasteboard {
 public:
  void readText(std::function<void(const std::string&)> done) override {
    done(utf8Text([[NSPasteboard generalPasteboard] stringForType:NSPasteboardTypeString]));
  }
};

}  // namespace

std::unique_ptr<Pasteboard> makePasteboard() {
  return std::make_unique<GeneralPasteboard>();
}

}  // namespace orvalle::platform::macos
