#include "base/read_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "tests/unit/base/temporary_folder.h"

namespace orvalle::base {
namespace {

namespace fs = std::filesystem;

class ReadFileTest : public ::testing::Test {
 protected:
  fs::path write(const std::string& name, const std::string& contents) {
    std::ofstream(folder.path() / name, std::ios::binary) << contents;
    return folder.path() / name;
  }
  TemporaryFolder folder;
};

TEST_F(ReadFileTest, givesTheWholeContents) {
  std::string contents(100'000, 'x');
  contents[5] = '\0';
  contents[50'000] = '\xff';
  EXPECT_EQ(readFile(write("a", contents), contents.size()), contents);
  EXPECT_EQ(readFile(write("b", ""), 0), "");
}

TEST_F(ReadFileTest, refusesWhatIsLargerThanTheLimit) {
  const auto file = write("a", std::string(100'000, 'x'));
  EXPECT_FALSE(readFile(file, 99'999));
  EXPECT_FALSE(readFile(file, 0));
}

TEST_F(ReadFileTest, findsNothingWhereThereIsNoFile) {
  EXPECT_FALSE(readFile(folder.path() / "a", 100));
  EXPECT_FALSE(readFile("", 100));
  EXPECT_FALSE(readFile(folder.path(), 100));
}

TEST_F(ReadFileTest, doesNotWaitForTheOtherEndOfAPipe) {
  const auto pipe = folder.path() / "pipe";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_FALSE(readFile(pipe, 100));
}

TEST_F(ReadFileTest, followsNoLink) {
  fs::create_symlink(write("a", "x"), folder.path() / "link");
  EXPECT_FALSE(readFile(folder.path() / "link", 100));
}

TEST_F(ReadFileTest, doesNotEndANameEarly) {
  write("a", "x");
  EXPECT_FALSE(readFile(folder.path() / std::string("a\0b", 3), 100));
}

}  // namespace
}  // namespace orvalle::base
