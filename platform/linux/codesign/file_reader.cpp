#include "platform/linux/codesign/file_reader.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <vector>

namespace orvalle::platform::linuxos {
namespace {

constexpr std::size_t kPiece = 256 * 1024;

bool readAll(int file, const std::function<void(std::string_view)>& piece, std::uintmax_t longest) {
  struct stat status {};
  if (::fstat(file, &status) != 0 || !S_ISREG(status.st_mode)) return false;
  std::vector<char> buffer(kPiece);
  std::uintmax_t total = 0;
  for (;;) {
    const ssize_t got = ::read(file, buffer.data(), buffer.size());
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return got == 0;
    total += static_cast<std::uintmax_t>(got);
    if (total > longest) return false;
    piece({buffer.data(), static_cast<std::size_t>(got)});
  }
}

}  // namespace

bool readFile(const std::filesystem::path& path, const std::function<void(std::string_view)>& piece,
              std::uintmax_t longest) {
  const int file = ::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
  if (file < 0) return false;
  const bool whole = readAll(file, piece, longest);
  ::close(file);
  return whole;
}

std::optional<std::string> readFile(const std::filesystem::path& path, std::uintmax_t longest) {
  std::string text;
  if (!readFile(
          path, [&](std::string_view piece) { text += piece; }, longest))
    return {};
  return text;
}

}  // namespace orvalle::platform::linuxos
