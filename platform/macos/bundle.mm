#include "platform/bundle.h"

#import <Foundation/Foundation.h>
#include <unistd.h>

#include "platform/macos/factory.h"
#include "platform/macos/file_url.h"
#include "platform/macos/text.h"

namespace orvalle::platform::macos {
namespace {

namespace fs = std::filesystem;

class MainBundle final : public Bundle {
 public:
  std::optional<std::string> identifier() const override { return text(@"CFBundleIdentifier"); }
  std::optional<std::string> version() const override { return text(@"CFBundleVersion"); }
  std::optional<std::string> shortVersion() const override { return text(@"CFBundleShortVersionString"); }
  std::optional<std::string> packageManager() const override { return text(@"PackageManager"); }
  fs::path path() const override { return filePath(NSBundle.mainBundle.bundleURL); }

  std::optional<SwapObstacle> swapObstacle() const override {
    // Outside a bundle the system takes the program's folder for one: it is not ours to remove.
    if (path().extension() != ".app") return SwapObstacle::NoBundle;
    if (packageManager()) return SwapObstacle::Packaged;
    if (::access(path().parent_path().c_str(), W_OK | X_OK) != 0) return SwapObstacle::FolderNotWritable;
    return {};
  }

  std::optional<std::string> identifierOf(const fs::path& path) const override {
    NSString* found = [NSBundle bundleWithPath:nativeText(path.native())].bundleIdentifier;
    return found ? std::optional(utf8Text(found)) : std::nullopt;
  }

 private:
  static std::optional<std::string> text(NSString* key) {
    id value = NSBundle.mainBundle.infoDictionary[key];
    return [value isKindOfClass:[NSString class]] ? std::optional(utf8Text(value)) : std::nullopt;
  }
};

}  // namespace

std::unique_ptr<Bundle> makeBundle() {
  return std::make_unique<MainBundle>();
}

}  // namespace orvalle::platform::macos
