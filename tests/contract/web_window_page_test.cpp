#include <gtest/gtest.h>
#include <webkit2/webkit2.h>

#include <algorithm>

#include "tests/contract/web_window_rigs.h"

/// The native window's page: what reaches us, what does not, and what becomes of loads that go wrong.
namespace orvalle::contract {
namespace {

using std::chrono::milliseconds;
using Events = std::vector<std::string>;

class WebWindowPage : public ::testing::Test {
 protected:
  Events& events() { return rig.owner.events; }

  void load(const std::string& path) {
    window->load(rig.server.url(path));
    ASSERT_TRUE(rig.wait([&] { return rig.owner.saw("commit " + rig.server.url(path)); }));
    // Whatever the page does by itself at first.
    runFor(milliseconds(200));
    events().clear();
  }

  /// The value of an expression in the page, as JSON.
  std::string valueOf(const std::string& expression) {
    events().clear();
    window->evaluate("window.webkit.messageHandlers.orvalle.postMessage([" + expression + "])");
    const std::string beginning = "message orvalle [";
    rig.wait([&] { return !events().empty() && events().back().starts_with(beginning); });
    if (events().empty() || !events().back().starts_with(beginning)) return "no answer";
    const auto& event = events().back();
    return event.substr(beginning.size(), event.size() - 1 - beginning.size());
  }

  WebKitWebView* view() { return WEBKIT_WEB_VIEW(rig.find(WEBKIT_TYPE_WEB_VIEW)); }

