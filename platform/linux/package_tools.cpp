#include "platform/package_tools.h"

#include <utility>

#include "platform/archive_listing.h"
#include "platform/bundle.h"
#include "platform/linux/factory.h"
#include "platform/linux/running_instance.h"

namespace orvalle::platform::linuxos {
namespace {

/// bsdtar, with names in UTF-8 whatever the user's language.
Command bsdtar(std::vector<std::string> arguments) {
  constexpr const char* kTool = "/usr/bin/bsdtar";
  Command command{"/usr/bin/env", {"LC_ALL=C.UTF-8", kTool}, kTool};
  command.arguments.insert(command.arguments.end(), arguments.begin(), arguments.end());
  return command;
}

class BundleTools final : public PackageTools {
 public:
  BundleTools(const Bundle& bundle, std::string signer) : bundle_(bundle), signer_(std::move(signer)) {}

  Command list(const std::filesystem::path& archive) const override {
    return bsdtar({"-t", "-v", "-f", archive});
  }

  std::variant<std::uintmax_t, std::string> judge(const std::string& listing) const override {
    return judgeListing(listing);
  }

  Command unpack(const std::filesystem::path& archive, const std::filesystem::path& folder) const override {
    // Modes as they are in the archive, and nothing else of what a file system may know of a file. A
    // passphrase that fits nothing keeps it from asking for one, on and on.
    return bsdtar({"-x", "-p", "--passphrase", "none", "--no-same-owner", "--no-acls", "--no-fflags",
                   "--no-xattrs", "-f", archive, "-C", folder});
  }

  Command verify(const std::filesystem::path& bundle) const override {
    Command command{bundle_.path() / "bin" / "orvalle-codesign", {"--verify", "--deep", "--strict"}};
    if (!signer_.empty()) command.arguments.insert(command.arguments.end(), {"--signer", signer_});
    command.arguments.push_back(bundle);
    return command;
  }

  std::string copyLine() const override {
    // Until it lies there the new one is its user's alone.
    return R"(/bin/cp -aT "$3" "$2" && /bin/chmod )" + rootMode() + R"( "$2")";
  }

  std::string openLine() const override {
    return std::string(kAfterUpdate) + R"(=1 /usr/bin/setsid --fork "$2/AppRun")";
  }

 private:
  /// What others may do with the installed bundle, they may do with the next one; writing is never among it.
  std::string rootMode() const {
    std::error_code error;
    const auto mode = static_cast<unsigned>(std::filesystem::status(bundle_.path(), error).permissions());
    return "7" + std::to_string(mode >> 3 & 5) + std::to_string(mode & 5);
  }

  const Bundle& bundle_;
  std::string signer_;
};

}  // namespace

std::unique_ptr<PackageTools> makePackageTools(const Bundle& bundle, std::string signer) {
  return std::make_unique<BundleTools>(bundle, std::move(signer));
}

}  // namespace orvalle::platform::linuxos
