#include "base/read_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace orvalle::base {
namespace {

bool isRegular(int descriptor) {
  struct stat status {};
  return ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

std::optional<std::string> readAll(int descriptor, std::size_t limit) {
  std::string contents;
  char buffer[16384];
  for (;;) {
    const ssize_t count = ::read(descriptor, buffer, sizeof buffer);
    if (count == 0) return contents;
    if (count < 0 && errno == EINTR) continue;
    if (count < 0 || static_cast<std::size_t>(count) > limit - contents.size()) return {};
    contents.append(buffer, static_cast<std::size_t>(count));
  }
}

}  // namespace

std::optional<std::string> readFile(const std::filesystem::path& path, std::size_t limit) {
  // The system would take the name to end there, and find another file.
  if (path.native().find('\0') != std::string::npos) return {};
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC);
  if (descriptor < 0) return {};
  auto contents = isRegular(descriptor) ? readAll(descriptor, limit) : std::nullopt;
  ::close(descriptor);
  return contents;
}

}  // namespace orvalle::base
