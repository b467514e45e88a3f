#include "tests/contract/certificate.h"
#include "tests/contract/installation_rig.h"
#include "tests/contract/web_site.h"

/// A good package, and servers that do not bring it as they should.
namespace orvalle::contract {
namespace {

class InstallationServer : public Installation {
 protected:
  InstallationServer() {
    makePackage("good");
    package = read(archive);
  }
  /// Downloads what is at this address, and installs it.
  std::vector<std::string> download(const std::string& url) {
    system.alerts.waiting.clear();
    processes.swap.clear();
    installation.scarica({"2.0", 2, url, {}, {}});
    return outcome();
  }
  void expectNotDownloaded(const std::string& url) {
    SCOPED_TRACE(url);
    expectRefused([&] { return download(url); }, "Scaricamento non riuscito.", "Riprova più tardi.");
  }
  /// The server says that it will send the whole package, and sends so much of it.
  void announce(SoupServerMessage* message, std::size_t size) const {
    soup_server_message_set_status(message, SOUP_STATUS_OK, nullptr);
    soup_message_headers_set_content_length(soup_server_message_get_response_headers(message),
                                            static_cast<goffset>(package.size()));
    soup_message_body_append(soup_server_message_get_response_body(message), SOUP_MEMORY_COPY, package.data(),
                             size);
  }

  WebSite site;
  std::string package;
};

TEST_F(InstallationServer, bringsAGoodPackageAsFarAsTheSwap) {
  site.put("/x.zip", package);
  EXPECT_EQ(download(site.url("/x.zip")), std::vector<std::string>());
  ASSERT_EQ(processes.swap.size(), 4u);
  EXPECT_EQ(everything(processes.swap[3]), everything(newer));
  fs::remove_all(processes.swap[3]);
  fs::remove(processes.swap[0]);
  EXPECT_TRUE(fs::is_empty(root / "tmp"));
}

TEST_F(InstallationServer, refusesAWholePackageWithAnotherStatusThan200) {
  for (const unsigned status : {201u, 206u, 304u, 404u, 500u}) {
    site.put("/x.zip", package, status);
    expectNotDownloaded(site.url("/x.zip"));
  }
}

TEST_F(InstallationServer, refusesAPackageWhoseLastHundredthDoesNotCome) {
  site.handlers["/x.zip"] = [this](SoupServerMessage* message) {
    announce(message, package.size() * 99 / 100);
    g_signal_connect(message, "wrote-body-data", G_CALLBACK(+[](SoupServerMessage* self, guint, gpointer) {
                       g_socket_shutdown(soup_server_message_get_socket(self), TRUE, TRUE, nullptr);
                     }),
                     nullptr);
  };
  expectNotDownloaded(site.url("/x.zip"));
}

TEST_F(InstallationServer, refusesAPackageWithoutItsLastHundredth) {
  site.put("/x.zip", package.substr(0, package.size() * 99 / 100));
  expectRefused([&] { return download(site.url("/x.zip")); }, kFailed, "");
}

TEST_F(InstallationServer, refusesARedirectToAHostThatIsNotTrusted) {
  WebSite other;
  other.put("/x.zip", package);
  site.redirect("/x.zip", other.url("/x.zip", "127.0.0.1"));
  expectNotDownloaded(site.url("/x.zip"));
  EXPECT_TRUE(other.asked.empty());
}

TEST_F(InstallationServer, refusesARedirectFromEncryptedToPlain) {
  const auto certificate = makeCertificate("localhost");
  ASSERT_TRUE(certificate) << "no certificate; is openssl installed?";
  const Trust trust(certificate.get());
  // Knows whom the system trusts from the moment it is made.
  const auto client = platform::linuxos::makeHttpClient();
  update::Installazione own(system.platform({.bundle = bundle.get(),
                                             .processes = &processes,
                                             .http = client.get(),
                                             .packageTools = tools.get()}),
                            address);
  WebSite encrypted(certificate.get());
  site.put("/x.zip", package);
  encrypted.redirect("/x.zip", site.url("/x.zip"));
  const auto attempt = [&] {
    own.scarica({"2.0", 2, encrypted.url("/x.zip"), {}, {}});
    return outcome();
  };
  expectRefused(attempt, "Scaricamento non riuscito.", "Riprova più tardi.");
  EXPECT_EQ(encrypted.asked.size(), 1u);
  EXPECT_TRUE(site.asked.empty());
}

TEST_F(InstallationServer, asksNobodyWhoIsNotTrusted) {
  site.put("/x.zip", package);
  for (const char* host : {"127.0.0.1", "LOCALHOST", "localhost.", "localhost@127.0.0.1"}) {
    SCOPED_TRACE(host);
    expectRefused([&] { return download(site.url("/x.zip", host)); }, "Aggiornamento non valido.",
                  "L'indirizzo del pacchetto non è affidabile.");
  }
  EXPECT_TRUE(site.asked.empty());
}

TEST_F(InstallationServer, leavesNothingOfACancelledDownload) {
  site.handlers["/x.zip"] = [this](SoupServerMessage* message) { announce(message, package.size() / 2); };
  const auto attempt = [&] {
    installation.scarica({"2.0", 2, site.url("/x.zip"), {}, {}});
    const auto begun = [&] {
      const fs::directory_iterator folder(root / "tmp");
      return folder != fs::directory_iterator() && !fs::is_empty(folder->path());
    };
    EXPECT_TRUE(runUntil(begun));
    system.alerts.press(0);
    return outcome();
  };
  expectRefused(attempt, "Scaricamento non riuscito.", "Riprova più tardi.");
}

}  // namespace
}  // namespace orvalle::contract
