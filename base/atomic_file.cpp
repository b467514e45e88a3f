#include "base/atomic_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string>

namespace orvalle::base {
namespace {

std::error_code lastError() {
  return {errno, std::generic_category()};
}

/// Owns a file descriptor.
class Descriptor {
 public:
  explicit Descriptor(int value) : value_(value) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() {
    if (value_ >= 0) ::close(value_);
  }
  int get() const { return value_; }

 private:
  int value_;
};

std::error_code writeAll(int descriptor, std::string_view contents) {
  while (!contents.empty()) {
    const ssize_t written = ::write(descriptor, contents.data(), contents.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return lastError();
    contents.remove_prefix(static_cast<std::size_t>(written));
  }
  return {};
}

std::error_code fillAndSync(int descriptor, std::string_view contents, std::filesystem::perms mode) {
  if (::fchmod(descriptor, static_cast<mode_t>(mode)) != 0) return lastError();
  if (const auto error = writeAll(descriptor, contents)) return error;
  if (::fsync(descriptor) != 0) return lastError();
  return {};
}

}  // namespace

std::error_code replaceFile(const std::filesystem::path& path, std::string_view contents,
                            std::filesystem::perms mode) {
  const auto folder = path.has_parent_path() ? path.parent_path() : std::filesystem::path(".");
  std::string temporary = (folder / (".orvalle-XXXXXX")).string();
  const Descriptor file(::mkostemp(temporary.data(), O_CLOEXEC));
  if (file.get() < 0) return lastError();

  auto error = fillAndSync(file.get(), contents, mode);
  if (!error && ::rename(temporary.c_str(), path.c_str()) != 0) error = lastError();
  if (error) {
    ::unlink(temporary.c_str());
    return error;
  }
  // The new file is in place; syncing the folder only makes the rename itself durable.
  const Descriptor directory(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (directory.get() >= 0) ::fsync(directory.get());
  return {};
}

}  // namespace orvalle::base
