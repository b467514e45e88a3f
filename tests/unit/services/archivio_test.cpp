#include "services/archivio.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <memory>

#include "base/json.h"
#include "platform/memory/memory_platform.h"

namespace orvalle::services {
namespace {

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

class ArchivioTest : public ::testing::Test {
 protected:
  ArchivioTest() {
    auto pattern = (fs::temp_directory_path() / "orvalle-archivio-XXXXXX").string();
    root = ::mkdtemp(pattern.data());
    system.userFolders.documentsFolder = root / "Documenti";
    folder = root / "Documenti" / "Orvalle Backup";
  }
  ~ArchivioTest() override {
    ::chmod(folder.c_str(), 0700);
    fs::remove_all(root);
  }

  /// What a write comes to: the path; "-" for absent, "?" for no answer.
  std::string write(const std::string& name, const std::string& text = "{}") {
    std::string outcome = "?";
    archivio.scrivi(name, text, [&](const auto& path) { outcome = path.value_or("-"); });
    system.time.runPosted();
    return outcome;
  }
  /// A file in the folder that nobody handed over.
  void put(const std::string& name, const std::string& text = "{}") {
    fs::create_directories(folder);
    std::ofstream(folder / name, std::ios::binary) << text;
  }
  static std::string read(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  /// The names of everything in the folder.
  Texts files() const {
    Texts found;
    for (const auto& entry : fs::directory_iterator(folder)) found.push_back(entry.path().filename());
    std::sort(found.begin(), found.end());
    return found;
  }
  /// The names in the list, in its order.
  Texts listed() const {
    Texts found;
    const auto list = base::parseJson(archivio.elencoJSON()).value();
    for (const auto& entry : list.as_array())
      found.push_back(base::jsonText(base::jsonMember(entry, "nome")).value());
    return found;
  }
  void expectOneFailure(const std::string& what) {
    ASSERT_EQ(system.log.lines.size(), 1u) << what;
    EXPECT_TRUE(system.log.lines[0].starts_with("Orvalle: backup — ")) << system.log.lines[0];
    EXPECT_GT(system.log.lines[0].size(), std::string("Orvalle: backup — ").size());
    system.log.lines.clear();
  }

  platform::memory::MemoryPlatform system;
  fs::path root;
  fs::path folder;
  Archivio archivio{system.userFolders, system.background, system.log};
};

TEST_F(ArchivioTest, folderIsInTheDocumentsAndNamedForTheProgram) {
  EXPECT_EQ(archivio.cartella(), folder);
  EXPECT_FALSE(fs::exists(folder));
  system.userFolders.documentsFolder = root / "Papéis";
  EXPECT_EQ(archivio.cartella(), root / "Papéis" / "Orvalle Backup");
}

TEST_F(ArchivioTest, writesTheTextAsItIsForTheUserOnly) {
  const std::string text = std::string("{\"è\":\"\0\"}", 10) + "\n";
  EXPECT_EQ(write("2026-01-09.json", text), (folder / "2026-01-09.json").string());
  EXPECT_EQ(read(folder / "2026-01-09.json"), text);
  EXPECT_EQ(fs::status(folder / "2026-01-09.json").permissions(), fs::perms(0600));
  EXPECT_TRUE(system.log.lines.empty());
}

TEST_F(ArchivioTest, sameNameTwiceReplacesTheFile) {
  write("a.json", "long before");
  EXPECT_EQ(write("a.json", "now"), (folder / "a.json").string());
  EXPECT_EQ(read(folder / "a.json"), "now");
  EXPECT_EQ(files(), Texts{"a.json"});
}

TEST_F(ArchivioTest, nameThatClimbsOutStaysInside) {
  for (const std::string name : {"../../etc/x.json", "/etc/x.json", "a/b/c/x.json", "//x.json", "./x.json",
                                 "../x.json", "..//..//x.json"}) {
    EXPECT_EQ(write(name), (folder / "x.json").string()) << name;
  }
  EXPECT_EQ(files(), Texts{"x.json"});
  EXPECT_FALSE(fs::exists(root / "x.json"));
  EXPECT_FALSE(fs::exists(root / "Documenti" / "x.json"));
}

TEST_F(ArchivioTest, noNameIsNotWrittenAndNotLogged) {
  for (const std::string name : {"", ".", "..", "/", "//", "x/", "x.json/", "a/.", "a/..", "../..", "/."}) {
    EXPECT_EQ(write(name), "-") << name;
  }
  // The folder is made all the same.
  EXPECT_EQ(files(), Texts());
  EXPECT_TRUE(system.log.lines.empty());
}

TEST_F(ArchivioTest, oddNamesAreNamesLikeOthers) {
  const Texts names = {" ",        "...",       ".json",
                       "..json",   "-rf.json",  "C:\\x.json",
                       "a\\..\\b", "a\nb.json", "\xF0\x9F\x8D\x85.json",
                       "*.json",   "~x.json",   "%2e%2e%2fx.json"};
  for (const auto& name : names) EXPECT_EQ(write(name), (folder / name).string()) << name;
  EXPECT_EQ(files().size(), names.size());
  EXPECT_TRUE(system.log.lines.empty());
}

TEST_F(ArchivioTest, nameThatTheSystemCannotTakeFailsWithOneLine) {
  for (const std::string& name :
       {std::string(300, 'n') + ".json", std::string("a.json\0b", 8), std::string("\0", 1)}) {
    EXPECT_EQ(write(name), "-");
    expectOneFailure(name.substr(0, 10));
  }
  EXPECT_EQ(files(), Texts());
}

TEST_F(ArchivioTest, linkThatLiesThereIsReplacedAndItsTargetStays) {
  const auto target = root / "target";
  std::ofstream(target) << "precious";
  put("other.json");
  fs::create_symlink(target, folder / "x.json");
  EXPECT_EQ(write("x.json", "new"), (folder / "x.json").string());
  EXPECT_EQ(read(target), "precious");
  EXPECT_FALSE(fs::is_symlink(folder / "x.json"));
  EXPECT_EQ(read(folder / "x.json"), "new");
}

TEST_F(ArchivioTest, folderNamedLikeABackupIsNeverReplacedNorRemoved) {
  fs::create_directories(folder / "0.json" / "inside");
  fs::create_directories(folder / "00.json");
  EXPECT_EQ(write("0.json"), "-");
  expectOneFailure("a folder");
  for (int i = 10; i < 45; ++i) write(std::to_string(i) + ".json");
  EXPECT_TRUE(fs::exists(folder / "0.json" / "inside"));
  EXPECT_TRUE(fs::exists(folder / "00.json"));
  EXPECT_EQ(archivio.ultimo(), "44.json");
  // The folders cannot be deleted; that stops none of the others.
  EXPECT_FALSE(fs::exists(folder / "14.json"));
}

TEST_F(ArchivioTest, keepsTheThirtyGreatestNames) {
  for (int i = 10; i < 41; ++i) put("2026-01-" + std::to_string(i) + ".json");
  write("2026-01-41.json");
  ASSERT_EQ(files().size(), 30u);
  EXPECT_EQ(files().front(), "2026-01-12.json");
  EXPECT_EQ(files().back(), "2026-01-41.json");
}

TEST_F(ArchivioTest, aBackupWithASmallerNameThanAllIsTheOneThatGoes) {
  for (int i = 10; i < 40; ++i) put(std::to_string(i) + ".json");
  EXPECT_EQ(write("00.json"), (folder / "00.json").string());
  EXPECT_EQ(files().size(), 30u);
  EXPECT_EQ(files().front(), "10.json");
}

TEST_F(ArchivioTest, prunesAfterEveryWriteWhateverItsName) {
  for (int i = 10; i < 45; ++i) put(std::to_string(i) + ".json");
  write("nota.txt");
  EXPECT_EQ(files().size(), 31u);
  EXPECT_EQ(files().front(), "15.json");
}

TEST_F(ArchivioTest, failedWritePrunesNothing) {
  for (int i = 10; i < 45; ++i) put(std::to_string(i) + ".json");
  write(std::string(300, 'n'));
  write("");
  EXPECT_EQ(files().size(), 35u);
}

TEST_F(ArchivioTest, fileWithAnotherEndingIsWrittenButNeitherListedNorPruned) {
  EXPECT_EQ(write("nota.txt", "ciao"), (folder / "nota.txt").string());
  write("GRANDE.JSON");
  write("x.json.bak");
  write("json");
  EXPECT_EQ(archivio.ultimo(), "");
  EXPECT_EQ(archivio.elencoJSON(), "[]");
  for (int i = 10; i < 45; ++i) write(std::to_string(i) + ".json");
  EXPECT_EQ(read(folder / "nota.txt"), "ciao");
  EXPECT_EQ(files().size(), 34u);
}

TEST_F(ArchivioTest, missingOrEmptyFolderHasNoBackups) {
  EXPECT_EQ(archivio.ultimo(), "");
  EXPECT_EQ(archivio.elencoJSON(), "[]");
  fs::create_directories(folder);
  EXPECT_EQ(archivio.ultimo(), "");
  EXPECT_EQ(archivio.elencoJSON(), "[]");
}

TEST_F(ArchivioTest, newestIsTheGreatestNameAndComesFirst) {
  put("2026-01-10.json");
  put("2026-01-09.json");
  EXPECT_EQ(archivio.ultimo(), "2026-01-10.json");
  EXPECT_EQ(listed(), (Texts{"2026-01-10.json", "2026-01-09.json"}));
}

TEST_F(ArchivioTest, namesAreComparedAsTexts) {
  for (const std::string name :
       {"backup-10.json", "backup-9.json", "B.json", "a.json", "\xC3\xA8.json", "z.json"})
    put(name);
  EXPECT_EQ(archivio.ultimo(), "\xC3\xA8.json");
  EXPECT_EQ(listed(),
            (Texts{"\xC3\xA8.json", "z.json", "backup-9.json", "backup-10.json", "a.json", "B.json"}));
}

TEST_F(ArchivioTest, listTellsSizeAndTimeOfEachBackup) {
  put("a.json", "12345");
  const timespec times[2] = {{0, 0}, {1'794'790'773, 999'999'999}};
  ASSERT_EQ(::utimensat(AT_FDCWD, (folder / "a.json").c_str(), times, 0), 0);
  EXPECT_EQ(base::parseJson(archivio.elencoJSON()),
            base::parseJson(R"([{"nome":"a.json","peso":5,"quando":"2026-11-16T00:59:33Z"}])"));
}

TEST_F(ArchivioTest, timeBeforeTheEpochIsRoundedDown) {
  put("a.json", "");
  const timespec times[2] = {{0, 0}, {-2, 500'000'000}};
  ASSERT_EQ(::utimensat(AT_FDCWD, (folder / "a.json").c_str(), times, 0), 0);
  EXPECT_EQ(base::parseJson(archivio.elencoJSON()),
            base::parseJson(R"([{"nome":"a.json","peso":0,"quando":"1969-12-31T23:59:58Z"}])"));
}

TEST_F(ArchivioTest, whatCannotBeLookedAtHasNoSizeAndTheEpoch) {
  fs::create_directories(folder);
  fs::create_symlink(root / "nowhere", folder / "a.json");
  EXPECT_EQ(base::parseJson(archivio.elencoJSON()),
            base::parseJson(R"([{"nome":"a.json","peso":0,"quando":"1970-01-01T00:00:00Z"}])"));
}

TEST_F(ArchivioTest, fileWhoseNameIsNoTextSpoilsNothing) {
  put("a.json");
  put("\xFF\xFE.json");
  EXPECT_EQ(archivio.ultimo(), "a.json");
  EXPECT_EQ(listed(), Texts{"a.json"});
}

TEST_F(ArchivioTest, folderThatCannotBeMadeFailsWithOneLine) {
  system.userFolders.documentsFolder = "/dev/null/Documenti";
  EXPECT_EQ(write("a.json"), "-");
  expectOneFailure("no documents");
  EXPECT_EQ(write(""), "-");
  expectOneFailure("no documents, no name");
  EXPECT_EQ(archivio.ultimo(), "");
  EXPECT_EQ(archivio.elencoJSON(), "[]");
}

TEST_F(ArchivioTest, folderThatIsAFileFailsWithOneLine) {
  fs::create_directories(root / "Documenti");
  std::ofstream(folder) << "a file";
  EXPECT_EQ(write("a.json"), "-");
  expectOneFailure("a file");
  EXPECT_EQ(read(folder), "a file");
}

TEST_F(ArchivioTest, folderThatTakesNoNewFilesFailsWithOneLine) {
  // Even for one who may write everywhere.
  fs::create_directories(root / "Documenti");
  fs::create_directory_symlink("/proc/self", folder);
  EXPECT_EQ(write("a.json"), "-");
  expectOneFailure("read-only");
}

TEST_F(ArchivioTest, folderRemovedBetweenTwoWritesIsMadeAnew) {
  write("a.json");
  fs::remove_all(root / "Documenti");
  EXPECT_EQ(write("b.json"), (folder / "b.json").string());
  EXPECT_EQ(files(), Texts{"b.json"});
}

TEST_F(ArchivioTest, folderRemovedWhileAWriteWaitsFailsWithOneLine) {
  system.background.hold();
  Texts outcomes;
  archivio.scrivi("a.json", "{}", [&](const auto& path) { outcomes.push_back(path.value_or("-")); });
  fs::remove_all(folder);
  system.background.release();
  system.time.runPosted();
  EXPECT_EQ(outcomes, Texts{"-"});
  expectOneFailure("no folder");
}

TEST_F(ArchivioTest, fullDiskLeavesTheOldBackupWholeAndSaysSoOnce) {
  write("a.json", "old");
  rlimit before{};
  ::getrlimit(RLIMIT_FSIZE, &before);
  const auto ignored = std::signal(SIGXFSZ, SIG_IGN);
  const rlimit small{1000, before.rlim_max};
  ::setrlimit(RLIMIT_FSIZE, &small);
  const auto outcome = write("a.json", std::string(100'000, 'x'));
  ::setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, ignored);
  EXPECT_EQ(outcome, "-");
  expectOneFailure("no room");
  EXPECT_EQ(read(folder / "a.json"), "old");
  EXPECT_EQ(files(), Texts{"a.json"});
}

TEST_F(ArchivioTest, isHeardOfWhenItIsWrittenAndNotBefore) {
  system.background.hold();
  Texts outcomes;
  archivio.scrivi("a.json", "{}", [&](const auto& path) { outcomes.push_back(path.value_or("-")); });
  system.time.runPosted();
  EXPECT_EQ(outcomes, Texts());
  EXPECT_EQ(files(), Texts());
  system.background.release();
  EXPECT_EQ(files(), Texts{"a.json"});
  system.time.runPosted();
  EXPECT_EQ(outcomes.size(), 1u);
}

TEST_F(ArchivioTest, nobodyIsToldOnceTheArchiveIsGone) {
  auto gone = std::make_unique<Archivio>(system.userFolders, system.background, system.log);
  system.background.hold();
  gone->scrivi("a.json", "{}", [](const auto&) { FAIL(); });
  gone.reset();
  system.background.release();
  system.time.runPosted();
  EXPECT_EQ(files(), Texts{"a.json"});
}

}  // namespace
}  // namespace orvalle::services
