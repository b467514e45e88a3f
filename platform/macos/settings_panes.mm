#include "platform/settings_panes.h"

#import <AppKit/AppKit.h>

#import "platform/macos/factory.h"

namespace orvalle::platform::macos {
namespace {

NSString* addressOf(SettingsPane pane) {
  switch (pane) {
    case SettingsPane::Notifications:
      return @"x-apple.systempreferences:com.apple.preference.notifications";
    case SettingsPane::Documents:
      return @"x-apple.systempreferences:com.apple.preference.security?Privacy_FilesAndFolders";
  }
}

class SystemSettings final : public SettingsPanes {
 public:
  void open(SettingsPane pane) override {
    if (NSURL* address = [NSURL URLWithString:addressOf(pane)])
      [[NSWorkspace sharedWorkspace] openURL:address];
  }
};

}  // namespace

std::unique_ptr<SettingsPanes> makeSettingsPanes() {
  return std::make_unique<SystemSettings>();
}

}  // namespace orvalle::platform::macos
