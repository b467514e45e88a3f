#include "update/installazione.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <algorithm>
#include <csignal>
#include <fstream>
#include <iterator>
#include <regex>

#include "platform/memory/memory_platform.h"
#include "update/swap_script.h"

namespace orvalle::update {
namespace {

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

const Texts kUntrusted{"Aggiornamento non valido.", "L'indirizzo del pacchetto non è affidabile.", "Va bene"};
const Texts kNotDownloaded{"Scaricamento non riuscito.", "Riprova più tardi.", "Va bene"};
const Texts kNoApp{"Pacchetto incompleto.", "Dentro non c'è nessuna app.", "Va bene"};
const Texts kOtherApp{"Pacchetto non riconosciuto.", "Non sembra Orvalle.", "Va bene"};

Texts failed(const std::string& reason) {
  return {"Aggiornamento non riuscito.", reason, "Va bene"};
}

/// An installation whose tools are played by the test: the archive's contents are what it puts into the
/// working folder.
class InstallazioneTest : public ::testing::Test {
 protected:
  InstallazioneTest() {
    auto pattern = (fs::temp_directory_path() / "orvalle-installazione-XXXXXX").string();
    root = ::mkdtemp(pattern.data());
    system.environment.variables["ORVALLE_APP_URL"] = "https://app.example/base/";
    system.userFolders.temporaryFolder = root / "tmp";
    installazione.onScambio = [this](const std::string& versione) {
      recorded.push_back(versione);
      EXPECT_EQ(system.application.terminations, 0);
    };
  }
  ~InstallazioneTest() override { fs::remove_all(root); }

  void scarica(const std::string& url = "/x.zip") { installazione.scarica({"2.0", 6, url, {}, {}}); }
  platform::memory::HttpRequest& request() { return *system.http.requests.at(0); }
  platform::memory::ProcessRun& tool() { return *system.processes.runs.back(); }
  Texts shown() const {
    if (system.alerts.waiting.empty()) return {};
    const auto& alert = system.alerts.waiting.front().alert;
    Texts lines{alert.message, alert.informative};
    lines.insert(lines.end(), alert.buttons.begin(), alert.buttons.end());
    return lines;
  }

  /// What is asked of a server when a release has this address. The answer is a failure, or that nobody is
  /// asked; both are on the screen afterwards.
  std::string asked(const std::string& url) {
    system.alerts.waiting.clear();
    system.http.requests.clear();
    scarica(url);
    if (system.http.requests.empty()) return "";
    request().gotFile({});
    return request().url;
  }
  /// An archive that nobody downloaded.
  fs::path zip() const {
    std::ofstream(root / "y.zip") << "PK";
    return root / "y.zip";
  }
  /// The package has come.
  void download() {
    scarica();
    std::ofstream(request().file) << "PK";
    request().gotFile(200);
  }
  fs::path work() { return tool().arguments.at(1); }
  /// A bundle in the working folder.
  void put(const std::string& name, const std::string& identifier = "app.orvalle.Orvalle") {
    fs::create_directory(work() / name);
    std::ofstream(work() / name / "identifier") << identifier;
  }
  /// Up to the point where the archive is unpacked.
  void reachUnpacking() {
    download();
    tool().end(0, "1000");
    ASSERT_EQ(tool().program, "/bin/unpack");
  }
  /// Up to the point where the bundle is verified.
  void reachVerification() {
    reachUnpacking();
    put("Orvalle.app");
    tool().end();
    ASSERT_EQ(tool().program, "/bin/verify");
  }
  /// What lies in the temporary folder, without what is random in the names.
  Texts leftovers() const {
    Texts names;
    if (!fs::exists(root / "tmp")) return names;
    for (const auto& entry : fs::directory_iterator(root / "tmp")) {
      names.push_back(std::regex_replace(entry.path().filename().string(),
                                         std::regex("[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}"), ""));
    }
    std::sort(names.begin(), names.end());
    return names;
  }
  void expectFailure(const Texts& alert) {
    EXPECT_EQ(shown(), alert);
    EXPECT_EQ(leftovers(), Texts());
    EXPECT_TRUE(system.processes.detached.empty());
    EXPECT_EQ(system.application.terminations, 0);
  }

