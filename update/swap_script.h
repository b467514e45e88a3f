#pragma once

#include <string>

#include "platform/package_tools.h"

namespace orvalle::update {

/// The shell script that puts a new bundle in the old one's place. Its arguments: the process to wait for,
/// the installed bundle, the new one. After ten seconds it goes ahead whether or not that process has ended.
/// When the copy fails it stops there.
std::string swapScript(const platform::PackageTools& tools);

}  // namespace orvalle::update
