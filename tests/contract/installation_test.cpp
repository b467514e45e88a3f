#include "update/installazione.h"

#include <sys/stat.h>

#include <cstdlib>
#include <vector>

#include "platform/linux/factory.h"
#include "platform/memory/memory_platform.h"
#include "tests/contract/loop.h"
#include "tests/contract/signed_bundle.h"

/// Packages of all kinds, against the real tools.
namespace orvalle::contract {
namespace {

namespace fs = std::filesystem;

/// The programs of this machine, but for the script at the end, which is kept and not started.
class AllButTheSwap : public platform::Processes {
 public:
  bool startAfterExit(const fs::path&) override { return false; }
  base::Subscription run(const fs::path& program, const std::vector<std::string>& arguments,
                         std::function<void(const platform::ProcessOutcome&)> done) override {
    return native_->run(program, arguments, std::move(done));
  }
  std::optional<std::string> startDetached(const fs::path&,
                                           const std::vector<std::string>& arguments) override {
    swap = arguments;
    return {};
  }
  int ownId() const override { return native_->ownId(); }

  std::vector<std::string> swap;

 private:
  std::unique_ptr<platform::Processes> native_ = platform::linuxos::makeProcesses();
};

class Installation : public SignedBundle {
 protected:
  Installation() {
    write(app / "bin/orvalle-codesign", std::string("#!/bin/sh\nexec '") + ORVALLE_CODESIGN + "' \"$@\"\n",
          0755);
    EXPECT_EQ(platform::linuxos::signBundle(app), std::nullopt);
    makeBundle(newer, "nuovo");
    fs::create_directory(outside);
    system.userFolders.temporaryFolder = root / "tmp";
    ::setenv("ORVALLE_OUTSIDE", outside.c_str(), 1);
  }
  /// Installs a package of this kind; gives the message and the reason of the alert, which is empty when the
  /// swap has begun.
  std::vector<std::string> install(const std::string& kind) {
    const auto archive = root / "pacchetto.zip";
    fs::remove(archive);
    const auto command = std::string("/usr/bin/python3 '") + ORVALLE_MAKE_PACKAGE + "' " + kind + " '" +
                         newer.string() + "' '" + archive.string() + "'";
    EXPECT_EQ(std::system(command.c_str()), 0) << command;
    system.alerts.waiting.clear();
    processes.swap.clear();
    installation.installa(archive, "2.0");
    EXPECT_TRUE(runUntil([&] { return !system.alerts.waiting.empty() || !processes.swap.empty(); },
                         std::chrono::seconds(60)))
        << kind;
    if (system.alerts.waiting.empty()) return {};
    const auto& alert = system.alerts.waiting.front().alert;
    return {alert.message, alert.informative};
  }
  /// It is refused with this message, and everything is as before.
  void expectRefused(const std::string& kind, const std::string& message, const std::string& reason = "") {
    const auto before = everything(root / "installata");
    const auto said = install(kind);
    ASSERT_EQ(said.size(), 2u) << kind;
    EXPECT_EQ(said[0], message) << kind << ": " << said[1];
    EXPECT_NE(said[1].find(reason), std::string::npos) << kind << ": " << said[1];
    EXPECT_EQ(everything(root / "installata"), before) << kind;
    EXPECT_TRUE(fs::is_empty(outside)) << kind;
    EXPECT_TRUE(fs::is_empty(root / "tmp")) << kind;
    EXPECT_EQ(system.application.terminations, 0);
  }

