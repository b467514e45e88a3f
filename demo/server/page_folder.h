#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace orvalle::demo {

/// A file of the page with what its HTTP headers say about it.
struct PageFile {
  std::string content;
  std::string mimeType;
  /// A quoted entity tag that changes exactly when the content does.
  std::string entityTag;
};

/// Reads the page's files from one folder and never anything outside it. Nothing is cached, so that an edited
/// file shows at the next load.
class PageFolder {
 public:
  explicit PageFolder(std::filesystem::path folder);

  /// The regular file at a decoded path relative to the folder ("screens/focus.js"). Absent when there is
  /// none, when the path has a ".", ".." or hidden segment, a backslash or a NUL, or when a symbolic link
  /// leads out of the folder.
  std::optional<PageFile> read(std::string_view relativePath) const;
  /// Where that file really is.
  std::optional<std::filesystem::path> find(std::string_view relativePath) const;

 private:
  std::filesystem::path folder_;
};

}  // namespace orvalle::demo
