#include <sys/stat.h>

#include "tests/contract/installation_rig.h"

/// Packages of all kinds, against the real tools.
namespace orvalle::contract {
namespace {

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
  for (const char* kind : {"through_link", "through_link_inside"}) expectRefused(kind, kFailed, "via");
  for (const char* kind : {"disguised", "backslashes"}) expectRefused(kind, kFailed, "fuori");
  expectRefused("over_link", kFailed, "via: non fa parte della firma");
  expectRefused("link_out", kFailed, "share/via: collegamento che esce dal pacchetto");
}

TEST_F(Installation, refusesWhatIsNoBundle) {
  expectRefused("linked_app", kOther, "Non sembra Orvalle.");
  expectRefused("file_app", kOther, "Non sembra Orvalle.");
  for (const char* kind : {"without_information", "absent_information", "linked_information"})
    expectRefused(kind, kOther, "Non sembra Orvalle.");
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
  expectRefused("line_break", kFailed, "b: non fa parte della firma");
  expectRefused("mode", kFailed, "bin/orvalle: permessi cambiati");
  expectRefused("open_root", kFailed, "Orvalle.app: aperto in scrittura ad altri");
  expectRefused("open_signature", kFailed, "Signature: permessi cambiati");
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
  const auto strict = platform::linuxos::makePackageTools(*bundle, std::string(64, '0'));
  update::Installazione own(
      system.platform({.bundle = bundle.get(), .processes = &processes, .packageTools = strict.get()}),
      address);
  makePackage("good");
  own.installa(archive, "2.0");
  EXPECT_EQ(outcome(), (std::vector<std::string>{kFailed, "Signature/signature: firmato da un altro\n"}));
}

TEST_F(Installation, refusesWhatCannotBeUnpacked) {
  expectRefused("truncated", kFailed);
  expectRefused("encrypted", kFailed, "passphrase");
  expectRefused("contradictory", kFailed, "bsdtar");
  for (const char* kind : {"nonsense", "tar"}) expectRefused(kind, kFailed, "non è un archivio zip");
}

TEST_F(Installation, refusesWhatUnfoldsToTooMuch) {
  expectRefused("zeros", kFailed, "zeri: non fa parte della firma");
  expectRefused("huge", kFailed, "Non c'è abbastanza spazio sul disco.");
  expectRefused("bomb", kFailed, "bomba");
}

TEST_F(Installation, namesTheToolThatFailsWithoutAWord) {
  const auto own = app / "bin/orvalle-codesign";
  write(own, "#!/bin/sh\nexit 1\n", 0755);
  EXPECT_EQ(install("good"), (std::vector<std::string>{kFailed, own.string()}));
  EXPECT_EQ(tools->list(archive).tool, "/usr/bin/bsdtar");
  EXPECT_EQ(tools->unpack(archive, outside).tool, "/usr/bin/bsdtar");
}

TEST_F(Installation, refusesAPackageWhereItsOwnToolIsGone) {
  fs::remove(app / "bin/orvalle-codesign");
  expectRefused("good", kFailed, "orvalle-codesign");
}

}  // namespace
}  // namespace orvalle::contract
