#include "platform/open_panel.h"

#import <AppKit/AppKit.h>

#include <utility>

#import "platform/macos/factory.h"
#import "platform/macos/text.h"

namespace orvalle::platform::macos {
namespace {

using Answer = std::optional<std::vector<std::string>>;

Answer chosen(NSOpenPanel* panel, NSModalResponse response) {
  if (response != NSModalResponseOK) return {};
  std::vector<std::string> paths;
  for (NSURL* url in panel.URLs) paths.emplace_back(url.fileSystemRepresentation);
  return paths;
}

class AppKitOpenPanel final : public OpenPanel {
 public:
  void choose(const OpenPanelSpec& spec, std::function<void(Answer)> done) override {
    NSOpenPanel* panel = [NSOpenPanel openPanel];
    panel.canChooseFiles = YES;
    panel.canChooseDirectories = NO;
    panel.allowsMultipleSelection = spec.allowsMultipleSelection;
    panel.message = nativeText(spec.message);
    panel.prompt = nativeText(spec.prompt);
    // On the screen the panel keeps itself alive; its handler keeps it until the answer is read.
    [panel beginWithCompletionHandler:^(NSModalResponse response) {
      done(chosen(panel, response));
    }];
  }
};

}  // namespace

std::unique_ptr<OpenPanel> makeOpenPanel() {
  return std::make_unique<AppKitOpenPanel>();
}

}  // namespace orvalle::platform::macos
