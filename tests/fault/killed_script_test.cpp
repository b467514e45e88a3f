#include <map>
#include <set>
#include <string>

#include "platform/linux/factory.h"
#include "tests/contract/signed_bundle.h"
#include "tests/fault/killed_tree.h"
#include "update/swap_script.h"

/// The script that swaps two bundles, killed with everything it has started after each of its steps: at every
/// moment a whole bundle is left, at its place or in the temporary folder.
namespace orvalle::fault {
namespace {

namespace fs = std::filesystem;

class KilledScript : public contract::SignedBundle {
 protected:
  using Tree = std::map<std::string, std::string>;

  KilledScript() {
    makeBundle(newer, "nuovo");
    fs::rename(app, older);
    before = everything(older);
    after = everything(newer);
  }
  /// As the program leaves things when it ends.
  void prepare() const {
    for (const auto& path : {app, copy, opened}) fs::remove_all(path);
    for (const auto& [source, place] : {std::pair(older, app), std::pair(newer, copy)})
      fs::copy(source, place, fs::copy_options::recursive | fs::copy_options::copy_symlinks);
    write(script, update::swapScript(*tools), 0755);
  }
  bool runAndKill(int change) const {
    // Nobody has this number: the old program has ended.
    return killTreeAfterChange(change, {"/bin/sh", script, "999999999", app, copy});
  }
  Tree at(const fs::path& path) const { return fs::is_directory(path) ? everything(path) : Tree(); }

  fs::path older = root / "vecchia.app";
  fs::path newer = root / "nuova.app";
  fs::path copy = root / "orvalle-nuova.app";
  fs::path script = root / "orvalle-scambio.sh";
  /// What a started bundle makes.
  fs::path opened = root / "partita";
  std::unique_ptr<platform::Bundle> bundle = platform::linuxos::makeBundle(app / "bin/orvalle");
  std::unique_ptr<platform::PackageTools> tools = platform::linuxos::makePackageTools(*bundle);
  Tree before;
  Tree after;
};

TEST_F(KilledScript, leavesAWholeBundleWheneverItIsKilled) {
  std::map<std::string, int> seen;
  int change = 1;
  for (prepare(); runAndKill(change); prepare(), ++change) {
    SCOPED_TRACE("killed after change " + std::to_string(change));
    const auto installed = at(app);
    const bool copyIsWhole = at(copy) == after;
    ASSERT_TRUE(installed == after || copyIsWhole);
    if (installed == before) {
      ++seen["old"];
    } else if (installed != after) {
      ++seen["partly gone or partly there"];
    } else if (copyIsWhole) {
      ++seen["new, with the copy"];
    } else if (!fs::exists(opened)) {
      ++seen["new, not opened"];
    } else {
      ++seen["new, opened"];
    }
    ASSERT_TRUE(!fs::exists(opened) || installed == after);
  }
  // Killed at no moment, it comes to its end.
  EXPECT_EQ(at(app), after);
  EXPECT_TRUE(fs::exists(opened));
  EXPECT_FALSE(fs::exists(copy));
  EXPECT_FALSE(fs::exists(script));
  for (const char* state :
       {"partly gone or partly there", "new, with the copy", "new, not opened", "new, opened"})
    EXPECT_GT(seen[state], 0) << state;
}

TEST_F(KilledScript, isMadeGoodByCopyingWhatLiesInTheTemporaryFolder) {
  const auto isWhole = [this] { return at(app) == before || at(app) == after; };
  int change = 1;
  for (prepare(); runAndKill(change) && isWhole(); prepare()) ++change;
  ASSERT_FALSE(isWhole());
  fs::remove_all(app);
  fs::copy(copy, app, fs::copy_options::recursive | fs::copy_options::copy_symlinks);
  EXPECT_EQ(platform::linuxos::verifyBundle(app), std::nullopt);
  EXPECT_EQ(at(app), after);
}

}  // namespace
}  // namespace orvalle::fault
