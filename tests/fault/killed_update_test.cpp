#include <algorithm>
#include <map>
#include <regex>
#include <set>
#include <string>

#include "platform/memory/memory_platform.h"
#include "tests/contract/signed_bundle.h"
#include "tests/fault/killed_process.h"
#include "update/aggiornamenti.h"
#include "update/installazione.h"
#include "update/swap_script.h"

/// The program, killed at each of its steps while it installs an update: the installed bundle is as it was,
/// and once the script has begun it has all it needs.
namespace orvalle::fault {
namespace {

namespace fs = std::filesystem;

/// Notes on the disk that the script has begun.
class NotedSwap : public platform::memory::MemoryProcesses {
 public:
  explicit NotedSwap(fs::path note) : note_(std::move(note)) {}
  std::optional<std::string> startDetached(const fs::path&, const std::vector<std::string>&) override {
    fs::create_directory(note_);
    // How many calls came before differs by a few from run to run: the moment after the note must last for
    // more.
    for (int calls = 0; calls < 10; ++calls) (void)fs::exists(note_);
    return {};
  }

 private:
  fs::path note_;
};

class KilledUpdate : public contract::SignedBundle {
 protected:
  KilledUpdate() {
    makeBundle(newer, "nuovo");
    before = everything(app);
    after = everything(newer);
  }
  /// The whole of it; the server and the tools are played.
  void install() const {
    platform::memory::MemoryPlatform system;
    system.environment.variables["ORVALLE_APP_URL"] = "https://app.example/";
    system.userFolders.temporaryFolder = temporary;
    system.bundle.folder = app;
    NotedSwap processes(begun);
    const auto platform = system.platform({.processes = &processes});
    const link::WebAddress address(system.environment, system.defaults, "https://default.example/");
    update::Installazione installation(platform, address);
    installation.onScambio = [this](const std::string&) { fs::create_directory(noted); };
    installation.scarica({"2.0", 2, "/x.zip", {}, {}});
    auto& request = *system.http.requests.at(0);
    write(request.file, "PK" + std::string(10'000, 'z'));
    request.gotFile(200);
    processes.runs.back()->end(0, "1000");
    const fs::path work = processes.runs.back()->arguments.at(1);
    fs::copy(newer, work / "Orvalle.app", fs::copy_options::recursive | fs::copy_options::copy_symlinks);
    write(work / "Orvalle.app/identifier", "app.orvalle.Orvalle");
    processes.runs.back()->end();
    processes.runs.back()->end();
  }
  void clear() const {
    for (const auto& path : {temporary, begun, noted}) fs::remove_all(path);
  }
  /// What lies in the temporary folder by its name, without what is random in it.
  std::map<std::string, fs::path> leftovers() const {
    std::map<std::string, fs::path> found;
    if (!fs::exists(temporary)) return found;
    for (const auto& entry : fs::directory_iterator(temporary)) {
      auto name = std::regex_replace(entry.path().filename().string(),
                                     std::regex("[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}"), "");
      if (name.starts_with(".orvalle-")) name = ".orvalle-";
      EXPECT_TRUE(found.emplace(name, entry.path()).second) << name << " twice";
    }
    return found;
  }

  fs::path newer = root / "nuova.app";
  fs::path temporary = root / "tmp";
  fs::path begun = root / "cominciato";
  fs::path noted = root / "annotato";
  std::map<std::string, std::string> before;
  std::map<std::string, std::string> after;
};

TEST_F(KilledUpdate, leavesTheInstalledBundleAloneAndTheScriptWhatItNeeds) {
  const std::set<std::string> known{"orvalle-scarico-", "orvalle-agg-", "orvalle-nuova-.app",
                                    "orvalle-scambio-.sh", ".orvalle-"};
  std::set<std::string> seen;
  int call = 1;
  for (; killAfter(call, [this] { install(); }); ++call, clear()) {
    SCOPED_TRACE("killed after call " + std::to_string(call));
    ASSERT_EQ(everything(app), before);
    const auto left = leftovers();
    for (const auto& [name, path] : left) {
      ASSERT_TRUE(known.contains(name)) << name;
      seen.insert(name);
      // Nobody else looks into what may be changed.
      if (fs::is_directory(path)) {
        ASSERT_EQ(fs::status(path).permissions(), fs::perms::owner_all) << name;
      }
    }
    if (const auto copy = left.find("orvalle-nuova-.app"); copy != left.end()) {
      auto found = everything(copy->second);
      found.erase("identifier");
      ASSERT_EQ(found, after);
    }
    if (const auto script = left.find("orvalle-scambio-.sh"); script != left.end()) {
      ASSERT_EQ(read(script->second), update::swapScript(platform::memory::MemoryPackageTools()));
    }
    if (fs::exists(begun)) {
      ASSERT_TRUE(left.contains("orvalle-nuova-.app") && left.contains("orvalle-scambio-.sh"));
    }
    ASSERT_TRUE(fs::exists(begun) || !fs::exists(noted));
    if (fs::exists(begun) && !fs::exists(noted)) seen.insert("begun and not noted");
  }
  EXPECT_TRUE(fs::exists(noted));
  // Each was there to be seen, or nothing was proved.
  for (const auto& name : known) EXPECT_TRUE(seen.contains(name)) << name;
  EXPECT_TRUE(seen.contains("begun and not noted"));
}

}  // namespace
}  // namespace orvalle::fault
