#include "platform/http_client.h"

#include <fstream>

#include "tests/contract/http_rig.h"

/// The native client against a server that does what servers do, and what they should not.
namespace orvalle::contract {
namespace {

using namespace std::chrono_literals;

class HttpClientTest : public HttpRig {
 protected:
  WebSite site;
};

TEST_F(HttpClientTest, fetchesAPageWhateverItsStatus) {
  site.put("/si", "contenuto");
  site.put("/no", "non c'è", SOUP_STATUS_NOT_FOUND);
  site.put("/vuoto", "");
  EXPECT_EQ(get(site.url("/si?t=1")), "contenuto");
  EXPECT_EQ(get(site.url("/no")), "non c'è");
  EXPECT_EQ(get(site.url("/vuoto")), "");
}

TEST_F(HttpClientTest, fetchesNoPageThatIsTooLong) {
  site.put("/lungo", std::string(1024 * 1024, 'x'));
  site.put("/troppo", std::string(1024 * 1024 + 1, 'x'));
  EXPECT_EQ(get(site.url("/lungo")).size(), 1024u * 1024u);
  EXPECT_EQ(get(site.url("/troppo")), "-");
}

TEST_F(HttpClientTest, downloadsToAFileOfTheUsersOwn) {
  const std::string body("\0zip\xff", 5);
  site.put("/x.zip", body);
  EXPECT_EQ(download(site.url("/x.zip")), "200");
  EXPECT_EQ(contents(), body);
  EXPECT_EQ(std::filesystem::status(file).permissions(), std::filesystem::perms(0600));
}

TEST_F(HttpClientTest, tellsTheStatusOfADownload) {
  for (const unsigned status : {201u, 206u, 304u, 404u, 500u}) {
    site.put("/x.zip", "testo", status);
    EXPECT_EQ(download(site.url("/x.zip")), std::to_string(status));
  }
}

TEST_F(HttpClientTest, writesOverNothing) {
  site.put("/x.zip", "nuovo");
  std::ofstream(file) << "vecchio";
  std::string said = "?";
  const auto request = client->download(site.url("/x.zip"), file,
                                        [&](std::optional<int> status) { said = status ? "sì" : "-"; });
  EXPECT_TRUE(runUntil([&] { return said == "-"; }));
  EXPECT_EQ(contents(), "vecchio");
}

TEST_F(HttpClientTest, failsWhenTheFileCannotBeWritten) {
  site.put("/x.zip", "testo");
  file = folder / "manca" / "x.zip";
  EXPECT_EQ(download(site.url("/x.zip")), "-");
}

TEST_F(HttpClientTest, followsRedirectsOnTheHost) {
  site.put("/x.zip", "testo");
  for (const unsigned status : {301u, 302u, 303u, 307u, 308u}) {
    site.redirect("/a", "/b?c=d", status);
    site.redirect("/b", site.url("/x.zip"), status);
    EXPECT_EQ(download(site.url("/a")), "200") << status;
    EXPECT_EQ(get(site.url("/a")), "testo") << status;
  }
}

TEST_F(HttpClientTest, followsNoRedirectToAnotherHostWithoutEncryption) {
  WebSite other;
  other.put("/x.zip", "testo");
  site.redirect("/a", other.url("/x.zip", "127.0.0.1"));
  EXPECT_EQ(download(site.url("/a")), "-");
  EXPECT_EQ(get(site.url("/a")), "-");
  EXPECT_TRUE(other.asked.empty());
}

TEST_F(HttpClientTest, followsNoRedirectToNowhere) {
  for (const char* place : {"file:///etc/hostname", "ftp://localhost/x", "data:,x"}) {
    site.redirect("/a", place);
    EXPECT_EQ(download(site.url("/a")), "-") << place;
  }
  site.put("/senza", "", SOUP_STATUS_FOUND);
  EXPECT_EQ(download(site.url("/senza")), "-");
}

TEST_F(HttpClientTest, givesUpOnRedirectsWithoutEnd) {
  site.redirect("/a", "/a");
  EXPECT_EQ(download(site.url("/a")), "-");
  EXPECT_LE(site.asked.size(), 21u);
}

TEST_F(HttpClientTest, failsWhereThereIsNoServer) {
  std::string gone;
  {
    const WebSite other;
    gone = other.url("/x.zip");
  }
  EXPECT_EQ(download(gone), "-");
  EXPECT_EQ(get(gone), "-");
}

TEST_F(HttpClientTest, failsForWhatIsNoWebAddress) {
  for (const char* url : {"file:///etc/hostname", "file://localhost/etc/hostname", "ftp://localhost/x", "x",
                          "", "http:///x", "http://localhost:99999/"}) {
    EXPECT_EQ(get(url), "-") << url;
    EXPECT_EQ(download(url), "-") << url;
  }
}

TEST_F(HttpClientTest, failsWhenTheConnectionIsCut) {
  site.handlers["/x.zip"] = [](SoupServerMessage* message) {
    soup_server_message_set_status(message, SOUP_STATUS_OK, nullptr);
    auto* headers = soup_server_message_get_response_headers(message);
    soup_message_headers_set_content_length(headers, 100'000);
    auto* body = soup_server_message_get_response_body(message);
    const std::string most(99'000, 'x');
    soup_message_body_append(body, SOUP_MEMORY_COPY, most.data(), most.size());
    g_signal_connect(message, "wrote-body-data", G_CALLBACK(+[](SoupServerMessage* self, guint, gpointer) {
                       g_socket_shutdown(soup_server_message_get_socket(self), TRUE, TRUE, nullptr);
                     }),
                     nullptr);
  };
  EXPECT_EQ(download(site.url("/x.zip")), "-");
}

TEST_F(HttpClientTest, failsWhenNothingMoves) {
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(download(site.url("/mai")), "-");
  EXPECT_GE(std::chrono::steady_clock::now() - start, 1900ms);
}

TEST_F(HttpClientTest, saysNothingOnceCancelled) {
  site.put("/x.zip", std::string(8 * 1024 * 1024, 'x'));
  for (const auto& path : {"/x.zip", "/mai"}) {
    for (const auto wait : {0ms, 5ms, 50ms}) {
      std::filesystem::remove(file);
      bool said = false;
      bool cancelled = false;
      auto request = client->download(site.url(path), file, [&](std::optional<int>) {
        EXPECT_FALSE(cancelled);
        said = true;
      });
      runFor(wait);
      request.reset();
      cancelled = true;
      runFor(50ms);
      if (path == std::string("/mai")) {
        EXPECT_FALSE(said);
      }
    }
  }
}

TEST_F(HttpClientTest, mayBeCancelledAndAskedFromItsAnswer) {
  site.put("/a", "uno");
  site.put("/b", "due");
  std::vector<std::string> said;
  base::Subscription request;
  request = client->get(site.url("/a"), [&](const auto& body) {
    said.push_back(body.value_or("-"));
    request = client->get(site.url("/b"), [&](const auto& next) { said.push_back(next.value_or("-")); });
  });
  EXPECT_TRUE(runUntil([&] { return said.size() == 2; }));
  EXPECT_EQ(said, (std::vector<std::string>{"uno", "due"}));
}

TEST_F(HttpClientTest, endsWithRequestsUnderWay) {
  auto request = client->get(site.url("/mai"), [](const auto&) { ADD_FAILURE() << "answered"; });
  runFor(20ms);
  client.reset();
  runFor(20ms);
  request.reset();
  runFor(20ms);
}

}  // namespace
}  // namespace orvalle::contract
