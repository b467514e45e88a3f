#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/unit/web/finestra_fixture.h"

namespace orvalle::web {
namespace {

using platform::HapticPattern;

const std::string kState =
    R"("running":true,"isBreak":false,"elapsedMin":5,"remainingMin":20,"plannedMin":25,)"
    R"("projectTitle":"Tesi","tasks":[{"id":"t1","title":"Uno","done":false}])";

class FinestraBridgeTest : public FinestraFixture {
 protected:
  FinestraBridgeTest() {
    finestra->onState = [this](const link::Snapshot& snapshot) { pushed.push_back(snapshot); };
    showPage();
  }
  void post(const std::string& json) { window().post(json); }
  std::string repeated(const std::string& text, int times) {
    std::string all;
    for (int i = 0; i < times; ++i) all += text;
    return all;
  }
  void expectNothingDone(const std::string& what) {
    EXPECT_TRUE(pushed.empty()) << what;
    EXPECT_TRUE(system.haptics.performed.empty()) << what;
    EXPECT_TRUE(system.workspace.opened.empty()) << what;
    EXPECT_TRUE(window().scripts.empty()) << what;
  }

  std::vector<link::Snapshot> pushed;
};

TEST_F(FinestraBridgeTest, takesAMessageWithoutATypeAsThePagesState) {
  post("{" + kState + "}");
  ASSERT_EQ(pushed.size(), 1u);
  EXPECT_EQ(pushed[0], (link::Snapshot{true, false, 5, 20, 25, "Tesi", {}, {{"t1", "Uno", false}}}));
  EXPECT_TRUE(window().scripts.empty());
}

TEST_F(FinestraBridgeTest, takesAMessageWhoseTypeIsNoTextAsThePagesState) {
  for (const std::string tipo : {"5", "null", "true", "[\"tattile\"]", "{}"}) {
    pushed.clear();
    post("{\"tipo\":" + tipo + "," + kState + "}");
    EXPECT_EQ(pushed.size(), 1u) << tipo;
  }
  EXPECT_TRUE(system.haptics.performed.empty());
}

TEST_F(FinestraBridgeTest, neverTakesAMessageWithATypeAsState) {
  post("{\"tipo\":\"\"," + kState + "}");
  post("{\"tipo\":\"sconosciuto\"," + kState + "}");
  post("{\"tipo\":\"sconosciuto\",\"id\":4," + kState + "}");
  expectNothingDone("a type");
}

TEST_F(FinestraBridgeTest, dropsAStateThatDoesNotDecode) {
  for (const std::string body :
       {"{}", "{\"running\":true}", "{\"id\":3}", "{\"tipo\":5}", "{\"Tipo\":\"tattile\"}",
        "{\"running\":null,\"isBreak\":false,\"elapsedMin\":5,\"remainingMin\":20,\"plannedMin\":25,"
        "\"projectTitle\":\"\",\"tasks\":[]}",
        "{\"running\":true,\"isBreak\":false,\"elapsedMin\":5,\"remainingMin\":1e400,\"plannedMin\":25,"
        "\"projectTitle\":\"\",\"tasks\":[]}"}) {
    post(body);
    expectNothingDone(body);
  }
}

TEST_F(FinestraBridgeTest, takesAStateWithNobodyListening) {
  finestra->onState = nullptr;
  post("{" + kState + "}");
  expectNothingDone("a state");
}

TEST_F(FinestraBridgeTest, ignoresBodiesOfEveryOtherShape) {
  for (const std::string body : {"",
                                 " ",
                                 "null",
                                 "true",
                                 "5",
                                 "\"tattile\"",
                                 "\"\"",
                                 "[]",
                                 "[{\"tipo\":\"tattile\"}]",
                                 "[\"tipo\",\"tattile\"]",
                                 "{",
                                 "{\"tipo\":\"tattile\"",
                                 "{\"tipo\":\"tattile\",}",
                                 "{\"tipo\":\"tattile\"}}",
                                 "{\"tipo\":\"tattile\"} x",
                                 "{'tipo':'tattile'}",
                                 "{tipo:\"tattile\"}",
                                 "{\"tipo\":\"tattile\",\"che\":\"\\ud800\"}",
                                 "{\"tipo\":\"tattile\",\"che\":\"\xFF\"}",
                                 "{\"tipo\":\"tattile\",\"n\":NaN}",
                                 "{\"tipo\":\"tattile\",\"n\":undefined}"}) {
    post(body);
    expectNothingDone(body);
  }
  post(repeated("[", 100'000));
  post(repeated("{\"a\":", 100'000));
  post(repeated("{\"tipo\":", 513) + "1" + repeated("}", 513));
  expectNothingDone("deep nesting");
}

TEST_F(FinestraBridgeTest, ignoresMessagesToOtherHandlers) {
  for (const std::string name : {"", "Orvalle", "ORVALLE", "orvalle ", " orvalle", "orvalle2", "other"}) {
    window().delegate->didReceiveMessage(name, "{\"tipo\":\"tattile\"}");
    window().delegate->didReceiveMessage(name, "{" + kState + "}");
    expectNothingDone(name);
  }
  window().delegate->didReceiveMessage("orvalle", "{\"tipo\":\"tattile\"}");
  EXPECT_EQ(system.haptics.performed.size(), 1u);
}

TEST_F(FinestraBridgeTest, ignoresRequestsItDoesNotKnow) {
  for (const std::string tipo : {"Tattile", "TATTILE", "tattile ", " tattile", "tattil", "tattile\\u0000",
                                 "tattile2", "Apri-fuori", "apri_fuori", "", "vai", "stop"}) {
    post("{\"tipo\":\"" + tipo + "\",\"id\":1,\"url\":\"https://app.example/\"}");
    expectNothingDone(tipo);
  }
}

TEST_F(FinestraBridgeTest, playsAlignmentForATouchAndLevelChangeForEverythingElse) {
  struct Row {
    std::string body;
    HapticPattern pattern;
  };
  for (const auto& row : {
           Row{R"({"tipo":"tattile","che":"tocco"})", HapticPattern::Alignment},
           Row{R"({"tipo":"tattile","che":"tocco","id":3})", HapticPattern::Alignment},
           Row{R"({"tipo":"tattile"})", HapticPattern::LevelChange},
           Row{R"({"tipo":"tattile","id":3})", HapticPattern::LevelChange},
           Row{R"({"tipo":"tattile","che":""})", HapticPattern::LevelChange},
           Row{R"({"tipo":"tattile","che":"Tocco"})", HapticPattern::LevelChange},
           Row{R"({"tipo":"tattile","che":"tocco "})", HapticPattern::LevelChange},
           Row{R"({"tipo":"tattile","che":"altro"})", HapticPattern::LevelChange},
           Row{R"({"tipo":"tattile","che":5})", HapticPattern::LevelChange},
           Row{R"({"tipo":"tattile","che":["tocco"]})", HapticPattern::LevelChange},
           Row{R"({"tipo":"tattile","che":null})", HapticPattern::LevelChange},
       }) {
    system.haptics.performed.clear();
    post(row.body);
    EXPECT_EQ(system.haptics.performed, std::vector<HapticPattern>{row.pattern}) << row.body;
  }
  // No request for a feeling is answered.
  EXPECT_TRUE(window().scripts.empty());
}

TEST_F(FinestraBridgeTest, opensPagesOfTheApplicationOutside) {
  for (const std::string url :
       {"https://app.example/", "https://app.example", "https://app.example/guida?x=1&y=%20#z",
        "https://app.example:8443/x", "https://user@app.example/"}) {
    system.workspace.opened.clear();
    post("{\"tipo\":\"apri-fuori\",\"url\":\"" + url + "\"}");
    EXPECT_EQ(system.workspace.opened, Texts{url});
  }
  EXPECT_EQ(window().loads.size(), 1u);
  EXPECT_TRUE(window().scripts.empty());
}

TEST_F(FinestraBridgeTest, opensNothingElseOutside) {
  for (const std::string url : {
           "\"http://app.example/\"",
           "\"HTTPS://app.example/\"",
           "\"ftp://app.example/\"",
           "\"//app.example/\"",
           "\"/guida\"",
           "\"app.example\"",
           "\"https://evil.example/\"",
           "\"https://App.Example/\"",
           "\"https://app.example.evil.example/\"",
           "\"https://evilapp.example/\"",
           "\"https://app.example@evil.example/\"",
           "\"https://app.example:x@evil.example/\"",
           "\"https://x@app.example@evil.example/\"",
           "\"https://app.example%2F@evil.example/\"",
           "\"https://app.example%00.evil.example/\"",
           "\"https://app.example\\\\@evil.example/\"",
           "\"https://evil.example/https://app.example/\"",
           "\"https://evil.example#@app.example/\"",
           "\"https://evil.example?@app.example/\"",
           "\"https://app.example/a b\"",
           "\" https://app.example/\"",
           "\"https://app.example/\\n\"",
           "\"https://app.example/\\u0000\"",
           "\"https://app.example:port/\"",
           "\"https:app.example\"",
           "\"https:///app.example\"",
           "\"mailto:a@app.example\"",
           "\"javascript:alert(1)\"",
           "\"file:///etc/passwd\"",
           "\"\"",
           "\" \"",
           "5",
           "null",
           "true",
           "[\"https://app.example/\"]",
           "{\"url\":\"https://app.example/\"}",
       }) {
    post("{\"tipo\":\"apri-fuori\",\"url\":" + url + "}");
    expectNothingDone(url);
  }
  post(R"({"tipo":"apri-fuori"})");
  post(R"({"tipo":"apri-fuori","URL":"https://app.example/"})");
  expectNothingDone("no address");
}

TEST_F(FinestraBridgeTest, opensOutsideByTheAddressAsItIsNow) {
  window().delegate->didCommit("https://app.example/");
  setHome("http://localhost:4717/");
  // The page shown is still one that we loaded.
  post(R"({"tipo":"apri-fuori","url":"https://app.example/"})");
  expectNothingDone("the host of before");
  post(R"({"tipo":"apri-fuori","url":"https://localhost/"})");
  EXPECT_EQ(system.workspace.opened, Texts{"https://localhost/"});
}

TEST_F(FinestraBridgeTest, countsTwoAbsentHostsAsEqual) {
  setHome("casa");
  post(R"({"tipo":"apri-fuori","url":"https:senza-host"})");
  EXPECT_EQ(system.workspace.opened, Texts{"https:senza-host"});
  system.workspace.opened.clear();
  post(R"({"tipo":"apri-fuori","url":"https://app.example/"})");
  expectNothingDone("a host where the address has none");
}

TEST_F(FinestraBridgeTest, servesNobodyBeforeThePageIsThere) {
  platform::memory::MemoryPlatform other;
  other.environment.variables["ORVALLE_APP_URL"] = "https://app.example/";
  const auto otherPlatform = other.platform();
  const link::WebAddress otherAddress(other.environment, other.defaults, "https://default.example/");
  Finestra early(otherPlatform, otherAddress, services);
  early.mostra();
  other.webWindows.made.at(0)->post(R"({"tipo":"tattile"})");
  EXPECT_TRUE(other.haptics.performed.empty());
  other.webWindows.made.at(0)->commit();
  other.webWindows.made.at(0)->post(R"({"tipo":"tattile"})");
  EXPECT_EQ(other.haptics.performed.size(), 1u);
}

TEST_F(FinestraBridgeTest, servesNoForeignPageThatAScriptWentTo) {
  window().navigateByScript("https://evil.example/");
  post("{" + kState + "}");
  post(R"({"tipo":"tattile"})");
  post(R"({"tipo":"apri-fuori","url":"https://app.example/"})");
  expectNothingDone("a foreign page");

  window().navigateByScript("https://app.example/sprint");
  post("{" + kState + "}");
  post(R"({"tipo":"tattile"})");
  EXPECT_EQ(pushed.size(), 1u);
  EXPECT_EQ(system.haptics.performed.size(), 1u);
}

TEST_F(FinestraBridgeTest, servesPagesThatTheApplicationLoadedAndWhereTheServerSentThem) {
  finestra->vai(base::Url::parse("https://other.example/").value());
  window().commit();
  post(R"({"tipo":"tattile"})");
  EXPECT_EQ(system.haptics.performed.size(), 1u);
  finestra->vai(base::Url::parse("https://app.example/entra").value());
  window().commit("https://login.example/");
  post(R"({"tipo":"tattile"})");
  EXPECT_EQ(system.haptics.performed.size(), 2u);
}

TEST_F(FinestraBridgeTest, doesNotServeTheOfflinePage) {
  window().fail("niente rete");
  post("{" + kState + "}");
  post(R"({"tipo":"tattile"})");
  expectNothingDone("the offline page");
}

TEST_F(FinestraBridgeTest, takesStatesOfEverySize) {
  const std::string megabyte(1'000'000, 'x');
  std::string tasks;
  for (int i = 0; i < 10'000; ++i) tasks += R"({"id":"","title":"","done":true},)";
  post(R"({"running":true,"isBreak":false,"elapsedMin":1e300,"remainingMin":-1e300,"plannedMin":1e-300,)"
       R"("projectTitle":"\u0000\u202E)" +
       megabyte + R"(","tasks":[)" + tasks + R"({"id":"last","title":")" + megabyte + R"(","done":false}]})");
  ASSERT_EQ(pushed.size(), 1u);
  EXPECT_EQ(pushed[0].projectTitle.size(), megabyte.size() + 4);
  EXPECT_EQ(pushed[0].tasks.size(), 10'001u);
  EXPECT_EQ(pushed[0].tasks.back().title, megabyte);
}

}  // namespace
}  // namespace orvalle::web