  platform::memory::MemoryPlatform system;
  platform::Platform platform = system.platform();
  link::WebAddress address{system.environment, system.defaults, "https://default.example/"};
  fs::path root;
  Texts recorded;
  Installazione installazione{platform, address};
};

TEST_F(InstallazioneTest, trustsEncryptedAddressesAndThisMachine) {
  for (const auto& [url, expected] : std::initializer_list<std::pair<std::string, std::string>>{
           {"/x.zip", "https://app.example/x.zip"},
           {"x.zip", "https://app.example/base/x.zip"},
           {"//altrove.example/x", "https://altrove.example/x"},
           {"https://cdn.example/x.zip?a=b", "https://cdn.example/x.zip?a=b"},
           {"http://localhost/x", "http://localhost/x"},
           {"http://localhost:4717/x", "http://localhost:4717/x"},
           {"http://user@localhost/x", "http://user@localhost/x"},
           {"file://localhost/x", "file://localhost/x"}}) {
    EXPECT_EQ(asked(url), expected);
    EXPECT_EQ(shown(), kNotDownloaded) << url;
  }
}

TEST_F(InstallazioneTest, trustsNoOtherAddress) {
  for (const auto* url :
       {"http://app.example/x", "HTTPS://app.example/x", "http://LOCALHOST/x", "http://localhost./x",
        "http://localhost@evil.example/x", "http://evil.example#localhost", "http://evil.example?localhost",
        "http://evil.example/localhost", "http://localhost.evil.example/x", "http://evil-localhost/x",
        "http://127.0.0.1/x", "http://[::1]/x", "ftp://app.example/x", "", "http://a b/", "https://a:x/"}) {
    EXPECT_EQ(asked(url), "");
    EXPECT_EQ(shown(), kUntrusted) << url;
  }
  EXPECT_EQ(leftovers(), Texts());
}

TEST_F(InstallazioneTest, trustsARelativeAddressAsFarAsTheWebApplication) {
  system.environment.variables["ORVALLE_APP_URL"] = "http://app.example/";
  EXPECT_EQ(asked("/x.zip"), "");
  EXPECT_EQ(shown(), kUntrusted);
  system.environment.variables["ORVALLE_APP_URL"] = "http://localhost:1/";
  EXPECT_EQ(asked("/x.zip"), "http://localhost:1/x.zip");
}

TEST_F(InstallazioneTest, refusesBeforeTheDownloadWhatCannotBeReplaced) {
  system.bundle.obstacle = platform::SwapObstacle::NoBundle;
  scarica();
  expectFailure(failed("Orvalle non sta girando da Orvalle.app, quindi non c'è nulla da sostituire."));
  system.alerts.press(0);
  system.bundle.obstacle = platform::SwapObstacle::FolderNotWritable;
  scarica();
  expectFailure(failed("Non ho il permesso di scrivere nella cartella in cui sta Orvalle.app."));
  system.alerts.press(0);
  system.bundle.obstacle = platform::SwapObstacle::NotRemovable;
  scarica();
  expectFailure(failed("Non ho il permesso di rimuovere Orvalle.app, o qualcosa che c'è dentro."));
  EXPECT_TRUE(system.http.requests.empty());
}

TEST_F(InstallazioneTest, saysWhyThereIsNoPlaceForTheDownload) {
  system.userFolders.temporaryFolder = "/dev/null/tmp";
  scarica();
  ASSERT_EQ(shown().size(), 3u);
  EXPECT_EQ(shown(), failed(shown()[1]));
  EXPECT_NE(shown()[1], "");
  EXPECT_TRUE(system.http.requests.empty());
}

TEST_F(InstallazioneTest, refusesBeforeUnpackingWhatCannotBeReplacedAnyMore) {
  scarica();
  std::ofstream(request().file) << "PK";
  system.bundle.obstacle = platform::SwapObstacle::FolderNotWritable;
  request().gotFile(200);
  expectFailure(failed("Non ho il permesso di scrivere nella cartella in cui sta Orvalle.app."));
  EXPECT_TRUE(system.processes.runs.empty());
}

TEST_F(InstallazioneTest, saysWhyThereIsNoPlaceToUnpackIn) {
  system.userFolders.temporaryFolder = "/dev/null/tmp";
  installazione.installa(zip(), "2.0");
  ASSERT_EQ(shown().size(), 3u);
  expectFailure(failed(shown()[1]));
  EXPECT_NE(shown()[1], "");
  EXPECT_TRUE(system.processes.runs.empty());
}

TEST_F(InstallazioneTest, saysWhyWhatWasUnpackedCannotBeRead) {
  reachUnpacking();
  fs::remove_all(work());
  tool().end();
  expectFailure(failed(std::make_error_code(std::errc::no_such_file_or_directory).message()));
}

TEST_F(InstallazioneTest, comesToTheFrontWithItsAlerts) {
  EXPECT_EQ(asked("http://altrove.example/x"), "");
  EXPECT_EQ(std::count(system.journal.begin(), system.journal.end(), "activate"), 1);
}

TEST_F(InstallazioneTest, showsTheDownloadWhileItRuns) {
  scarica();
  EXPECT_EQ(shown(), (Texts{"Sto scaricando Orvalle 2.0…", "Ci vuole un momento.", "Annulla"}));
  EXPECT_TRUE(system.alerts.waiting.front().progress);
  EXPECT_EQ(std::count(system.journal.begin(), system.journal.end(), "activate"), 1);
}

TEST_F(InstallazioneTest, keepsTheDownloadInAFolderOfItsOwn) {
  scarica();
  const auto folder = request().file.parent_path();
  EXPECT_EQ(folder.parent_path(), root / "tmp");
  EXPECT_EQ(fs::status(folder).permissions(), fs::perms::owner_all);
}

TEST_F(InstallazioneTest, cancelsTheDownload) {
  scarica();
  system.alerts.press(0);
  EXPECT_TRUE(request().cancelled);
  expectFailure(kNotDownloaded);
}

TEST_F(InstallazioneTest, acceptsNoOtherStatusThan200) {
  for (const std::optional<int> status : {std::optional<int>(), {206}, {304}, {404}, {201}, {0}}) {
    scarica();
    system.http.requests.back()->gotFile(status);
    expectFailure(kNotDownloaded);
    EXPECT_EQ(system.alerts.waiting.size(), 1u);
    system.alerts.press(0);
  }
  EXPECT_TRUE(system.processes.runs.empty());
}

TEST_F(InstallazioneTest, isOneAtATime) {
  scarica();
  scarica("/y.zip");
  EXPECT_EQ(system.http.requests.size(), 1u);
  request().gotFile({});
  scarica("/y.zip");
  EXPECT_EQ(system.http.requests.size(), 2u);
}

TEST_F(InstallazioneTest, looksIntoTheArchiveBeforeUnpackingIt) {
  download();
  EXPECT_EQ(shown(), Texts());
  EXPECT_EQ(tool().program, "/bin/list");
  EXPECT_EQ(tool().arguments, Texts{request().file.string()});
  tool().end(0, "../fuori");
  expectFailure(failed("../fuori"));
  EXPECT_EQ(system.processes.runs.size(), 1u);
}

TEST_F(InstallazioneTest, looksIntoNothingButZipArchives) {
  for (const auto* begin : {"", "P", "<html>", "\x1f\x8b", "KP"}) {
    std::ofstream(root / "y.zip") << begin;
    installazione.installa(root / "y.zip", "2.0");
    expectFailure(failed("Il pacchetto non è un archivio zip."));
    system.alerts.press(0);
  }
  installazione.installa(root / "manca.zip", "2.0");
  expectFailure(failed("Il pacchetto non è un archivio zip."));
  EXPECT_TRUE(system.processes.runs.empty());
}

TEST_F(InstallazioneTest, unpacksIntoAWorkingFolderOfItsOwn) {
  reachUnpacking();
  EXPECT_EQ(tool().arguments.at(0), request().file);
  EXPECT_EQ(work().parent_path(), root / "tmp");
  EXPECT_TRUE(work().filename().string().starts_with("orvalle-agg-"));
  EXPECT_EQ(work().filename().string().size(), std::string("orvalle-agg-").size() + 36);
  EXPECT_EQ(fs::status(work()).permissions(), fs::perms::owner_all);
  EXPECT_TRUE(fs::exists(request().file));
}

TEST_F(InstallazioneTest, unpacksNothingThatTheDiskCannotHold) {
  download();
  tool().end(0, std::to_string(fs::space(root).available));
  expectFailure(failed("Non c'è abbastanza spazio sul disco."));
  EXPECT_EQ(system.processes.runs.size(), 1u);
}

TEST_F(InstallazioneTest, passesOnWhatAFailingToolSays) {
  download();
  tool().end(1, "non è uno zip");
  expectFailure(failed("non è uno zip"));
  system.alerts.press(0);
  installazione.installa(zip(), "2.0");
  tool().fail("manca");
  expectFailure(failed("manca"));
  system.alerts.press(0);
  installazione.installa(zip(), "2.0");
  tool().end(0, "1");
  tool().end(1);
  expectFailure(failed("/bin/unpack"));
}

TEST_F(InstallazioneTest, findsNoApplication) {
  reachUnpacking();
  fs::create_directories(work() / "cartella" / "Orvalle.app");
  fs::create_directory(work() / "Orvalle.APP");
  tool().end();
  expectFailure(kNoApp);
}

TEST_F(InstallazioneTest, takesTheFirstOfTwoApplications) {
  reachUnpacking();
  put("B.app");
  put("A.app");
  const auto first = *fs::directory_iterator(work());
  tool().end();
  EXPECT_EQ(tool().program, "/bin/verify");
  EXPECT_EQ(tool().arguments, Texts{first.path().string()});
}

TEST_F(InstallazioneTest, recognisesOnlyItself) {
  reachUnpacking();
  put("Orvalle.app", "app.orvalle.Altro");
  tool().end();
  expectFailure(kOtherApp);
}

TEST_F(InstallazioneTest, recognisesNoBundleWithoutAName) {
  for (const auto* own : {"app.orvalle.Orvalle", ""}) {
    system.bundle.identifierText = own;
    system.http.requests.clear();
    reachUnpacking();
    fs::create_directory(work() / "Orvalle.app");
    tool().end();
    expectFailure(kOtherApp);
    system.alerts.press(0);
  }
}

TEST_F(InstallazioneTest, takesTwoBundlesWithoutANameForTheSame) {
  system.bundle.identifierText = {};
  reachUnpacking();
  fs::create_directory(work() / "Orvalle.app");
  tool().end();
  EXPECT_EQ(tool().program, "/bin/verify");
}

TEST_F(InstallazioneTest, recognisesOnlyAFolder) {
  system.bundle.identifierText = {};
  reachUnpacking();
  fs::create_directory(work() / "cartella");
  fs::create_directory_symlink("cartella", work() / "Orvalle.app");
  tool().end();
  expectFailure(kOtherApp);
  system.alerts.press(0);
  system.http.requests.clear();
  reachUnpacking();
  std::ofstream(work() / "Orvalle.app") << "testo";
  tool().end();
  expectFailure(kOtherApp);
}

TEST_F(InstallazioneTest, installsNothingThatIsNotVerified) {
  reachVerification();
  tool().end(1, "bin/orvalle: alterato");
  expectFailure(failed("bin/orvalle: alterato"));
  system.alerts.press(0);
  system.http.requests.clear();
  reachVerification();
  tool().end(1);
  expectFailure(failed("/bin/verify"));
}

TEST_F(InstallazioneTest, swapsWhatWasVerified) {
  reachVerification();
  const auto inode = [](const fs::path& path) {
    struct stat found {};
    ::stat(path.c_str(), &found);
    return found.st_ino;
  };
  const auto verified = inode(tool().arguments.at(0));
  tool().end();

  ASSERT_EQ(system.processes.detached.size(), 1u);
  const auto& script = system.processes.detached[0];
  EXPECT_EQ(script.program, "/bin/sh");
  ASSERT_EQ(script.arguments.size(), 4u);
  EXPECT_EQ(script.arguments[1], "4711");
  EXPECT_EQ(script.arguments[2], system.bundle.folder);
  EXPECT_EQ(leftovers(), (Texts{"orvalle-nuova-.app", "orvalle-scambio-.sh"}));
  EXPECT_EQ(inode(script.arguments[3]), verified);
  EXPECT_EQ(fs::status(script.arguments[3]).permissions(), fs::perms::owner_all);
  EXPECT_EQ(fs::status(script.arguments[0]).permissions(), fs::perms(0755));
  std::ifstream file(script.arguments[0], std::ios::binary);
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), swapScript(system.packageTools));
  EXPECT_EQ(shown(), Texts());
}

