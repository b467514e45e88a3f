#import "platform/macos/file_url.h"

#include "platform/macos/text.h"

namespace orvalle::platform::macos {

NSURL* fileUrl(const std::filesystem::path& path) {
  return [NSURL fileURLWithPath:nativeText(path.native())];
}

std::filesystem::path filePath(NSURL* url) {
  if (!url) return {};
  const std::filesystem::path path(url.fileSystemRepresentation);
  return path.has_filename() ? path : path.parent_path();
}

}  // namespace orvalle::platform::macos
