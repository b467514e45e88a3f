// Whatever the page says: the desktop does it or leaves it, answers what was asked and nothing else, and
// writes nowhere but into its own folders.

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <regex>
#include <set>
#include <string>

#include "base/scratch_folder.h"
#include "platform/memory/memory_platform.h"
#include "tests/unit/web/memory_services.h"
#include "web/finestra.h"

namespace {

using namespace orvalle;
namespace fs = std::filesystem;

void require(bool condition) {
  if (!condition) std::abort();
}

/// A user's folders, kept for all messages; and beside them, what nobody may touch.
struct Folders {
  Folders() {
    fs::create_directories(root() / "outside");
    for (const auto& folder : {documents(), support()}) fs::create_directories(folder);
  }
  const fs::path& root() const { return scratch->path(); }
  fs::path documents() const { return root() / "in/Documenti"; }
  fs::path support() const { return root() / "in/share"; }

  std::error_code error;
  std::unique_ptr<base::ScratchFolder> scratch =
      base::ScratchFolder::make(fs::temp_directory_path(), "orvalle-fuzz-", error);
};

/// What lies in the folder, and is of that kind, is nothing but this.
void requireOnly(const fs::path& folder, const fs::file_type type, const std::set<std::string>& names) {
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(folder, error)) {
    require(entry.symlink_status().type() == type);
    require(names.empty() || names.contains(entry.path().filename()));
  }
}

/// A window whose page is loaded, on a desktop in memory.
struct Page {
  explicit Page(const Folders& folders) {
    system.environment.variables["ORVALLE_APP_URL"] = "https://app.example/";
    system.userFolders.documentsFolder = folders.documents();
    system.userFolders.supportFolder = folders.support();
    system.notificationCentre.current = platform::NotificationStatus::Authorised;
    finestra.onState = [this](const link::Snapshot&) { ++states; };
    finestra.mostra();
    system.webWindows.made.at(0)->commit();
    system.webWindows.made.at(0)->scripts.clear();
  }

  platform::memory::MemoryPlatform system;
  platform::Platform platform = system.platform();
  link::WebAddress address{system.environment, system.defaults, "https://app.example/"};
  web::MemoryServices services{platform};
  web::Finestra finestra{platform, address, services};
  int states = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Folders folders;
  static const std::regex reply(
      R"(window\.__orvalleRisposta && window\.__orvalleRisposta\(-?[0-9]+, \[".*"\]\[0\]\))");
  Page page(folders);
  page.system.webWindows.made.at(0)->post(std::string(reinterpret_cast<const char*>(data), size));
  page.system.time.runPosted();
  const auto& scripts = page.system.webWindows.made.at(0)->scripts;
  require(page.states + scripts.size() <= 1);
  for (const auto& script : scripts) require(std::regex_match(script, reply));
  require(fs::is_empty(folders.root() / "outside"));
  requireOnly(folders.root(), fs::file_type::directory, {"in", "outside"});
  requireOnly(folders.root() / "in", fs::file_type::directory, {"Documenti", "share"});
  requireOnly(folders.documents(), fs::file_type::directory, {"Orvalle Backup"});
  requireOnly(folders.documents() / "Orvalle Backup", fs::file_type::regular, {});
  return 0;
}
