// What the server answers, asked over real sockets.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <string>
#include <utility>

#include "tests/demo/http_client.h"
#include "tests/demo/running_server.h"
#include "tests/demo/temporary_folder.h"

namespace orvalle::demo {
namespace {

using std::filesystem::path;

class ServerTest : public testing::Test {
 protected:
  ServerTest() {
    folder_.write("page/index.html", "<!doctype html>Orvalle");
    folder_.write("page/app.js", "export {};");
    folder_.write("page/screens/focus.js", "// focus");
    folder_.write("segreto.txt", "segreto");
    server_ = std::make_unique<RunningServer>(folder_.path() / "page", PortRange{0, 0});
  }

  Answer get(const std::string& target, const std::string& headers = "") {
    return ask(server_->port(), "GET", target, headers);
  }

  TemporaryFolder folder_;
  std::unique_ptr<RunningServer> server_;
};

TEST_F(ServerTest, servesThePageAtTheRoot) {
  const Answer answer = get("/");
  EXPECT_EQ(answer.status, 200);
  EXPECT_EQ(answer.body, "<!doctype html>Orvalle");
  EXPECT_EQ(answer.header("Content-Type"), "text/html; charset=utf-8");
  EXPECT_EQ(answer.header("Content-Length"), "22");
}

TEST_F(ServerTest, everyRouteShowsThePage) {
  for (const char* route :
       {"/sprint", "/settings?sezione=google&esito=ok", "/a/b/c", "/screens", "/%C3%A8", "/apiario"}) {
    const Answer answer = get(route);
    EXPECT_EQ(answer.status, 200) << route;
    EXPECT_EQ(answer.body, "<!doctype html>Orvalle") << route;
  }
}

TEST_F(ServerTest, filesHaveTheirTypes) {
  const std::pair<const char*, const char*> kTypes[] = {
      {"a.html", "text/html; charset=utf-8"},
      {"a.css", "text/css; charset=utf-8"},
      {"a.js", "text/javascript; charset=utf-8"},
      {"a.mjs", "text/javascript; charset=utf-8"},
      {"a.json", "application/json"},
      {"a.svg", "image/svg+xml"},
      {"a.png", "image/png"},
      {"a.ico", "image/x-icon"},
      {"a.woff2", "font/woff2"},
      {"a.txt", "text/plain; charset=utf-8"},
      {"a.xyz", "application/octet-stream"},
      {"a.webmanifest", "application/manifest+json"},
  };
  for (const auto& [name, type] : kTypes) {
    folder_.write(std::string("page/") + name, "x");
    const Answer answer = get(std::string("/") + name);
    EXPECT_EQ(answer.status, 200) << name;
    EXPECT_EQ(answer.header("Content-Type"), type) << name;
  }
}

TEST_F(ServerTest, filesInFoldersAndEncodedNamesAreFound) {
  folder_.write("page/due parole.txt", "due");
  EXPECT_EQ(get("/screens/focus.js").body, "// focus");
  EXPECT_EQ(get("/due%20parole.txt").body, "due");
  folder_.write("page/due%20parole.txt", "decodificato una volta sola");
  EXPECT_EQ(get("/due%2520parole.txt").body, "decodificato una volta sola");
}

TEST_F(ServerTest, missingFilesAreNotFound) {
  for (const char* target :
       {"/niente.js", "/screens/niente.css", "/api/", "/api/niente", "/api/mac/entra/x"}) {
    EXPECT_EQ(get(target).status, 404) << target;
  }
}

TEST_F(ServerTest, anEditedFileShowsAtOnceAndAnUnchangedOneIsNotSentAgain) {
  const Answer first = get("/app.js");
  EXPECT_EQ(first.header("Cache-Control"), "no-cache");
  const std::string condition = "If-None-Match: " + first.header("ETag") + "\r\n";
  const Answer same = get("/app.js", condition);
  EXPECT_EQ(same.status, 304);
  EXPECT_EQ(same.body, "");
  EXPECT_EQ(same.header("ETag"), first.header("ETag"));
  folder_.write("page/app.js", "export [];");
  const Answer edited = get("/app.js", condition);
  EXPECT_EQ(edited.status, 200);
  EXPECT_EQ(edited.body, "export [];");
}

TEST_F(ServerTest, headAnswersLikeGetWithoutTheBody) {
  const Answer answer = ask(server_->port(), "HEAD", "/app.js");
  EXPECT_EQ(answer.status, 200);
  EXPECT_EQ(answer.body, "");
  EXPECT_EQ(answer.header("Content-Length"), "10");
  EXPECT_EQ(answer.header("Content-Type"), "text/javascript; charset=utf-8");
}

TEST_F(ServerTest, otherMethodsAreRefused) {
  for (const char* method : {"POST", "PUT", "DELETE", "OPTIONS", "PATCH", "BOH"}) {
    for (const char* target : {"/", "/app.js", "/api/io", "/api/mac/entra?codice=1"}) {
      const Answer answer = ask(server_->port(), method, target, "Content-Length: 0\r\n");
      EXPECT_EQ(answer.status, 405) << method << target;
      EXPECT_EQ(answer.header("Allow"), "GET, HEAD") << method << target;
      EXPECT_EQ(answer.header("Set-Cookie"), "") << method << target;
    }
  }
}

TEST_F(ServerTest, nothingOutsideThePageFolderIsServed) {
  for (const char* target :
       {"/../segreto.txt", "/%2e%2e/segreto.txt", "/%2E%2E%2fsegreto.txt", "/..%2fsegreto.txt",
        "/screens/../../segreto.txt", "/.%2e/segreto.txt", "/..%5csegreto.txt", "/%252e%252e/segreto.txt",
        "//segreto.txt", "/screens//focus.js", "/app.js%00.html", "/%00", "/app.js/", "/%", "/%zz.js",
        "/%ff.js", "*", "segreto.txt"}) {
    const Answer answer = get(target);
    EXPECT_TRUE(answer.status == 400 || answer.status == 404 || answer.body == "<!doctype html>Orvalle")
        << target << " " << answer.status;
    EXPECT_EQ(answer.body.find("segreto"), std::string::npos) << target;
  }
  const std::string absolute = (folder_.path() / "segreto.txt").string();
  EXPECT_EQ(get(absolute).status, 404);
  EXPECT_EQ(get("/" + absolute).status, 404);
}

TEST_F(ServerTest, linksThatLeaveThePageFolderAreNotFollowed) {
  const path page = folder_.path() / "page";
  folder_.write("fuori/app.js", "fuori");
  folder_.write("page-accanto/app.js", "fuori");
  std::filesystem::create_symlink("../segreto.txt", page / "link.txt");
  std::filesystem::create_directory_symlink("../fuori", page / "cartella");
  std::filesystem::create_directory_symlink("../page-accanto", page / "accanto");
  std::filesystem::create_symlink("app.js", page / "dentro.js");
  EXPECT_EQ(get("/link.txt").status, 404);
  EXPECT_EQ(get("/cartella/app.js").status, 404);
  EXPECT_EQ(get("/accanto/app.js").status, 404);
  EXPECT_EQ(get("/dentro.js").body, "export {};");
}

TEST_F(ServerTest, aPageFolderReachedThroughALinkIsServed) {
  std::filesystem::create_directory_symlink("page", folder_.path() / "link");
  const RunningServer other(folder_.path() / "link", PortRange{0, 0});
  EXPECT_EQ(ask(other.port(), "GET", "/app.js").status, 200);
}

TEST_F(ServerTest, hiddenAndSpecialFilesAreNotServed) {
  folder_.write("page/.segreto.txt", "segreto");
  folder_.write("page/.git/config.txt", "segreto");
  std::filesystem::create_directory(folder_.path() / "page/cartella.js");
  const path queue = folder_.path() / "page/coda.js";
  ASSERT_EQ(mkfifo(queue.c_str(), 0600), 0);
  EXPECT_EQ(get("/.segreto.txt").status, 404);
  EXPECT_EQ(get("/.git/config.txt").status, 404);
  EXPECT_EQ(get("/cartella.js").status, 404);
  // Whoever reads the queue waits for as long as it has a writer.
  const int writer = open(queue.c_str(), O_RDWR | O_CLOEXEC);
  EXPECT_EQ(get("/coda.js").status, 404);
  close(writer);
}

TEST_F(ServerTest, everyAnswerForbidsInlineScriptsFramesAndGuessedTypes) {
  for (const char* target : {"/", "/app.js", "/niente.js", "/api/io", "/api/mac/entra?codice=1"}) {
    const Answer answer = get(target);
    const std::string policy = "; " + answer.header("Content-Security-Policy") + ";";
    for (const char* rule : {"; default-src 'none';", "; script-src 'self';", "; frame-src 'none';",
                             "; frame-ancestors 'none';"}) {
      EXPECT_NE(policy.find(rule), std::string::npos) << target << rule;
    }
    EXPECT_EQ(policy.find("unsafe"), std::string::npos) << target;
    EXPECT_EQ(answer.header("X-Content-Type-Options"), "nosniff") << target;
  }
}

TEST_F(ServerTest, aCodeSignsTheBrowserIn) {
  EXPECT_EQ(get("/api/io").body, R"({"accesso":false})");
  const Answer entered = get("/api/mac/entra?codice=un%20codice");
  EXPECT_EQ(entered.status, 303);
  EXPECT_EQ(entered.header("Location"), "/");
  EXPECT_EQ(entered.header("Cache-Control"), "no-store");
  const std::string cookie = entered.header("Set-Cookie");
  EXPECT_NE(cookie.find("; HttpOnly"), std::string::npos) << cookie;
  EXPECT_NE(cookie.find("; SameSite=Lax"), std::string::npos) << cookie;
  EXPECT_NE(cookie.find("; Max-Age="), std::string::npos) << cookie;
  const std::string pair = cookie.substr(0, cookie.find(';'));
  const Answer who = get("/api/io", "Cookie: tema=scuro; " + pair + "\r\n");
  EXPECT_EQ(who.body, R"({"accesso":true})");
  EXPECT_EQ(who.header("Content-Type"), "application/json");
  EXPECT_EQ(who.header("Cache-Control"), "no-store");
}

TEST_F(ServerTest, thePairingKeysAreForThePageItselfOnly) {
  const PairingKeys keys{"eyJchiave", "0123"};
  const RunningServer server(folder_.path() / "page", PortRange{0, 0}, keys);
  const auto from = [&server](const std::string& site) {
    return ask(server.port(), "GET", "/api/abbinamento",
               site.empty() ? "" : "Sec-Fetch-Site: " + site + "\r\n");
  };
  for (const char* site : {"", "same-origin", "none"}) {
    const Answer answer = from(site);
    EXPECT_EQ(answer.status, 200) << site;
    EXPECT_EQ(answer.body, R"({"anonKey":"eyJchiave","channelKey":"0123"})") << site;
    EXPECT_EQ(answer.header("Content-Type"), "application/json") << site;
    EXPECT_EQ(answer.header("Cache-Control"), "no-store") << site;
    EXPECT_EQ(answer.header("Cross-Origin-Resource-Policy"), "same-origin") << site;
    EXPECT_EQ(answer.header("Access-Control-Allow-Origin"), "") << site;
  }
  for (const char* site : {"cross-site", "same-site"}) {
    const Answer answer = from(site);
    EXPECT_EQ(answer.status, 403) << site;
    EXPECT_EQ(answer.body.find("eyJ"), std::string::npos) << site;
  }
  EXPECT_EQ(ask(server.port(), "GET", "/api/abbinamento", "", "altrove.example").status, 421);
}

TEST_F(ServerTest, withoutACodeNobodyIsSignedIn) {
  for (const char* target :
       {"/api/mac/entra", "/api/mac/entra?codice=", "/api/mac/entra?altro=1", "/api/mac/entra?codice"}) {
    const Answer answer = get(target);
    EXPECT_EQ(answer.status, 303) << target;
    EXPECT_EQ(answer.header("Location"), "/") << target;
    EXPECT_EQ(answer.header("Set-Cookie"), "") << target;
  }
  for (const char* cookie : {"accesso=2", "accesso", "xaccesso=1", "accesso=11", "a=accesso=1"}) {
    EXPECT_EQ(get("/api/io", std::string("Cookie: ") + cookie + "\r\n").body, R"({"accesso":false})")
        << cookie;
  }
}

TEST_F(ServerTest, aForeignNameForThisMachineGetsNothing) {
  for (const char* host : {"localhost", "localhost:4717", "127.0.0.1:4717", "[::1]", "[::1]:4717"}) {
    EXPECT_EQ(ask(server_->port(), "GET", "/", "", host).status, 200) << host;
  }
  for (const char* host :
       {"evil.example", "localhost.evil.example", "127.0.0.1.evil.example:4717", "[::2]"}) {
    EXPECT_EQ(ask(server_->port(), "GET", "/api/io", "", host).status, 421) << host;
  }
}

TEST_F(ServerTest, updatesArePublishedWhereThereAreAny) {
  const std::string package("PK\0\xff", 4);
  folder_.write("nuovo/versione.json", R"({"build":2})");
  folder_.write("nuovo/Orvalle-2.zip", package);
  folder_.write("nuovo/.Orvalle-3.zip", package);
  const auto at = [](const RunningServer& server, const std::string& target,
                     const std::string& method = "GET") { return ask(server.port(), method, target); };
  const RunningServer server(folder_.path() / "page", PortRange{0, 0}, makeKeys(), std::chrono::seconds(60),
                             PageFolder(folder_.path() / "nuovo"));
  const Answer manifest = at(server, "/mac/versione.json?t=1");
  EXPECT_EQ(manifest.status, 200);
  EXPECT_EQ(manifest.body, R"({"build":2})");
  EXPECT_EQ(manifest.header("Content-Type"), "application/json");
  EXPECT_EQ(manifest.header("Cache-Control"), "no-store");
  EXPECT_EQ(at(server, "/mac/Orvalle-2.zip").body, package);
  EXPECT_EQ(at(server, "/mac/Orvalle-2.zip").header("Content-Type"), "application/zip");
  EXPECT_EQ(at(server, "/mac/Orvalle-2.zip", "HEAD").body, "");
  EXPECT_EQ(at(server, "/mac/Orvalle-2.zip", "HEAD").header("Content-Length"), "4");
  for (const char* target : {"/mac/", "/mac/manca.zip", "/mac/.Orvalle-3.zip", "/mac/../segreto.txt",
                             "/mac/%2e%2e/segreto.txt", "/mac/nuovo"})
    EXPECT_EQ(at(server, target).status, 404) << target;
  EXPECT_EQ(get("/mac/versione.json").status, 404);
}

TEST_F(ServerTest, rubbishOnTheWireDoesNotStopIt) {
  for (const std::string& bytes :
       {std::string("GET\r\n\r\n"), std::string("\0\0\0\0\r\n\r\n", 8), std::string("GET / HTTP/9.9\r\n\r\n"),
        "GET /" + std::string(200000, 'a') + " HTTP/1.1\r\nHost: localhost\r\nConnection: close\r\n\r\n"}) {
    Connection("127.0.0.1", server_->port()).exchange(bytes);
  }
  EXPECT_EQ(get("/").status, 200);
}

}  // namespace
}  // namespace orvalle::demo
