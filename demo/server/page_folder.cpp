#include "demo/server/page_folder.h"

#include <glib.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <system_error>
#include <utility>

namespace orvalle::demo {
namespace {

namespace fs = std::filesystem;

constexpr std::array<std::pair<std::string_view, const char*>, 12> kMimeTypes{{
    {".html", "text/html; charset=utf-8"},
    {".css", "text/css; charset=utf-8"},
    {".js", "text/javascript; charset=utf-8"},
    {".mjs", "text/javascript; charset=utf-8"},
    {".json", "application/json"},
    {".webmanifest", "application/manifest+json"},
    {".svg", "image/svg+xml"},
    {".png", "image/png"},
    {".ico", "image/x-icon"},
    {".woff2", "font/woff2"},
    {".txt", "text/plain; charset=utf-8"},
    {".wasm", "application/wasm"},
}};

const char* mimeTypeOf(const fs::path& file) {
  const std::string extension = file.extension().string();
  for (const auto& [known, type] : kMimeTypes) {
    if (extension == known) return type;
  }
  return "application/octet-stream";
}

// Hidden files are refused as well: an editor's or a version control's leftovers are not part of the page.
bool isPlainSegment(std::string_view segment) {
  return !segment.empty() && segment.front() != '.' && segment.find('\\') == std::string_view::npos &&
         segment.find('\0') == std::string_view::npos;
}

bool isPlainPath(std::string_view path) {
  while (true) {
    const std::size_t slash = path.find('/');
    if (!isPlainSegment(path.substr(0, slash))) return false;
    if (slash == std::string_view::npos) return true;
    path.remove_prefix(slash + 1);
  }
}

bool liesBeneath(const fs::path& file, const fs::path& folder) {
  return std::mismatch(folder.begin(), folder.end(), file.begin(), file.end()).first == folder.end();
}

std::optional<std::string> contentOf(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  if (!stream) return std::nullopt;
  std::string content;
  std::array<char, 16384> chunk;
  while (stream.read(chunk.data(), chunk.size()) || stream.gcount() > 0) {
    content.append(chunk.data(), static_cast<std::size_t>(stream.gcount()));
  }
  if (stream.bad()) return std::nullopt;
  return content;
}

std::string entityTagOf(const std::string& content) {
  g_autofree char* hash = g_compute_checksum_for_data(
      G_CHECKSUM_SHA256, reinterpret_cast<const guchar*>(content.data()), content.size());
  return "\"" + std::string(hash, 32) + "\"";
}

}  // namespace

PageFolder::PageFolder(fs::path folder) : folder_(std::move(folder)) {}

std::optional<fs::path> PageFolder::find(std::string_view relativePath) const {
  if (!isPlainPath(relativePath)) return std::nullopt;
  // The links are followed before anything is opened; what is compared and opened is the real path.
  std::error_code error;
  const fs::path folder = fs::canonical(folder_, error);
  if (error) return std::nullopt;
  fs::path file = fs::canonical(folder / relativePath, error);
  if (error || !liesBeneath(file, folder) || !fs::is_regular_file(file, error)) return std::nullopt;
  return file;
}

std::optional<PageFile> PageFolder::read(std::string_view relativePath) const {
  const auto file = find(relativePath);
  std::optional<std::string> content = file ? contentOf(*file) : std::nullopt;
  if (!content) return std::nullopt;
  const std::string entityTag = entityTagOf(*content);
  return PageFile{std::move(*content), mimeTypeOf(fs::path(relativePath)), entityTag};
}

}  // namespace orvalle::demo
