#include "platform/bundle.h"

#include <fstream>
#include <iterator>

#include "base/json.h"
#include "platform/linux/factory.h"

namespace orvalle::platform::linuxos {
namespace {

namespace fs = std::filesystem;

constexpr const char* kInformation = "Info.json";

/// A folder with `Info.json` in it and the program in its `bin`.
class FolderBundle final : public Bundle {
 public:
  explicit FolderBundle(const fs::path& executable) : path_(executable.parent_path()) {
    const auto folder = path_.parent_path();
    std::error_code error;
    if (path_.filename() != "bin" || !fs::is_regular_file(folder / kInformation, error)) return;
    path_ = folder;
    std::ifstream file(folder / kInformation, std::ios::binary);
    information_ = base::parseJson(std::string(std::istreambuf_iterator<char>(file), {}));
  }

  std::optional<std::string> identifier() const override { return text("CFBundleIdentifier"); }
  std::optional<std::string> version() const override { return text("CFBundleVersion"); }
  std::optional<std::string> shortVersion() const override { return text("CFBundleShortVersionString"); }
  fs::path path() const override { return path_; }

 private:
  std::optional<std::string> text(std::string_view key) const {
    return information_ ? base::jsonText(base::jsonMember(*information_, key)) : std::nullopt;
  }

  fs::path path_;
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
