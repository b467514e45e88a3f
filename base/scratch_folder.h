#pragma once

#include <filesystem>
#include <memory>
#include <string_view>
#include <system_error>

namespace orvalle::base {

/// A folder that only the user can look into, gone with everything in it when this is destroyed, whatever
/// permissions its contents have.
class ScratchFolder {
 public:
  /// Makes a folder named `prefix` and a new UUID in `parent`, which is made too where it is missing. A null
  /// pointer when that fails, with the reason in `error`.
  static std::unique_ptr<ScratchFolder> make(const std::filesystem::path& parent, std::string_view prefix,
                                             std::error_code& error);
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  ~ScratchFolder();

  const std::filesystem::path& path() const { return path_; }

 private:
  explicit ScratchFolder(std::filesystem::path path);

  std::filesystem::path path_;
};

}  // namespace orvalle::base
