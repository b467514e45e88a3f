#include <unistd.h>

#include <memory>
#include <optional>

#include "platform/linux/factory.h"
#include "tests/contract/signed_bundle.h"

/// What keeps the user from replacing a bundle, found out before anything is downloaded.
namespace orvalle::contract {
namespace {

namespace fs = std::filesystem;
using Obstacle = std::optional<platform::SwapObstacle>;

/// The user is not root, whom nothing holds up.
class SwapObstacle : public SignedBundle {
 protected:
  SwapObstacle() {
    fs::permissions(root, fs::perms(0755));
    give(app.parent_path(), kUser);
  }
  ~SwapObstacle() override {
    std::error_code error;
    for (const auto& folder : {app.parent_path(), app, app / "share"})
      fs::permissions(folder, fs::perms(0755), error);
  }
  /// Gives somebody a folder with everything in it.
  static void give(const fs::path& folder, uid_t owner) {
    if (::geteuid() != 0) return;
    for (const auto& entry : fs::recursive_directory_iterator(folder))
      EXPECT_EQ(::lchown(entry.path().c_str(), owner, owner), 0);
    EXPECT_EQ(::chown(folder.c_str(), owner, owner), 0);
  }
  /// Lets everybody write in the bundle's folders.
  void openAll() const {
    for (const auto& entry : fs::recursive_directory_iterator(app)) {
      if (entry.is_directory()) fs::permissions(entry.path(), fs::perms(0777));
    }
    fs::permissions(app, fs::perms(0777));
  }
  static Obstacle of(const platform::Bundle& bundle) {
    const bool isRoot = ::geteuid() == 0;
    if (isRoot) {
      EXPECT_EQ(::setresuid(kUser, kUser, 0), 0);
    }
    const auto found = bundle.swapObstacle();
    if (isRoot) {
      EXPECT_EQ(::setresuid(0, 0, 0), 0);
    }
    return found;
  }
  Obstacle found() const { return of(*bundle); }

  static constexpr uid_t kUser = 65534;
  std::unique_ptr<platform::Bundle> bundle = platform::linuxos::makeBundle(app / "bin/orvalle");
};

TEST_F(SwapObstacle, isNoneWhereAllIsTheUsersOwn) {
  EXPECT_EQ(found(), std::nullopt);
  // Nor where it has been removed meanwhile.
  fs::remove_all(app);
  EXPECT_EQ(found(), std::nullopt);
}

TEST_F(SwapObstacle, isThatThereIsNoBundle) {
  write(root / "usr/bin/orvalle", "vecchio", 0755);
  EXPECT_EQ(of(*platform::linuxos::makeBundle(root / "usr/bin/orvalle")), platform::SwapObstacle::NoBundle);
  const auto other = app.parent_path() / "Orvalle";
  fs::rename(app, other);
  EXPECT_EQ(of(*platform::linuxos::makeBundle(other / "bin/orvalle")), platform::SwapObstacle::NoBundle);
}

TEST_F(SwapObstacle, isAFolderInWhichTheUserMayNotWrite) {
  for (const auto mode : {0555, 0666}) {
    fs::permissions(app.parent_path(), fs::perms(mode));
    EXPECT_EQ(found(), platform::SwapObstacle::FolderNotWritable) << std::oct << mode;
  }
}

TEST_F(SwapObstacle, isAFolderInTheBundleThatTheUserMayNotEmpty) {
  for (const auto& folder : {app, app / "share"}) {
    for (const auto mode : {0555, 0666, 0333}) {
      fs::permissions(folder, fs::perms(mode));
      EXPECT_EQ(found(), platform::SwapObstacle::NotRemovable) << folder << std::oct << mode;
    }
    fs::permissions(folder, fs::perms(0755));
    EXPECT_EQ(found(), std::nullopt);
  }
}

TEST_F(SwapObstacle, isABundleOfSomebodyElseInOnesOwnFolder) {
  if (::geteuid() != 0) GTEST_SKIP() << "nobody else to give a bundle to";
  give(app, 0);
  EXPECT_EQ(found(), platform::SwapObstacle::NotRemovable);
}

TEST_F(SwapObstacle, isAFolderFromWhichEachMayRemoveTheirOwn) {
  if (::geteuid() != 0) GTEST_SKIP() << "nobody else to give a bundle to";
  openAll();
  give(app.parent_path(), 0);
  fs::permissions(app.parent_path(), fs::perms(01777));
  EXPECT_EQ(found(), platform::SwapObstacle::NotRemovable);
  give(app, kUser);
  EXPECT_EQ(found(), std::nullopt);
  give(app.parent_path(), kUser);
  give(app, 0);
  EXPECT_EQ(found(), std::nullopt);
}

}  // namespace
}  // namespace orvalle::contract
