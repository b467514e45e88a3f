#include "base/private_folder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>

#include "tests/unit/base/temporary_folder.h"

namespace orvalle::base {
namespace {

namespace fs = std::filesystem;

class PrivateFolderTest : public ::testing::Test {
 protected:
  static fs::perms mode(const fs::path& path) { return fs::status(path).permissions(); }
  TemporaryFolder folder;
};

TEST_F(PrivateFolderTest, isMadeForTheUserOnlyWithWhatIsMissingAboveIt) {
  // Whatever the process's usual mode is.
  const auto before = ::umask(0);
  const auto path = folder.path() / "a/b/c";
  EXPECT_EQ(makePrivateFolder(path), std::error_code());
  ::umask(before);
  for (const auto& made : {path, path.parent_path(), path.parent_path().parent_path()})
    EXPECT_EQ(mode(made), fs::perms::owner_all) << made;
}

TEST_F(PrivateFolderTest, staysAsItIsWhereItIsThereAlready) {
  const auto path = folder.path() / "a";
  fs::create_directory(path);
  fs::permissions(path, fs::perms(0750));
  EXPECT_EQ(makePrivateFolder(path), std::error_code());
  EXPECT_EQ(makePrivateFolder(path / "b"), std::error_code());
  EXPECT_EQ(mode(path), fs::perms(0750));
}

TEST_F(PrivateFolderTest, isNotMadeThroughAFile) {
  std::ofstream(folder.path() / "a") << "x";
  EXPECT_EQ(makePrivateFolder(folder.path() / "a"), std::errc::file_exists);
  EXPECT_EQ(makePrivateFolder(folder.path() / "a/b"), std::errc::file_exists);
}

TEST_F(PrivateFolderTest, mayBeReachedThroughALink) {
  fs::create_directory(folder.path() / "real");
  fs::create_symlink(folder.path() / "real", folder.path() / "link");
  EXPECT_EQ(makePrivateFolder(folder.path() / "link/a"), std::error_code());
  EXPECT_TRUE(fs::is_directory(folder.path() / "real/a"));
}

}  // namespace
}  // namespace orvalle::base
