#pragma once

#import <Foundation/Foundation.h>

#include <filesystem>

namespace orvalle::platform::macos {

NSURL* _Nonnull fileUrl(const std::filesystem::path& path);

/// Without a separator at its end; empty for none.
std::filesystem::path filePath(NSURL* _Nullable url);

}  // namespace orvalle::platform::macos