  fs::path newer = root / "nuova" / "Orvalle.app";
  fs::path outside = root / "fuori";
  platform::memory::MemoryPlatform system;
  std::unique_ptr<platform::Bundle> bundle = platform::linuxos::makeBundle(app / "bin/orvalle");
  std::unique_ptr<platform::PackageTools> tools = platform::linuxos::makePackageTools(*bundle);
  AllButTheSwap processes;
  platform::Platform platform =
      system.platform({nullptr, nullptr, nullptr, nullptr, bundle.get(), &processes, tools.get()});
  link::WebAddress address{system.environment, system.defaults, "https://app.example/"};
  update::Installazione installation{platform, address};
};

constexpr char kFailed[] = "Aggiornamento non riuscito.";
constexpr char kOther[] = "Pacchetto non riconosciuto.";
constexpr char kNone[] = "Pacchetto incompleto.";

TEST_F(Installation, bringsAGoodPackageAsFarAsTheSwap) {
  for (const std::string kind : {"good", "two"}) {
    EXPECT_EQ(install(kind), std::vector<std::string>()) << kind;
    ASSERT_EQ(processes.swap.size(), 4u);
    EXPECT_EQ(processes.swap[2], app.string());
    EXPECT_EQ(everything(processes.swap[3]), everything(newer)) << kind;
  }
  EXPECT_EQ(system.application.terminations, 2);
}

TEST_F(Installation, keepsModesWhateverTheUsersMask) {
  const auto old = ::umask(077);
  EXPECT_EQ(install("good"), std::vector<std::string>());
  ::umask(old);
}

TEST_F(Installation, refusesWhatLeavesItsFolder) {
  for (const char* kind : {"climbing", "climbing_inside", "absolute"})
    expectRefused(kind, kFailed, "Il pacchetto esce dalla sua cartella");
  expectRefused("through_link", kFailed, "via");
  expectRefused("link_out", kFailed, "share/via: collegamento che esce dal pacchetto");
}

TEST_F(Installation, refusesWhatIsNoBundle) {
  expectRefused("linked_app", kOther, "Non sembra Orvalle.");
  expectRefused("file_app", kOther, "Non sembra Orvalle.");
  expectRefused("without_information", kOther, "Non sembra Orvalle.");
  expectRefused("empty", kNone, "Dentro non c'è nessuna app.");
  expectRefused("nested", kNone, "Dentro non c'è nessuna app.");
}

TEST_F(Installation, refusesAnotherProgram) {
  fs::remove_all(newer);
  makeBundle(newer, "nuovo", "app.orvalle.Altro");
  expectRefused("good", kOther, "Non sembra Orvalle.");
}

TEST_F(Installation, refusesWhatIsNotAsItWasSigned) {
  expectRefused("flipped", kFailed, "bin/orvalle: alterato");
  expectRefused("extra", kFailed, "bin/altro: non fa parte della firma");
  expectRefused("mode", kFailed, "bin/orvalle: permessi cambiati");
  expectRefused("setuid", kFailed, "bin/orvalle: permessi speciali");
  expectRefused("unsigned", kFailed, "Signature: manca la firma");
}

TEST_F(Installation, refusesTheSignatureOfAnotherBundle) {
  const auto other = root / "altra" / "Orvalle.app";
  makeBundle(other, "altro");
  fs::remove_all(newer / "Signature");
  fs::copy(other / "Signature", newer / "Signature", fs::copy_options::recursive);
  expectRefused("good", kFailed, "AppRun: alterato");
}

TEST_F(Installation, refusesOtherSignersWhereOneIsGiven) {
  tools = platform::linuxos::makePackageTools(*bundle, std::string(64, '0'));
  auto own = system.platform({nullptr, nullptr, nullptr, nullptr, bundle.get(), &processes, tools.get()});
  update::Installazione strict(own, address);
  const auto archive = root / "p.zip";
  const auto command = std::string("/usr/bin/python3 '") + ORVALLE_MAKE_PACKAGE + "' good '" +
                       newer.string() + "' '" + archive.string() + "'";
  ASSERT_EQ(std::system(command.c_str()), 0);
  strict.installa(archive, "2.0");
  ASSERT_TRUE(runUntil([&] { return !system.alerts.waiting.empty(); }));
  EXPECT_EQ(system.alerts.waiting.front().alert.informative, "Signature/signature: firmato da un altro\n");
}

TEST_F(Installation, refusesWhatCannotBeUnpacked) {
  for (const char* kind : {"truncated", "nonsense"}) expectRefused(kind, kFailed);
  expectRefused("encrypted", kFailed, "passphrase");
  expectRefused("bomb", kFailed, "bomba");
  expectRefused("many", kFailed, "troppo grande");
}

TEST_F(Installation, refusesAPackageWhereItsOwnToolIsGone) {
  fs::remove(app / "bin/orvalle-codesign");
  expectRefused("good", kFailed, "orvalle-codesign");
}

}  // namespace
}  // namespace orvalle::contract
