#include "base/private_folder.h"

#include <sys/stat.h>

#include <cerrno>

namespace orvalle::base {

std::error_code makePrivateFolder(const std::filesystem::path& path) {
  std::error_code error;
  if (std::filesystem::is_directory(path, error)) return {};
  const auto parent = path.parent_path();
  if (!parent.empty() && parent != path) {
    if (const auto failure = makePrivateFolder(parent)) return failure;
  }
  constexpr mode_t kUserOnly = 0700;
  // Somebody else may have made it just now; then what counts is that it is a folder.
  if (::mkdir(path.c_str(), kUserOnly) == 0) return {};
  const std::error_code failure(errno, std::generic_category());
  return std::filesystem::is_directory(path, error) ? std::error_code() : failure;
}

}  // namespace orvalle::base
