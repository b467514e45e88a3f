#include "base/scratch_folder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>

namespace orvalle::base {
namespace {

namespace fs = std::filesystem;

class ScratchFolderTest : public ::testing::Test {
 protected:
  ScratchFolderTest() {
    auto pattern = (fs::temp_directory_path() / "orvalle-test-XXXXXX").string();
    root = ::mkdtemp(pattern.data());
  }
  ~ScratchFolderTest() override { fs::remove_all(root); }

  fs::path root;
  std::error_code error;
};

TEST_F(ScratchFolderTest, isTheUsersAloneAndNamedByItsPrefix) {
  const auto old = ::umask(0);
  const auto folder = ScratchFolder::make(root / "a" / "b", "prova-", error);
  ::umask(old);
  ASSERT_TRUE(folder);
  EXPECT_FALSE(error);
  EXPECT_EQ(folder->path().parent_path(), root / "a" / "b");
  EXPECT_TRUE(folder->path().filename().string().starts_with("prova-"));
  EXPECT_EQ(folder->path().filename().string().size(), 6u + 36u);
  EXPECT_EQ(fs::status(folder->path()).permissions(), fs::perms::owner_all);
}

TEST_F(ScratchFolderTest, takesEverythingInItAlong) {
  auto folder = ScratchFolder::make(root, "prova-", error);
  const auto locked = folder->path() / "uno" / "due";
  fs::create_directories(locked);
  std::ofstream(locked / "file") << "testo";
  std::ofstream(root / "fuori") << "testo";
  fs::create_symlink(root / "fuori", folder->path() / "link");
  fs::permissions(locked, fs::perms::none);
  fs::permissions(locked.parent_path(), fs::perms::owner_read | fs::perms::owner_exec);
  folder.reset();
  EXPECT_EQ(std::distance(fs::directory_iterator(root), {}), 1);
  EXPECT_TRUE(fs::exists(root / "fuori"));
}

TEST_F(ScratchFolderTest, tellsWhyItCannotBeMade) {
  std::ofstream(root / "file") << "testo";
  EXPECT_EQ(ScratchFolder::make(root / "file", "prova-", error), nullptr);
  EXPECT_TRUE(error);
}

}  // namespace
}  // namespace orvalle::base
