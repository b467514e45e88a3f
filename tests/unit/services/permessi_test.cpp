#include "services/permessi.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <memory>

#include <boost/json/object.hpp>

#include "base/json.h"
#include "platform/memory/memory_platform.h"

namespace orvalle::services {
namespace {

namespace fs = std::filesystem;
using platform::NotificationStatus;
using platform::SettingsPane;
using Texts = std::vector<std::string>;

class PermessiTest : public ::testing::Test {
 protected:
  PermessiTest() {
    auto pattern = (fs::temp_directory_path() / "orvalle-permessi-XXXXXX").string();
    root = ::mkdtemp(pattern.data());
    system.userFolders.documentsFolder = root;
    folder = root / "Orvalle Backup";
  }
  ~PermessiTest() override { fs::remove_all(root); }

  base::Json state() {
    std::string text = "?";
    permessi->statoJSON([&](const std::string& given) { text = given; });
    return base::parseJson(text).value_or(nullptr);
  }
  std::string word(std::string_view key) {
    return base::jsonText(base::jsonMember(state(), key)).value_or("-");
  }
  void put(const std::string& name) {
    fs::create_directories(folder);
    std::ofstream(folder / name) << "{}";
  }

  platform::memory::MemoryPlatform system;
  platform::Platform platform = system.platform();
  fs::path root;
  fs::path folder;
  Notifiche notifiche{system.notificationCentre, system.settingsPanes, system.bundle, system.log};
  Archivio archivio{system.userFolders, system.background, system.log};
  std::unique_ptr<Permessi> permessi = std::make_unique<Permessi>(platform, notifiche, archivio);
};

TEST_F(PermessiTest, freshInstallationHasNothingYet) {
  const boost::json::object expected = {{"notifiche", "mai-chiesto"},    {"accessibilita", "negato"},
                                        {"documenti", "da-provare"},     {"cartellaBackup", folder.string()},
                                        {"versione", "1.2.3"},           {"firmaStabile", false},
                                        {"percorso", "/opt/Orvalle.app"}};
  EXPECT_EQ(state(), base::Json(expected));
  EXPECT_FALSE(fs::exists(folder));
  EXPECT_TRUE(system.notificationCentre.requests.empty());
}

TEST_F(PermessiTest, hasAWordForEveryNotificationStatus) {
  struct Row {
    NotificationStatus status;
    std::string word;
  };
  for (const auto& row : {
           Row{NotificationStatus::NotDetermined, "mai-chiesto"},
           Row{NotificationStatus::Denied, "negato"},
           Row{NotificationStatus::Authorised, "concesso"},
           Row{NotificationStatus::Provisional, "concesso"},
           Row{NotificationStatus::Ephemeral, "concesso"},
           Row{NotificationStatus::Unknown, "mai-chiesto"},
       }) {
    system.notificationCentre.current = row.status;
    EXPECT_EQ(word("notifiche"), row.word);
  }
}

TEST_F(PermessiTest, outsideABundleNotificationsAreDenied) {
  system.bundle.identifierText.reset();
  system.bundle.shortVersionText.reset();
  system.notificationCentre.current = NotificationStatus::Authorised;
  EXPECT_EQ(word("notifiche"), "negato");
  EXPECT_EQ(word("versione"), "?");
  EXPECT_EQ(system.notificationCentre.statusReads, 0);
}

TEST_F(PermessiTest, tellsOfConsentWithoutAsking) {
  EXPECT_EQ(word("accessibilita"), "negato");
  system.accessibility.consent = true;
  EXPECT_EQ(word("accessibilita"), "concesso");
  EXPECT_EQ(system.accessibility.questions, 0);
}

TEST_F(PermessiTest, documentsAreGrantedOnceThereIsABackup) {
  put("nota.txt");
  put("GRANDE.JSON");
  EXPECT_EQ(word("documenti"), "da-provare");
  EXPECT_FALSE(permessi->backupScritti());
  put("a.json");
  EXPECT_EQ(word("documenti"), "concesso");
  EXPECT_TRUE(permessi->backupScritti());
}

TEST_F(PermessiTest, stateThatIsNoTextIsEmpty) {
  system.bundle.folder = "/opt/\xFF.app";
  std::string text = "?";
  permessi->statoJSON([&](const std::string& given) { text = given; });
  EXPECT_EQ(text, "");
}

TEST_F(PermessiTest, signatureIsStableWhenItIsThereAndNotAdHoc) {
  struct Row {
    std::optional<std::uint32_t> flags;
    bool stable;
  };
  for (const auto& row : {Row{{}, false}, Row{0u, true}, Row{2u, false}, Row{3u, false}, Row{1u, true},
                          Row{0x10000u, true}, Row{0x10002u, false}, Row{0xFFFFFFFDu, true}}) {
    system.codeSigning.flags = row.flags;
    EXPECT_EQ(permessi->firmaStabile(), row.stable);
    EXPECT_EQ(*base::jsonMember(state(), "firmaStabile"), base::Json(row.stable));
  }
}

TEST_F(PermessiTest, opensThePaneOfEachPermission) {
  permessi->apri("notifiche");
  permessi->apri("documenti");
  EXPECT_EQ(system.settingsPanes.opened,
            (std::vector<SettingsPane>{SettingsPane::Notifications, SettingsPane::Documents}));
  EXPECT_EQ(system.accessibility.questions, 0);
  EXPECT_EQ(system.accessibility.settingsOpened, 0);
}

TEST_F(PermessiTest, asksForConsentAndShowsWhereItIsKept) {
  permessi->apri("accessibilita");
  EXPECT_EQ(system.accessibility.questions, 1);
  EXPECT_EQ(system.accessibility.settingsOpened, 0);
  system.accessibility.answer(true);
  EXPECT_EQ(system.accessibility.settingsOpened, 1);
  EXPECT_TRUE(system.settingsPanes.opened.empty());
}

TEST_F(PermessiTest, opensNothingForAnotherName) {
  for (const std::string name : {"", "Notifiche", "accessibilità", "accessibilita ", "fotocamera"}) {
    permessi->apri(name);
  }
  EXPECT_TRUE(system.settingsPanes.opened.empty());
  EXPECT_EQ(system.accessibility.questions, 0);
  EXPECT_EQ(system.accessibility.settingsOpened, 0);
}

TEST_F(PermessiTest, asksForNotificationsInTheWordsOfNotifiche) {
  Texts words;
  permessi->chiediNotifiche([&](const std::string& word) { words.push_back(word); });
  EXPECT_EQ(words, Texts{"granted"});
  EXPECT_EQ(system.notificationCentre.requests.size(), 1u);
}

TEST_F(PermessiTest, triesTheFolderAndLeavesNothingBehind) {
  EXPECT_EQ(permessi->provaDocumenti(), "concesso");
  EXPECT_TRUE(fs::is_directory(folder));
  EXPECT_TRUE(fs::is_empty(folder));
  // Trying is no backup.
  EXPECT_EQ(word("documenti"), "da-provare");
}

TEST_F(PermessiTest, triesOverWhatAnEarlierTrialLeft) {
  put(".prova");
  EXPECT_EQ(permessi->provaDocumenti(), "concesso");
  EXPECT_TRUE(fs::is_empty(folder));
}

TEST_F(PermessiTest, folderThatCannotBeMadeIsDenied) {
  system.userFolders.documentsFolder = "/dev/null/Documenti";
  EXPECT_EQ(permessi->provaDocumenti(), "negato");
  EXPECT_EQ(word("documenti"), "da-provare");
  EXPECT_TRUE(system.log.lines.empty());
}

TEST_F(PermessiTest, fullDiskIsDenied) {
  fs::create_directories(folder);
  // It opens, and has no room for a single byte.
  fs::create_symlink("/dev/full", folder / ".prova");
  EXPECT_EQ(permessi->provaDocumenti(), "negato");
}

TEST_F(PermessiTest, folderThatCannotBeWrittenIsDenied) {
  // Even for one who may write everywhere.
  fs::create_directories(folder / ".prova");
  EXPECT_EQ(permessi->provaDocumenti(), "negato");
  EXPECT_TRUE(fs::is_directory(folder / ".prova"));
  EXPECT_TRUE(system.log.lines.empty());
}

TEST_F(PermessiTest, restartEndsTheProgramAndHasItsBundleStarted) {
  system.bundle.folder = "/opt/Il mio \"Orvalle\".app";
  system.processes.succeeds = false;
  // Ends even when it will not come back.
  struct Delegate : platform::ApplicationDelegate {
    void applicationDidFinishLaunching() override { permessi->riavvia(); }
    void applicationWillTerminate() override { ++ends; }
    bool applicationShouldTerminateAfterLastWindowClosed() override { return false; }
    bool applicationShouldHandleReopen(bool) override { return false; }
    void applicationOpen(const std::vector<std::string>&) override {}
    bool responds(std::string_view) const override { return false; }
    void perform(std::string_view, platform::MenuItem&) override {}
    Permessi* permessi = nullptr;
    int ends = 0;
  } delegate;
  delegate.permessi = permessi.get();
  int endsBeforeTheUser = 0;
  system.application.session = [&](platform::ApplicationDelegate&) { endsBeforeTheUser = delegate.ends; };
  system.application.run(delegate);
  EXPECT_EQ(endsBeforeTheUser, 1);
  EXPECT_EQ(system.processes.waitingForExit, std::vector<fs::path>{"/opt/Il mio \"Orvalle\".app"});
}

TEST_F(PermessiTest, hearsNoMoreOnceItIsGone) {
  system.notificationCentre.hold();
  permessi->statoJSON([](const std::string&) { FAIL(); });
  permessi.reset();
  system.notificationCentre.release();
}

}  // namespace
}  // namespace orvalle::services
