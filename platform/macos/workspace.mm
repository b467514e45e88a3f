#include "platform/workspace.h"

#import <AppKit/AppKit.h>

#import "platform/macos/factory.h"
#import "platform/macos/text.h"

namespace orvalle::platform::macos {
namespace {

class AppKitWorkspace final : public Workspace {
 public:
  void open(const std::string& url) override {
    if (NSURL* address = [NSURL URLWithString:nativeText(url)])
      [[NSWorkspace sharedWorkspace] openURL:address];
  }

  void openFolder(const std::filesystem::path& folder) override {
    std::error_code error;
    if (!std::filesystem::is_directory(folder, error)) return;
    [[NSWorkspace sharedWorkspace] openURL:[NSURL fileURLWithPath:nativeText(folder.native())]];
  }
};

}  // namespace

std::unique_ptr<Workspace> makeWorkspace() {
  return std::make_unique<AppKitWorkspace>();
}

}  // namespace orvalle::platform::macos
