#include "platform/linux/codesign/bundle_signature.h"

#include <sys/stat.h>
#include <sys/wait.h>

#include <functional>
#include <utility>
#include <vector>

#include "platform/code_signing.h"
#include "platform/linux/factory.h"
#include "tests/contract/signed_bundle.h"

/// The signatures of bundles, and the tool that makes and checks them.
namespace orvalle::contract {
namespace {

namespace fs = std::filesystem;
using platform::linuxos::signBundle;
using platform::linuxos::SigningKey;
using platform::linuxos::verifyBundle;

class BundleSignature : public SignedBundle {
 protected:
  /// What is wrong with the bundle; "" for nothing.
  std::string trouble(const std::string& signer = "") const { return verifyBundle(app, signer).value_or(""); }
  /// What the tool says and returns.
  std::pair<int, std::string> tool(const std::string& arguments) const {
    const auto output = root / "detto";
    const int status = std::system(
        (std::string("'") + ORVALLE_CODESIGN + "' " + arguments + " >'" + output.string() + "' 2>&1")
            .c_str());
    return {WEXITSTATUS(status), read(output)};
  }
  std::string quoted() const { return "'" + app.string() + "'"; }
};

TEST_F(BundleSignature, holdsForTheBundleAsItIs) {
  EXPECT_EQ(trouble(), "");
  fs::rename(app, root / "Altro nome.app");
  app = root / "Altro nome.app";
  EXPECT_EQ(trouble(), "");
  fs::permissions(app, fs::perms(0700));
  EXPECT_EQ(trouble(), "");
}

TEST_F(BundleSignature, namesTheFileThatIsNotAsItWas) {
  const std::vector<std::pair<std::string, std::function<void()>>> changes{
      {"bin/orvalle: alterato", [&] { write(app / "bin/orvalle", "Vecchio", 0755); }},
      {"bin/orvalle: permessi cambiati", [&] { fs::permissions(app / "bin/orvalle", fs::perms(0775)); }},
      {"bin: permessi cambiati", [&] { fs::permissions(app / "bin", fs::perms(0777)); }},
      {"bin/orvalle: manca", [&] { fs::remove(app / "bin/orvalle"); }},
      {"bin/altro: non fa parte della firma", [&] { write(app / "bin/altro", ""); }},
      {"vuota: non fa parte della firma", [&] { fs::create_directory(app / "vuota"); }},
      {"Signature/altro: non fa parte della firma", [&] { write(app / "Signature/altro", ""); }},
      {"Signature: permessi cambiati", [&] { fs::permissions(app / "Signature", fs::perms(0777)); }},
      {app.string() + ": aperto in scrittura ad altri", [&] { fs::permissions(app, fs::perms(0777)); }},
      {app.string() + ": aperto in scrittura ad altri", [&] { fs::permissions(app, fs::perms(0775)); }},
      {"share/programma: alterato",
       [&] {
         fs::remove(app / "share/programma");
         fs::create_symlink("../AppRun", app / "share/programma");
       }},
      {"share/pagina.html: alterato",
       [&] {
         fs::rename(app / "share/pagina.html", app / "share/p2");
         fs::create_symlink("p2", app / "share/pagina.html");
       }},
      {"Signature/signature: firma non valida", [&] { write(app / "Signature/manifest", "[]"); }},
      {"Signature/signature: non si può leggere", [&] { fs::remove(app / "Signature/signature"); }},
      {"Signature/signature: non si può leggere", [&] { write(app / "Signature/signature", "{"); }},
      {"Signature/manifest: non si può leggere", [&] { fs::remove(app / "Signature/manifest"); }},
      {"Signature: manca la firma", [&] { fs::remove_all(app / "Signature"); }},
  };
  for (const auto& [expected, change] : changes) {
    fs::remove_all(app);
    makeBundle(app, "vecchio");
    change();
    EXPECT_EQ(trouble(), expected);
    EXPECT_EQ(tool("--verify --deep --strict " + quoted()), std::pair(1, expected + "\n"));
  }
}

TEST_F(BundleSignature, isNeverMadeForWhatLeavesTheBundle) {
  for (const char* target : {"/etc/passwd", "../../fuori", "../share/../../x", "../../Orvalle.app/bin"}) {
    fs::remove(app / "share/programma");
    fs::create_symlink(target, app / "share/programma");
    EXPECT_EQ(signBundle(app), "share/programma: collegamento che esce dal pacchetto") << target;
    EXPECT_EQ(trouble(), "share/programma: collegamento che esce dal pacchetto") << target;
  }
}

TEST_F(BundleSignature, isNeverMadeForSpecialRightsAndFiles) {
  fs::permissions(app / "bin/orvalle", fs::perms(04755));
  EXPECT_EQ(signBundle(app), "bin/orvalle: permessi speciali");
  EXPECT_EQ(trouble(), "bin/orvalle: permessi speciali");
  fs::permissions(app, fs::perms(0777));
  EXPECT_EQ(signBundle(app), app.string() + ": aperto in scrittura ad altri");
  fs::permissions(app, fs::perms(0755));
  fs::remove(app / "bin/orvalle");
  ::mkfifo((app / "bin/orvalle").c_str(), 0644);
  EXPECT_EQ(signBundle(app), "bin/orvalle: non è un file");
  EXPECT_EQ(trouble(), "bin/orvalle: non è un file");
}

TEST_F(BundleSignature, belongsToOneBundleOnly) {
  const auto other = root / "Altra.app";
  makeBundle(other, "altro");
  fs::remove_all(app / "Signature");
  fs::copy(other / "Signature", app / "Signature", fs::copy_options::recursive);
  EXPECT_EQ(trouble(), "AppRun: alterato");
}

TEST_F(BundleSignature, cannotBePassedOffAsAnotherKind) {
  auto text = read(app / "Signature/signature");
  const auto at = text.find(R"("adhoc":true)");
  ASSERT_NE(at, std::string::npos);
  text.replace(at, 12, R"("adhoc":false)");
  write(app / "Signature/signature", text);
  EXPECT_EQ(trouble(), "Signature/signature: firma non valida");
}

TEST_F(BundleSignature, countsFromOneSignerOnlyWhereThatIsAsked) {
  const auto key = SigningKey::make();
  const auto other = SigningKey::make();
  EXPECT_EQ(trouble(key.publicKey()), "Signature/signature: firmato da un altro");
  ASSERT_EQ(signBundle(app, other), std::nullopt);
  EXPECT_EQ(trouble(), "");
  EXPECT_EQ(trouble(key.publicKey()), "Signature/signature: firmato da un altro");
  ASSERT_EQ(signBundle(app, key), std::nullopt);
  EXPECT_EQ(trouble(key.publicKey()), "");
  EXPECT_EQ(tool("--verify --signer " + key.publicKey() + " " + quoted()).first, 0);
  EXPECT_EQ(tool("--verify --signer " + other.publicKey() + " " + quoted()).first, 1);
}

TEST_F(BundleSignature, isTheSameForTheSameBundle) {
  const auto first = read(app / "Signature/signature");
  ASSERT_EQ(signBundle(app), std::nullopt);
  EXPECT_EQ(read(app / "Signature/signature"), first);
}

TEST_F(BundleSignature, tellsTheProgramHowItWasSigned) {
  const auto bundle = platform::linuxos::makeBundle(app / "bin/orvalle");
  const auto signing = platform::linuxos::makeCodeSigning(*bundle);
  EXPECT_EQ(signing->ownFlags(), platform::kSignatureAdhoc);
  ASSERT_EQ(signBundle(app, SigningKey::make()), std::nullopt);
  EXPECT_EQ(signing->ownFlags(), 0u);
  fs::remove(app / "Signature/manifest");
  EXPECT_EQ(signing->ownFlags(), std::nullopt);
}

TEST_F(BundleSignature, isMadeAndShownByTheTool) {
  const auto [made, key] = tool("make-key");
  EXPECT_EQ(made, 0);
  write(root / "chiave", key, 0600);
  fs::remove_all(app / "Signature");
  EXPECT_EQ(tool("sign --key '" + (root / "chiave").string() + "' " + quoted()), std::pair(0, std::string()));
  EXPECT_EQ(tool("--verify --deep --strict " + quoted()), std::pair(0, std::string()));
  EXPECT_EQ(tool("--display " + quoted()),
            std::pair(0, "key=" + SigningKey::read(key).value().publicKey() + "\nflags=0x0(none)\n"));
  EXPECT_EQ(tool("sign " + quoted()).first, 0);
  EXPECT_TRUE(tool("--display " + quoted()).second.ends_with("flags=0x2(adhoc)\n"));
  fs::remove_all(app / "Signature");
  EXPECT_EQ(tool("--display " + quoted()).first, 1);
}

TEST_F(BundleSignature, isNotMadeByATriflingMistake) {
  write(root / "chiave", "0123\n", 0600);
  const auto before = everything(app);
  EXPECT_EQ(tool("sign --key '" + (root / "chiave").string() + "' " + quoted()).first, 1);
  EXPECT_EQ(tool("sign --key '" + (root / "manca").string() + "' " + quoted()).first, 1);
  EXPECT_EQ(tool("").first, 2);
  EXPECT_EQ(tool("sign").first, 2);
  EXPECT_EQ(tool("--verify --qualcosa " + quoted()).first, 2);
  EXPECT_EQ(tool("--verify '" + (root / "manca").string() + "'").first, 1);
  EXPECT_EQ(everything(app), before);
}

}  // namespace
}  // namespace orvalle::contract
