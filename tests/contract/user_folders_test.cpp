#include "platform/user_folders.h"

#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>

#include "platform/linux/factory.h"
#include "tests/contract/variable.h"

/// Where the desktop says that the user's files live.
namespace orvalle::contract {
namespace {

namespace fs = std::filesystem;

class UserFoldersTest : public ::testing::Test {
 protected:
  static fs::path makeHome() {
    auto pattern = (fs::temp_directory_path() / "orvalle-folders-XXXXXX").string();
    return ::mkdtemp(pattern.data());
  }
  ~UserFoldersTest() override { fs::remove_all(home); }

  void choose(const std::string& line) {
    fs::create_directories(home / ".config");
    std::ofstream(home / ".config/user-dirs.dirs") << line << "\n";
  }

  const fs::path home = makeHome();
  const Variable homeVariable{"HOME", home};
  const Variable config{"XDG_CONFIG_HOME", home / ".config"};
  const Variable data{"XDG_DATA_HOME", home / "dati"};
  std::unique_ptr<platform::Environment> environment = platform::linuxos::makeEnvironment();
  std::unique_ptr<platform::UserFolders> folders = platform::linuxos::makeUserFolders(*environment);
};

TEST_F(UserFoldersTest, temporaryFilesGoWhereTheEnvironmentSaysUnlessThatDependsOnTheWorkingFolder) {
  {
    const Variable chosen("TMPDIR", home / "provvisori");
    EXPECT_EQ(folders->temporary(), home / "provvisori");
  }
  const Variable relative("TMPDIR", "provvisori");
  EXPECT_EQ(folders->temporary(), "/tmp");
}

TEST_F(UserFoldersTest, documentsAreInTheHomeFolderWhenNothingIsSet) {
  EXPECT_EQ(folders->documents(), home / "Documents");
  choose("XDG_MUSIC_DIR=\"$HOME/Musica\"");
  EXPECT_EQ(folders->documents(), home / "Documents");
}

TEST_F(UserFoldersTest, documentsAreWhereTheUserSaysEvenBeforeTheyExist) {
  choose("XDG_DOCUMENTS_DIR=\"$HOME/Documenti\"");
  EXPECT_EQ(folders->documents(), home / "Documenti");
  EXPECT_FALSE(fs::exists(home / "Documenti"));
  // Another choice counts at once.
  choose("XDG_DOCUMENTS_DIR=\"/srv/archivio/Carte di casa\"");
  EXPECT_EQ(folders->documents(), "/srv/archivio/Carte di casa");
}

TEST_F(UserFoldersTest, documentsMayHaveANameInAnyScript) {
  choose("XDG_DOCUMENTS_DIR=\"$HOME/Unità/書類 è\"");
  EXPECT_EQ(folders->documents(), home / "Unità" / "書類 è");
}

TEST_F(UserFoldersTest, theHomeFolderItselfIsNoDocumentsFolder) {
  for (const std::string text : {"$HOME", "$HOME/", "$HOME/."}) {
    choose("XDG_DOCUMENTS_DIR=\"" + text + "\"");
    EXPECT_EQ(folders->documents(), home / "Documents") << text;
  }
}

TEST_F(UserFoldersTest, whatIsNoFolderIsPassedOver) {
  for (const std::string text : {"", "relativa", "\"\"", "\"Documenti\"", "\"$ALTRO/x\""}) {
    choose("XDG_DOCUMENTS_DIR=" + text);
    EXPECT_EQ(folders->documents(), home / "Documents") << text;
  }
}

TEST_F(UserFoldersTest, supportIsWhereTheEnvironmentSaysIfThatIsAFolder) {
  EXPECT_EQ(folders->applicationSupport(), home / "dati");
  const Variable relative("XDG_DATA_HOME", "relativa");
  EXPECT_EQ(folders->applicationSupport(), home / ".local/share");
  const Variable empty("XDG_DATA_HOME", "");
  EXPECT_EQ(folders->applicationSupport(), home / ".local/share");
}

TEST_F(UserFoldersTest, aHomeThatIsNoFolderIsPassedOverForTheAccounts) {
  const Variable noData("XDG_DATA_HOME", "");
  const fs::path account = ::getpwuid(::getuid())->pw_dir;
  ASSERT_TRUE(account.is_absolute());
  for (const char* text : {"", "relativa"}) {
    const Variable none("HOME", text);
    EXPECT_EQ(folders->documents(), account / "Documents") << text;
    EXPECT_EQ(folders->applicationSupport(), account / ".local/share") << text;
    choose("XDG_DOCUMENTS_DIR=\"$HOME/Documenti\"");
    EXPECT_EQ(folders->documents(), account / "Documenti") << text;
    fs::remove(home / ".config/user-dirs.dirs");
  }
}

}  // namespace
}  // namespace orvalle::contract
