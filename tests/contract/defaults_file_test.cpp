#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>

#include "base/json.h"
#include "tests/contract/defaults_rigs.h"

namespace orvalle::platform {
namespace {

namespace fs = std::filesystem;

/// What the file of the settings goes through on a real machine.
class DefaultsFile : public ::testing::Test {
 protected:
  static mode_t modeOf(const fs::path& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 ? status.st_mode & 0777 : 0;
  }
  static ino_t inodeOf(const fs::path& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 ? status.st_ino : 0;
  }
  std::ptrdiff_t filesInFolder() const {
    return std::distance(fs::directory_iterator(rig.folder()), fs::directory_iterator());
  }
  std::optional<base::Json> document() const { return base::parseJson(rig.read(rig.file())); }

  LinuxDefaultsRig rig;
};

TEST_F(DefaultsFile, isOnlyTheUsersOwn) {
  rig.store().set("a", true);
  EXPECT_EQ(modeOf(rig.file()), 0600u);
  EXPECT_EQ(modeOf(rig.folder()), 0700u);
  EXPECT_EQ(filesInFolder(), 1);
}

TEST_F(DefaultsFile, becomesTheUsersOwnWithTheFirstWrite) {
  rig.writeFile("{\"a\": 1}");
  ::chmod(rig.file().c_str(), 0644);
  rig.store().set("b", true);
  EXPECT_EQ(modeOf(rig.file()), 0600u);
}

TEST_F(DefaultsFile, liesWhereTheEnvironmentSays) {
  rig.environment.variables["XDG_CONFIG_HOME"] = (rig.home / "altrove").string();
  rig.startAgain();
  rig.store().set("a", true);
  EXPECT_TRUE(fs::exists(rig.home / "altrove" / "Orvalle" / "defaults.json"));
  EXPECT_FALSE(fs::exists(rig.file()));
}

TEST_F(DefaultsFile, ignoresAFolderThatIsNotAbsolute) {
  for (const auto* folder : {"", "relative"}) {
    rig.environment.variables["XDG_CONFIG_HOME"] = folder;
    rig.startAgain();
    rig.store().set("a", std::string(folder));
    EXPECT_EQ(base::jsonText(base::jsonMember(*document(), "a")), folder);
  }
}

TEST_F(DefaultsFile, isNotMadeByReading) {
  EXPECT_EQ(rig.store().value("a"), std::nullopt);
  EXPECT_FALSE(fs::exists(rig.folder()));
}

TEST_F(DefaultsFile, keepsWhatIsNotOurs) {
  const std::string theirs =
      "\"lista\": [1, 2.5, null, {\"x\": []}], \"nulla\": null, \"oggetto\": {\"a\": {\"b\": \"è\"}}, "
      "\"intero\": 3, \"decimale\": 3.0, \"grande\": 18446744073709551615";
  rig.writeFile("{ " + theirs + ", \"a\": 1 }\n");
  rig.store().set("a", true);
  EXPECT_EQ(*document(), *base::parseJson("{ " + theirs + ", \"a\": true }"));
  EXPECT_TRUE(document()->at("intero").is_int64());
  EXPECT_TRUE(document()->at("decimale").is_double());
  EXPECT_EQ(rig.store().value("lista"), std::nullopt);
  EXPECT_EQ(rig.store().value("nulla"), std::nullopt);
  EXPECT_EQ(rig.store().value("grande"), std::nullopt);
  EXPECT_EQ(rig.store().value("decimale"), Defaults::Value(3.0));
}

TEST_F(DefaultsFile, showsWhatOthersWriteAtTheNextRead) {
  rig.store().set("a", std::string("ours"));
  EXPECT_EQ(rig.store().text("a"), "ours");
  rig.writeFile("{\"a\": \"theirs\", \"b\": 1}");
  EXPECT_EQ(rig.store().text("a"), "theirs");
  rig.store().set("c", true);
  EXPECT_EQ(*document(), *base::parseJson("{\"a\": \"theirs\", \"b\": 1, \"c\": true}"));
  fs::remove(rig.file());
  EXPECT_EQ(rig.store().text("a"), std::nullopt);
}

TEST_F(DefaultsFile, isLeftAloneWhenNothingChanges) {
  rig.store().set("a", std::string("x"));
  const auto inode = inodeOf(rig.file());
  rig.store().set("a", std::string("x"));
  EXPECT_EQ(inodeOf(rig.file()), inode);
  rig.store().set("a", std::string("y"));
  EXPECT_NE(inodeOf(rig.file()), inode);
}

TEST_F(DefaultsFile, isSetAsideWhenItCannotBeRead) {
  for (const auto& contents :
       {std::string(), std::string("{"), std::string("[]"), std::string("null"), std::string("{\"a\": 1} x"),
        std::string("\0\0", 2), std::string("{\"a\": \"\xFF\"}"), std::string("{\"a\": 1e999}"),
        std::string(1000, '[')}) {
    SCOPED_TRACE(contents);
    rig.log.lines.clear();
    rig.writeFile(contents);
    rig.startAgain();
    EXPECT_EQ(rig.store().value("a"), std::nullopt);
    EXPECT_EQ(rig.store().value("a"), std::nullopt);
    EXPECT_EQ(rig.read(rig.aside()), contents);
    EXPECT_FALSE(fs::exists(rig.file()));
    ASSERT_EQ(rig.log.lines.size(), 1u);
    EXPECT_TRUE(rig.log.lines[0].starts_with("Orvalle: "));
    rig.store().set("a", true);
    EXPECT_EQ(rig.store().boolean("a"), true);
    EXPECT_EQ(rig.log.lines.size(), 1u);
  }
}

TEST_F(DefaultsFile, isLeftInPlaceWhenItCannotEvenBeSetAside) {
  // Something is in the way of the name for what is set aside.
  rig.writeFile("no settings");
  fs::create_directories(rig.aside() / "x");
  rig.startAgain();
  rig.store().set("a", true);
  rig.store().set("b", true);
  EXPECT_EQ(rig.store().boolean("a"), true);
  EXPECT_EQ(rig.read(rig.file()), "no settings");
  EXPECT_EQ(rig.log.lines.size(), 1u);
}

TEST_F(DefaultsFile, isNotReplacedWhenItIsNoFile) {
  fs::create_directories(rig.file() / "x");
  rig.store().set("a", true);
  EXPECT_EQ(rig.store().boolean("a"), true);
  EXPECT_TRUE(fs::exists(rig.file() / "x"));
  EXPECT_EQ(rig.log.lines.size(), 1u);
}

TEST_F(DefaultsFile, isNotWaitedForWhenItIsAPipe) {
  fs::create_directories(rig.folder());
  ASSERT_EQ(::mkfifo(rig.file().c_str(), 0600), 0);
  EXPECT_EQ(rig.store().value("a"), std::nullopt);
  rig.store().set("a", true);
  EXPECT_TRUE(fs::is_fifo(rig.file()));
  EXPECT_EQ(rig.log.lines.size(), 1u);
}

TEST_F(DefaultsFile, thatCannotBeWrittenIsKeptInMindAndWrittenLater) {
  // No folder can be made under a file.
  fs::create_directories(rig.home / ".config");
  fs::create_symlink(rig.home / "missing" / "deeper", rig.folder());
  rig.store().set("a", std::string("x"));
  rig.store().set("b", std::int64_t{2});
  EXPECT_EQ(rig.store().text("a"), "x");
  EXPECT_EQ(rig.log.lines.size(), 1u) << "one line for as long as the trouble is the same";

  fs::create_directories(rig.home / "missing" / "deeper");
  rig.store().set("c", true);
  rig.startAgain();
  EXPECT_EQ(rig.store().text("a"), "x");
  EXPECT_EQ(rig.store().value("b"), Defaults::Value(std::int64_t{2}));
  EXPECT_EQ(rig.store().boolean("c"), true);
  EXPECT_EQ(rig.log.lines.size(), 1u);
}

TEST_F(DefaultsFile, isWrittenAtTheOtherEndOfALink) {
  const auto target = rig.home / "dotfiles" / "orvalle.json";
  fs::create_directories(target.parent_path());
  rig.writeFile("{\"a\": 1}");
  fs::rename(rig.file(), target);
  fs::create_symlink(target, rig.file());
  rig.store().set("b", true);
  EXPECT_TRUE(fs::is_symlink(rig.file()));
  EXPECT_EQ(*base::parseJson(rig.read(target)), *base::parseJson("{\"a\": 1, \"b\": true}"));
}

TEST_F(DefaultsFile, replacesALinkThatLeadsNowhere) {
  fs::create_directories(rig.folder());
  fs::create_symlink(rig.home / "gone.json", rig.file());
  rig.store().set("a", true);
  rig.startAgain();
  EXPECT_EQ(rig.store().boolean("a"), true);
  EXPECT_TRUE(rig.log.lines.empty());
}

}  // namespace
}  // namespace orvalle::platform
