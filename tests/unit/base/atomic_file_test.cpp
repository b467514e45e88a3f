#include "base/atomic_file.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace orvalle::base {
namespace {

namespace fs = std::filesystem;

constexpr auto kPrivate = fs::perms::owner_read | fs::perms::owner_write;

class AtomicFileTest : public ::testing::Test {
 protected:
  AtomicFileTest() {
    auto pattern = (fs::temp_directory_path() / "orvalle-atomic-XXXXXX").string();
    folder = ::mkdtemp(pattern.data());
  }
  ~AtomicFileTest() override { fs::remove_all(folder); }

  static std::string read(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  std::size_t entries() const {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
  }

  fs::path folder;
};

TEST_F(AtomicFileTest, makesTheFile) {
  const std::string contents = std::string("uno\0due", 7) + "\n";
  EXPECT_FALSE(replaceFile(folder / "a", contents, kPrivate));
  EXPECT_EQ(read(folder / "a"), contents);
  EXPECT_EQ(entries(), 1u);
}

TEST_F(AtomicFileTest, replacesLongContentsByShortOnes) {
  EXPECT_FALSE(replaceFile(folder / "a", std::string(3'000'000, 'x'), kPrivate));
  EXPECT_EQ(fs::file_size(folder / "a"), 3'000'000u);
  EXPECT_FALSE(replaceFile(folder / "a", "", kPrivate));
  EXPECT_EQ(read(folder / "a"), "");
  EXPECT_EQ(entries(), 1u);
}

TEST_F(AtomicFileTest, givesTheFileExactlyTheModeAskedFor) {
  const auto old = ::umask(0077);
  EXPECT_FALSE(replaceFile(folder / "a", "", fs::perms(0644)));
  ::umask(0);
  EXPECT_FALSE(replaceFile(folder / "b", "", kPrivate));
  ::umask(old);
  EXPECT_EQ(fs::status(folder / "a").permissions(), fs::perms(0644));
  EXPECT_EQ(fs::status(folder / "b").permissions(), kPrivate);
}

TEST_F(AtomicFileTest, doesNotKeepTheModeOfTheFileItReplaces) {
  EXPECT_FALSE(replaceFile(folder / "a", "", fs::perms(0666)));
  EXPECT_FALSE(replaceFile(folder / "a", "", kPrivate));
  EXPECT_EQ(fs::status(folder / "a").permissions(), kPrivate);
}

TEST_F(AtomicFileTest, replacesASymbolicLinkAndLeavesItsTargetAlone) {
  EXPECT_FALSE(replaceFile(folder / "target", "old", kPrivate));
  fs::create_symlink(folder / "target", folder / "name");
  EXPECT_FALSE(replaceFile(folder / "name", "new", kPrivate));
  EXPECT_FALSE(fs::is_symlink(folder / "name"));
  EXPECT_EQ(read(folder / "name"), "new");
  EXPECT_EQ(read(folder / "target"), "old");
}

TEST_F(AtomicFileTest, neverWritesIntoTheOldFile) {
  // Somebody who has the old file open keeps reading the old text.
  EXPECT_FALSE(replaceFile(folder / "a", "old", kPrivate));
  std::ifstream reader(folder / "a", std::ios::binary);
  EXPECT_FALSE(replaceFile(folder / "a", "new", kPrivate));
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(reader), {}), "old");
}

TEST_F(AtomicFileTest, tellsWhyItFailedAndLeavesNothingBehind) {
  // A folder cannot be replaced by a file: writing works, putting it in place does not.
  fs::create_directory(folder / "a");
  EXPECT_EQ(replaceFile(folder / "a", "new", kPrivate), std::errc::is_a_directory);
  EXPECT_TRUE(fs::is_directory(folder / "a"));
  EXPECT_EQ(entries(), 1u);
}

TEST_F(AtomicFileTest, failsWithoutTheFolder) {
  EXPECT_EQ(replaceFile(folder / "missing" / "a", "new", kPrivate), std::errc::no_such_file_or_directory);
  EXPECT_EQ(entries(), 0u);
}

/// Ends the process: with 0 when replacing a file fails for want of room. A limit on the size of files stands
/// in for a full disk.
[[noreturn]] void replaceWithoutRoom(const fs::path& path) {
  std::signal(SIGXFSZ, SIG_IGN);
  rlimit limit{};
  limit.rlim_cur = limit.rlim_max = 1000;
  ::setrlimit(RLIMIT_FSIZE, &limit);
  std::_Exit(replaceFile(path, std::string(5000, 'x'), kPrivate) == std::errc::file_too_large ? 0 : 1);
}

TEST_F(AtomicFileTest, keepsTheOldFileWhenThereIsNoRoom) {
  ASSERT_FALSE(replaceFile(folder / "a", "old", kPrivate));
  EXPECT_EXIT(replaceWithoutRoom(folder / "a"), ::testing::ExitedWithCode(0), "");
  EXPECT_EQ(read(folder / "a"), "old");
  EXPECT_EQ(entries(), 1u);
}

TEST_F(AtomicFileTest, writesBesideTheProgramWhenThePathHasNoFolder) {
  const auto before = fs::current_path();
  fs::current_path(folder);
  EXPECT_FALSE(replaceFile("a", "here", kPrivate));
  fs::current_path(before);
  EXPECT_EQ(read(folder / "a"), "here");
  EXPECT_EQ(entries(), 1u);
}

}  // namespace
}  // namespace orvalle::base
