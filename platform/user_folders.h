#pragma once

#include <filesystem>

namespace orvalle::platform {

/// Where the user's files live. The folders are looked up at every call and need not exist yet.
class UserFolders {
 public:
  virtual ~UserFolders() = default;
  /// The user's own documents.
  virtual std::filesystem::path documents() const = 0;
  /// What programs keep for themselves, each in a folder of its own name.
  virtual std::filesystem::path applicationSupport() const = 0;
  /// For files that nobody misses after the next start of the machine.
  virtual std::filesystem::path temporary() const = 0;
};

}  // namespace orvalle::platform
