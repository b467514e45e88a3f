#include "demo/server/pairing_keys.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>

#include "tests/demo/temporary_folder.h"

namespace orvalle::demo {
namespace {

TEST(PairingKeysTest, newKeysAreOfTheFormThatPairingKnows) {
  const PairingKeys keys = makeKeys();
  EXPECT_TRUE(keys.anonKey.starts_with("eyJ")) << keys.anonKey;
  EXPECT_GE(keys.anonKey.size(), 61U);
  EXPECT_EQ(std::count(keys.anonKey.begin(), keys.anonKey.end(), '.'), 2);
  EXPECT_EQ(
      keys.anonKey.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_."),
      std::string::npos);
  EXPECT_EQ(keys.channelKey.size(), 32U);
  EXPECT_EQ(keys.channelKey.find_first_not_of("0123456789abcdef"), std::string::npos) << keys.channelKey;
}

TEST(PairingKeysTest, noTwoAreAlike) {
  const PairingKeys one = makeKeys();
  const PairingKeys other = makeKeys();
  EXPECT_NE(one.anonKey, other.anonKey);
  EXPECT_NE(one.channelKey, other.channelKey);
}

TEST(PairingKeysTest, keptKeysStayTheSameAndAreTheUsersOwn) {
  const TemporaryFolder folder;
  const auto file = folder.path() / "a/b/keys.json";
  const auto first = keptKeys(file);
  ASSERT_TRUE(first);
  EXPECT_EQ(keptKeys(file), first);
  struct stat status {};
  ASSERT_EQ(stat(file.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0600U);
}

TEST(PairingKeysTest, aDamagedFileIsReplaced) {
  const TemporaryFolder folder;
  for (const char* damaged : {"", "{", "[]", R"({"anonKey":"a"})", R"({"anonKey":"a","channelKey":""})",
                              R"({"anonKey":5,"channelKey":"b"})"}) {
    const auto file = folder.write("keys.json", damaged);
    const auto made = keptKeys(file);
    ASSERT_TRUE(made) << damaged;
    EXPECT_EQ(made->channelKey.size(), 32U) << damaged;
    EXPECT_EQ(keptKeys(file), made) << damaged;
  }
}

TEST(PairingKeysTest, keysThatCannotBeKeptAreAbsent) {
  const TemporaryFolder folder;
  EXPECT_FALSE(keptKeys(folder.write("file", "") / "keys.json"));
}

}  // namespace
}  // namespace orvalle::demo
