#pragma once

#include <filesystem>
#include <string>

namespace orvalle::platform {

/// The user's desktop, as far as it opens things for us.
class Workspace {
 public:
  virtual ~Workspace() = default;
  /// Hands the address to the user's default handler for its scheme, never through a shell. Returns at once;
  /// a failure is silent.
  virtual void open(const std::string& url) = 0;
  /// Shows the folder in the user's file manager. Nothing happens when it does not exist. Returns at once.
  virtual void openFolder(const std::filesystem::path& folder) = 0;
};

}  // namespace orvalle::platform
