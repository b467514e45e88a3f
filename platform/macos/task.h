#pragma once

#import <Foundation/Foundation.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace orvalle::platform::macos {

/// A process that is not started yet, with nothing to read and nobody to listen to it.
NSTask* _Nonnull makeTask(const std::filesystem::path& program, const std::vector<std::string>& arguments);

/// Starts it. The reason when that was not possible.
std::optional<std::string> launch(NSTask* _Nonnull task);

}  // namespace orvalle::platform::macos