  NativeWebWindowRig rig;
  std::unique_ptr<platform::WebWindow> window = rig.make();
};

TEST_F(WebWindowPage, loadThatALaterOneReplacesIsNotToldOf) {
  window->load(rig.server.url("/mai"));
  ASSERT_TRUE(rig.wait([&] { return rig.owner.saw("start " + rig.server.url("/mai")); }));
  window->load(rig.goodUrl());
  ASSERT_TRUE(rig.wait([&] { return rig.owner.saw("commit " + rig.goodUrl()); }));
  runFor(milliseconds(200));
  EXPECT_FALSE(rig.owner.saw("fail"));
}

TEST_F(WebWindowPage, loadThatAGivenDocumentReplacesIsNotToldOf) {
  window->load(rig.server.url("/mai"));
  ASSERT_TRUE(rig.wait([&] { return rig.owner.saw("start " + rig.server.url("/mai")); }));
  window->loadHtml("<p>Ecco</p>");
  ASSERT_TRUE(rig.wait([&] { return rig.owner.saw("commit about:blank"); }));
  runFor(milliseconds(200));
  EXPECT_FALSE(rig.owner.saw("fail"));
}

TEST_F(WebWindowPage, loadThatIsStoppedIsToldOf) {
  window->load(rig.server.url("/mai"));
  ASSERT_TRUE(rig.wait([&] { return rig.owner.saw("start " + rig.server.url("/mai")); }));
  webkit_web_view_stop_loading(view());
  EXPECT_TRUE(rig.wait([&] { return rig.owner.saw("fail"); }));
}

TEST_F(WebWindowPage, serverThatNeverAnswersIsGivenUpOnce) {
  window->load(rig.server.url("/mai"));
  runFor(platform::kLoadTimeout - std::chrono::seconds(5));
  EXPECT_FALSE(rig.owner.saw("fail"));
  ASSERT_TRUE(rig.wait([&] { return rig.owner.saw("fail"); }));
  EXPECT_FALSE(window->hasPage());
  runFor(milliseconds(500));
  EXPECT_EQ(std::count_if(events().begin(), events().end(),
                          [](const std::string& event) { return event.starts_with("fail"); }),
            1);
}

TEST_F(WebWindowPage, linkThatTheOwnerRefusesLeavesThePageAlone) {
  load("/");
  rig.owner.refused.insert(rig.otherUrl());
  window->evaluate("const a = document.createElement('a'); a.href = '/altra'; a.click()");
  ASSERT_TRUE(rig.wait([&] { return rig.owner.actions.back().url == rig.otherUrl(); }));
  EXPECT_TRUE(rig.owner.actions.back().linkActivated);
  runFor(milliseconds(300));
  EXPECT_EQ(events(), Events());
  EXPECT_TRUE(window->hasPage());
}

TEST_F(WebWindowPage, linkForANewWindowIsAskedAboutAndOpensNone) {
  load("/");
  rig.owner.actions.clear();
  window->evaluate(
      "const a = document.createElement('a'); a.href = '/altra'; a.target = '_blank'; a.click()");
  ASSERT_TRUE(rig.wait([&] { return !rig.owner.actions.empty(); }));
  EXPECT_EQ(rig.owner.actions[0].url, rig.otherUrl());
  EXPECT_TRUE(rig.owner.actions[0].linkActivated);
  runFor(milliseconds(300));
  EXPECT_EQ(events(), Events());
}

TEST_F(WebWindowPage, linkToAFileThatCannotBeShownLeadsNowhere) {
  rig.server.pages["/archivio"] = {"PK", "application/zip"};
  load("/");
  window->evaluate("location.href = '/archivio'");
  ASSERT_TRUE(rig.wait([&] { return rig.owner.saw("start " + rig.server.url("/archivio")); }));
  runFor(milliseconds(500));
  EXPECT_FALSE(rig.owner.saw("fail"));
  EXPECT_TRUE(window->hasPage());
}

TEST_F(WebWindowPage, addressThatTheViewKeepsAwayFromIsAFailure) {
  load("/");
  window->load("http://127.0.0.1:9/");
  EXPECT_TRUE(rig.wait([&] { return rig.owner.saw("fail"); }));
  EXPECT_FALSE(window->hasPage());
  load("/altra");
  EXPECT_TRUE(window->hasPage());
}

TEST_F(WebWindowPage, endOfTheWebProcessIsToldOnceAndALoadRecovers) {
  load("/");
  webkit_web_view_terminate_web_process(view());
  ASSERT_TRUE(rig.wait([&] { return rig.owner.saw("fail"); }));
  EXPECT_FALSE(window->hasPage());
  runFor(milliseconds(300));
  EXPECT_EQ(events(), Events{"fail"});
  load("/altra");
  EXPECT_TRUE(window->hasPage());
}

TEST_F(WebWindowPage, endOfTheWebProcessUnderAGivenDocumentIsNotTold) {
  window->loadHtml("<p>Ecco</p>");
  ASSERT_TRUE(rig.wait([&] { return rig.owner.saw("commit about:blank"); }));
  webkit_web_view_terminate_web_process(view());
  runFor(milliseconds(300));
  EXPECT_FALSE(rig.owner.saw("fail"));
}

TEST_F(WebWindowPage, firstScriptOfThePageFindsBridgeAndStartScript) {
  rig.server.pages["/prima"] = {
      "<!doctype html><script>webkit.messageHandlers.orvalle.postMessage("
      "document.documentElement.style.getPropertyValue('--prova'))</script>"};
  window->load(rig.server.url("/prima"));
  EXPECT_TRUE(rig.wait([&] { return rig.owner.saw(R"(message orvalle "prima")"); }));
}

TEST_F(WebWindowPage, framesFindNeither) {
  const std::string inside =
      "<!doctype html><script>parent.postMessage([typeof webkit, "
      "document.documentElement.style.getPropertyValue('--prova')], '*')</script>";
  rig.server.pages["/dentro"] = {inside};
  for (const auto* host : {"127.0.0.1", "localhost"}) {
    rig.server.pages["/fuori"] = {
        "<!doctype html><script>addEventListener('message', event => "
        "webkit.messageHandlers.orvalle.postMessage(event.data))</script><iframe src='" +
        rig.server.url("/dentro", host) + "'></iframe>"};
    window->load(rig.server.url("/fuori"));
    EXPECT_TRUE(rig.wait([&] { return rig.owner.saw(R"(message orvalle ["undefined",""])"); })) << host;
    events().clear();
  }
}

TEST_F(WebWindowPage, whatJsonCannotExpressIsDropped) {
  load("/");
  const std::string post = "window.webkit.messageHandlers.orvalle.postMessage";
  window->evaluate(post + "(undefined)");
  window->evaluate(post + "(() => 1)");
  window->evaluate(post + "(10n)");
  window->evaluate("const ring = {}; ring.ring = ring; " + post + "(ring)");
  window->evaluate(post + "('fine')");
  ASSERT_TRUE(rig.wait([&] { return rig.owner.saw(R"(message orvalle "fine")"); }));
  EXPECT_EQ(events().size(), 1U);
}

TEST_F(WebWindowPage, halfACharacterDoesNotSpoilTheRestOfAMessage) {
  load("/");
  window->evaluate(R"(window.webkit.messageHandlers.orvalle.postMessage(
      ['tagliato \ud83d', '\ude00 \ud83d\ude00', '\\ud83d \u0001', { '\udbff': 1 }]))");
  ASSERT_TRUE(rig.wait([&] { return !events().empty(); }));
  EXPECT_EQ(
      events()[0],
      "message orvalle [\"tagliato \uFFFD\",\"\uFFFD \U0001F600\",\"\\\\ud83d \\u0001\",{\"\uFFFD\":1}]");
}

TEST_F(WebWindowPage, longMessageLeavesTurnsToOthersAndThoseBehindItTheirPlace) {
  load("/");
  const std::string post = "window.webkit.messageHandlers.orvalle.postMessage";
  // Somebody who wants a turn of the main loop every millisecond.
  struct {
    const Events& events;
    int betweenTheFirstTwo = 0;
  } other{events()};
  const guint turns = g_timeout_add_full(
      G_PRIORITY_DEFAULT, 1,
      [](gpointer data) -> gboolean {
        auto* self = static_cast<decltype(other)*>(data);
        if (self->events.size() != 1) return G_SOURCE_CONTINUE;
        // Busy at first, so that all the pieces lie there.
        if (++self->betweenTheFirstTwo == 1) g_usleep(1'000'000);
        return G_SOURCE_CONTINUE;
      },
      &other, nullptr);
  // Forty pieces.
  window->evaluate(post + "('prima');" + post + "('\u20ac'.repeat(10 * 1024 * 1024));" + post + "('dopo')");
  const bool arrived = rig.wait([&] { return rig.owner.saw(R"(message orvalle "dopo")"); });
  g_source_remove(turns);
  ASSERT_TRUE(arrived);
  ASSERT_EQ(events().size(), 3U);
  EXPECT_EQ(events()[0], R"(message orvalle "prima")");
  EXPECT_EQ(events()[1].size(), std::string(R"(message orvalle "")").size() + 3 * 10 * 1024 * 1024);
  EXPECT_EQ(events()[2], R"(message orvalle "dopo")");
  EXPECT_GE(other.betweenTheFirstTwo, 20);
}

TEST_F(WebWindowPage, loadsOfFramesDoNotPassForOurs) {
  for (int round = 0; round < 10; ++round) {
    load("/");
    window->evaluate(R"(setInterval(() => {
      const frame = document.createElement('iframe');
      frame.src = '/cornice' + Math.random();
      document.body.append(frame);
    }, 0))");
    runFor(milliseconds(20 + 7 * round));
    window->load(rig.goodUrl());
    ASSERT_TRUE(rig.wait([&] { return rig.owner.saw("commit " + rig.goodUrl()); })) << round;
    EXPECT_TRUE(rig.owner.saw("start " + rig.goodUrl())) << round;
  }
}

