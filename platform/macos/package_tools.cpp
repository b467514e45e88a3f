#include "platform/package_tools.h"

#include "platform/archive_listing.h"
#include "platform/macos/factory.h"

namespace orvalle::platform::macos {
namespace {

class SystemTools final : public PackageTools {
 public:
  Command list(const std::filesystem::path& archive) const override {
    // With names in UTF-8 and dates in three words, whatever the user's language.
    constexpr const char* kTool = "/usr/bin/bsdtar";
    return {"/usr/bin/env", {"LC_ALL=en_US.UTF-8", kTool, "-t", "-v", "-f", archive}, kTool};
  }

  std::variant<std::uintmax_t, std::string> judge(const std::string& listing) const override {
    return judgeListing(listing);
  }

  Command unpack(const std::filesystem::path& archive, const std::filesystem::path& folder) const override {
    return {"/usr/bin/ditto", {"-x", "-k", archive, folder}};
  }

  Command verify(const std::filesystem::path& bundle) const override {
    return {"/usr/bin/codesign", {"--verify", "--deep", "--strict", bundle}};
  }

  std::string copyLine() const override { return R"(/usr/bin/ditto "$3" "$2")"; }

  std::string openLine() const override { return R"(/usr/bin/open "$2")"; }
};

}  // namespace

std::unique_ptr<PackageTools> makePackageTools() {
  return std::make_unique<SystemTools>();
}

}  // namespace orvalle::platform::macos
