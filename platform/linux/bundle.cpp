#include "platform/bundle.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>

#include "base/json.h"
#include "platform/linux/factory.h"

namespace orvalle::platform::linuxos {
namespace {

namespace fs = std::filesystem;

constexpr const char* kInformation = "Info.json";

/// More than anybody writes into it.
constexpr std::size_t kLongestInformation = 1024 * 1024;

/// What a bundle says of itself. A link in the place of the file is not followed, and a pipe not waited for.
std::optional<base::Json> readInformation(const fs::path& bundle) {
  const int file = ::open((bundle / kInformation).c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
  if (file < 0) return {};
  struct stat status {};
  std::string text;
  ssize_t got = -1;
  if (::fstat(file, &status) == 0 && S_ISREG(status.st_mode)) {
    std::array<char, 4096> buffer;
    while ((got = ::read(file, buffer.data(), buffer.size())) > 0 && text.size() <= kLongestInformation)
      text.append(buffer.data(), static_cast<std::size_t>(got));
  }
  ::close(file);
  if (got != 0) return {};
  return base::parseJson(text);
}

/// Whether what lies in a folder may be taken away from it: from a sticky one only by the owner of either.
bool mayRemoveFrom(const fs::path& folder, const fs::path& entry) {
  struct stat status {};
  if (::stat(folder.c_str(), &status) != 0 || !(status.st_mode & S_ISVTX)) return true;
  const auto user = ::geteuid();
  if (user == 0 || user == status.st_uid) return true;
  return ::lstat(entry.c_str(), &status) == 0 && user == status.st_uid;
}

/// Whether a folder may be emptied, with all folders in it. One that is not there is.
bool mayBeEmptied(const fs::path& folder) {
  const auto open = [](const fs::path& path) { return ::access(path.c_str(), R_OK | W_OK | X_OK) == 0; };
  std::error_code error;
  if (!fs::exists(folder, error)) return !error;
  if (!open(folder)) return false;
  fs::recursive_directory_iterator entry(folder, error);
  for (const fs::recursive_directory_iterator end; !error && entry != end; entry.increment(error)) {
    if (fs::is_directory(entry->symlink_status(error)) && !open(entry->path())) return false;
  }
  return !error;
}

/// A folder with `Info.json` in it and the program in its `bin`.
class FolderBundle final : public Bundle {
 public:
  explicit FolderBundle(const fs::path& executable) : path_(executable.parent_path()) {
    const auto folder = path_.parent_path();
    std::error_code error;
    if (path_.filename() != "bin" || !fs::is_regular_file(folder / kInformation, error)) return;
    path_ = folder;
    isBundle_ = true;
    information_ = readInformation(folder);
  }

  std::optional<std::string> identifier() const override { return text("CFBundleIdentifier"); }
  std::optional<std::string> version() const override { return text("CFBundleVersion"); }
  std::optional<std::string> shortVersion() const override { return text("CFBundleShortVersionString"); }
  std::optional<std::string> packageManager() const override { return text("PackageManager"); }
  fs::path path() const override { return path_; }

  std::optional<SwapObstacle> swapObstacle() const override {
    // Whatever else has this shape, such as a prefix that programs are installed under, is not ours to
    // remove.
    if (!isBundle_ || path_.extension() != ".app") return SwapObstacle::NoBundle;
    if (packageManager()) return SwapObstacle::Packaged;
    if (::access(path_.parent_path().c_str(), W_OK | X_OK) != 0) return SwapObstacle::FolderNotWritable;
    // One that is removed in part is lost.
    if (!mayRemoveFrom(path_.parent_path(), path_) || !mayBeEmptied(path_)) return SwapObstacle::NotRemovable;
    return {};
  }

  std::optional<std::string> identifierOf(const fs::path& path) const override {
    const auto information = readInformation(path);
    return information ? base::jsonText(base::jsonMember(*information, "CFBundleIdentifier")) : std::nullopt;
  }

 private:
  std::optional<std::string> text(std::string_view key) const {
    return information_ ? base::jsonText(base::jsonMember(*information_, key)) : std::nullopt;
  }

  fs::path path_;
  bool isBundle_ = false;
  std::optional<base::Json> information_;
};

}  // namespace

std::unique_ptr<Bundle> makeBundle() {
  std::error_code error;
  return makeBundle(fs::read_symlink("/proc/self/exe", error));
}

std::unique_ptr<Bundle> makeBundle(const fs::path& executable) {
  return std::make_unique<FolderBundle>(executable);
}

}  // namespace orvalle::platform::linuxos
