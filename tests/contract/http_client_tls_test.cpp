#include "tests/contract/certificate.h"
#include "tests/contract/http_rig.h"

/// The native client and encryption.
namespace orvalle::contract {
namespace {

class HttpClientTls : public HttpRig {
 protected:
  void SetUp() override {
    certificate = makeCertificate("localhost");
    ASSERT_TRUE(certificate) << "no certificate; is openssl installed?";
  }
  platform::linuxos::GObjectPtr<GTlsCertificate> certificate;
};

TEST_F(HttpClientTls, refusesACertificateThatNobodyVouchesFor) {
  WebSite site(certificate.get());
  site.put("/x.zip", "testo");
  EXPECT_EQ(download(site.url("/x.zip")), "-");
  EXPECT_EQ(get(site.url("/x.zip")), "-");
  EXPECT_TRUE(site.asked.empty());
}

TEST_F(HttpClientTls, refusesACertificateOfAnotherHost) {
  const Trust trust(certificate.get());
  WebSite site(certificate.get());
  site.put("/x.zip", "testo");
  EXPECT_EQ(download(site.url("/x.zip", "127.0.0.1")), "-");
  EXPECT_TRUE(site.asked.empty());
}

TEST_F(HttpClientTls, leavesNoEncryptionBehind) {
  const Trust trust(certificate.get());
  client = platform::linuxos::makeHttpClient();
  WebSite site(certificate.get());
  WebSite plain;
  site.put("/x.zip", "testo");
  plain.put("/x.zip", "testo");
  EXPECT_EQ(download(site.url("/x.zip")), "200");
  EXPECT_EQ(contents(), "testo");
  site.redirect("/dentro", "/x.zip");
  EXPECT_EQ(download(site.url("/dentro")), "200");
  site.redirect("/fuori", plain.url("/x.zip"));
  EXPECT_EQ(download(site.url("/fuori")), "-");
  EXPECT_EQ(get(site.url("/fuori")), "-");
  EXPECT_TRUE(plain.asked.empty());
  plain.redirect("/su", site.url("/x.zip"));
  EXPECT_EQ(download(plain.url("/su", "127.0.0.1")), "200");
}

}  // namespace
}  // namespace orvalle::contract
