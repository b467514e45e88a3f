#include "platform/user_folders.h"

#import <Foundation/Foundation.h>

#include "platform/macos/factory.h"
#include "platform/macos/file_url.h"
#include "platform/macos/text.h"

namespace orvalle::platform::macos {
namespace {

namespace fs = std::filesystem;

class SystemFolders final : public UserFolders {
 public:
  fs::path documents() const override { return folder(NSDocumentDirectory, "Documents"); }

  fs::path applicationSupport() const override {
    return folder(NSApplicationSupportDirectory, "Library/Application Support");
  }

  fs::path temporary() const override { return filePath([NSURL fileURLWithPath:NSTemporaryDirectory()]); }

 private:
  /// The first that the system lists, else where it usually is.
  static fs::path folder(NSSearchPathDirectory directory, const char* usual) {
    NSURL* first =
        [NSFileManager.defaultManager URLsForDirectory:directory inDomains:NSUserDomainMask].firstObject;
    return first ? filePath(first) : fs::path(utf8Text(NSHomeDirectory())) / usual;
  }
};

}  // namespace

std::unique_ptr<UserFolders> makeUserFolders() {
  return std::make_unique<SystemFolders>();
}

}  // namespace orvalle::platform::macos
