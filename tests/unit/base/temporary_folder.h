#pragma once

#include <cstdlib>
#include <filesystem>

namespace orvalle::base {

/// A new, empty folder that goes away with this, whatever is in it then.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    auto pattern = (std::filesystem::temp_directory_path() / "orvalle-unit-XXXXXX").string();
    path_ = ::mkdtemp(pattern.data());
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace orvalle::base