TEST_F(WebWindowPage, messagesOfAnAbsurdLengthAreDropped) {
  load("/");
  const std::string post = "window.webkit.messageHandlers.orvalle.postMessage";
  window->evaluate(post + "('x'.repeat(160 * 1024 * 1024 - 1))");
  window->evaluate(post + "('x'.repeat(160 * 1024 * 1024 - 2))");
  const auto arrived = [&] {
    return std::find_if(events().begin(), events().end(),
                        [](const std::string& event) { return event.starts_with("message"); });
  };
  ASSERT_TRUE(rig.wait([&] { return arrived() != events().end(); }));
  EXPECT_EQ(arrived()->size(), std::string("message orvalle ").size() + 160 * 1024 * 1024);
  EXPECT_EQ(valueOf("'fine'"), R"("fine")");
}

TEST_F(WebWindowPage, alertHoldsUpTheScriptOnly) {
  load("/");
  window->evaluate("window.dopo = false; alert('Ecco'); window.dopo = true");
  ASSERT_TRUE(rig.wait([&] { return rig.owner.saw("alert Ecco"); }));
  runFor(milliseconds(100));
  rig.owner.alertDone();
  EXPECT_EQ(valueOf("window.dopo"), "true");
}

TEST_F(WebWindowPage, confirmGivesTheAnswer) {
  load("/");
  for (const bool agreed : {true, false}) {
    events().clear();
    window->evaluate("window.esito = confirm('Davvero?')");
    ASSERT_TRUE(rig.wait([&] { return rig.owner.saw("confirm Davvero?"); }));
    rig.owner.confirmDone(agreed);
    EXPECT_EQ(valueOf("window.esito"), agreed ? "true" : "false");
  }
}

TEST_F(WebWindowPage, answerMayComeAfterTheWindowIsGone) {
  load("/");
  window->evaluate("alert('Ecco')");
  ASSERT_TRUE(rig.wait([&] { return rig.owner.saw("alert Ecco"); }));
  window.reset();
  rig.owner.alertDone();
}

TEST_F(WebWindowPage, promptIsAnsweredWithNothing) {
  load("/");
  EXPECT_EQ(valueOf("prompt('Nome?', 'nessuno')"), "null");
}

TEST_F(WebWindowPage, permissionsAreDenied) {
  load("/");
  window->evaluate(
      "Notification.requestPermission().then(answer => "
      "webkit.messageHandlers.orvalle.postMessage(answer))");
  EXPECT_TRUE(rig.wait([&] { return rig.owner.saw(R"(message orvalle "denied")"); }));
}

TEST_F(WebWindowPage, filesAreChosenByTheOwner) {
  rig.server.pages["/file"] = {"<!doctype html><input type=file id=uno><input type=file id=tanti multiple>"};
  load("/file");
  window->evaluate("document.getElementById('uno').click()");
  ASSERT_TRUE(rig.wait([&] { return rig.owner.saw("choose one"); }));
  rig.owner.chooseDone(std::nullopt);
  window->evaluate("document.getElementById('tanti').click()");
  ASSERT_TRUE(rig.wait([&] { return rig.owner.saw("choose several"); }));
  rig.owner.chooseDone(std::vector<std::string>{"/etc/hostname", "/etc/passwd"});
  runFor(milliseconds(200));
  EXPECT_EQ(valueOf("document.getElementById('uno').files.length, "
                    "...[...document.getElementById('tanti').files].map(file => file.name)"),
            R"(0,"hostname","passwd")");
}

}  // namespace
}  // namespace orvalle::contract