TEST_F(InstallazioneTest, recordsTheUpdateAndThenEndsTheProgram) {
  reachVerification();
  tool().end();
  EXPECT_EQ(recorded, Texts{"2.0"});
  EXPECT_EQ(system.application.terminations, 1);
}

TEST_F(InstallazioneTest, goesOnWhenTheSwapDoesNotStart) {
  reachVerification();
  system.processes.succeeds = false;
  tool().end();
  EXPECT_EQ(shown(), failed("niente da fare"));
  EXPECT_EQ(leftovers(), (Texts{"orvalle-nuova-.app", "orvalle-scambio-.sh"}));
  EXPECT_EQ(recorded, Texts());
  EXPECT_EQ(system.application.terminations, 0);
}

TEST_F(InstallazioneTest, writesNothingWhenTheBundleCannotBeReplacedAnyMore) {
  reachVerification();
  system.bundle.obstacle = platform::SwapObstacle::FolderNotWritable;
  tool().end();
  expectFailure(failed("Non ho il permesso di scrivere nella cartella in cui sta Orvalle.app."));
}

TEST_F(InstallazioneTest, saysWhyTheBundleCouldNotBeMoved) {
  installazione.scambiaERiavvia(root / "non esiste", "2.0");
  EXPECT_EQ(shown(), failed(std::make_error_code(std::errc::no_such_file_or_directory).message()));
  EXPECT_TRUE(system.processes.detached.empty());
}

TEST_F(InstallazioneTest, saysWhyTheScriptCouldNotBeWritten) {
  reachVerification();
  rlimit before{};
  ::getrlimit(RLIMIT_FSIZE, &before);
  rlimit none = before;
  none.rlim_cur = 0;
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  ::setrlimit(RLIMIT_FSIZE, &none);
  tool().end();
  ::setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, handler);
  EXPECT_EQ(shown(), failed(std::make_error_code(std::errc::file_too_large).message()));
  EXPECT_EQ(leftovers(), Texts{"orvalle-nuova-.app"});
  EXPECT_TRUE(system.processes.detached.empty());
  EXPECT_EQ(recorded, Texts());
}

TEST_F(InstallazioneTest, leavesNothingBehindWhenTheProgramEndsMeanwhile) {
  auto other = std::make_unique<Installazione>(platform, address);
  other->scarica({"2.0", 6, "/x.zip", {}, {}});
  EXPECT_EQ(leftovers(), Texts{"orvalle-scarico-"});
  other.reset();
  EXPECT_EQ(leftovers(), Texts());
  EXPECT_TRUE(request().cancelled);
  EXPECT_TRUE(system.alerts.waiting.empty());
}

}  // namespace
}  // namespace orvalle::update
