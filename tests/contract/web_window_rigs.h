#pragma once

#include <algorithm>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "platform/memory/memory_desktop.h"
#include "tests/contract/loop.h"
#include "tests/contract/page_server.h"

namespace orvalle::contract {

inline platform::WebWindowSpec windowSpec() {
  platform::WebWindowSpec spec;
  spec.title = "Orvalle";
  spec.contentSize = {1180, 820};
  spec.minimumSize = {720, 560};
  spec.stripHeight = 38;
  spec.messageHandler = "orvalle";
  spec.documentStartScript = "document.documentElement.style.setProperty('--prova', 'prima');";
  return spec;
}

/// Writes down what it is told, one line for each event.
class WindowOwner : public platform::WebWindowDelegate {
 public:
  platform::NavigationPolicy decidePolicy(const platform::NavigationAction& action) override {
    actions.push_back(action);
    return action.url && refused.contains(*action.url) ? platform::NavigationPolicy::Cancel
                                                       : platform::NavigationPolicy::Allow;
  }
  void didStart(const std::string& url) override { tell("start " + url); }
  void didCommit(const std::string& url) override { tell("commit " + url); }
  void didFinish() override { ++finished; }
  void didStopAnswering() override { tell("silent"); }
  void didAnswerAgain() override { tell("answers"); }
  void didFail(const std::string& description) override {
    tell("fail");
    descriptions.push_back(description);
  }
  void didReceiveMessage(const std::string& name, std::string json) override {
    tell("message " + name + " " + json);
  }
  void runAlert(const std::string& message, std::function<void()> done) override {
    tell("alert " + message);
    alertDone = std::move(done);
  }
  void runConfirm(const std::string& message, std::function<void(bool)> done) override {
    tell("confirm " + message);
    confirmDone = std::move(done);
  }
  void chooseFiles(bool multiple,
                   std::function<void(std::optional<std::vector<std::string>>)> done) override {
    tell(multiple ? "choose several" : "choose one");
    chooseDone = std::move(done);
  }

  bool saw(const std::string& event) const { return times(event) > 0; }
  long times(const std::string& event) const { return std::count(events.begin(), events.end(), event); }

  std::set<std::string> refused;
  std::vector<platform::NavigationAction> actions;
  /// For tests to look at and to clear.
  std::vector<std::string> events;
  /// Everything.
  std::vector<std::string> history;
  std::vector<std::string> descriptions;
  int finished = 0;
  std::function<void()> alertDone;
  std::function<void(bool)> confirmDone;
  std::function<void(std::optional<std::vector<std::string>>)> chooseDone;

 private:
  void tell(const std::string& event) {
    events.push_back(event);
    history.push_back(event);
  }
};

/// The twin, with page, network and user played by the test.
class MemoryWebWindowRig {
 public:
  std::unique_ptr<platform::WebWindow> make() { return windows_.make(windowSpec(), owner); }
  std::string goodUrl() const { return "http://casa.example/"; }
  std::string otherUrl() const { return "http://casa.example/altra"; }
  std::string deadUrl() const { return "http://nessuno.example/"; }
  void letLoadSucceed() { state().commit(); }
  void letPageLoad() { state().finish(); }
  void letLoadFail() { state().fail("nessuna risposta"); }
  void letHtmlShow() {}
  void navigateByScript(platform::WebWindow&, const std::string& url) { state().navigateByScript(url); }
  void post(platform::WebWindow&, const std::string& json) { state().post(json); }
  void press(int times) {
    for (int count = 1; count <= times; ++count) state().pressStrip(count);
  }

  WindowOwner owner;

 private:
  platform::memory::WebWindowState& state() { return *windows_.made.back(); }
  platform::memory::Journal journal_;
  platform::memory::MemoryWebWindows windows_{journal_};
};

/// A real page of a server on this machine, for whatever native window shows it.
class RealPageRig {
 public:
  RealPageRig() {
    server.pages["/"] = {"<!doctype html><p>Casa"};
    server.pages["/altra"] = {"<!doctype html><p>Altra"};
  }

  std::string goodUrl() const { return server.url("/"); }
  std::string otherUrl() const { return server.url("/altra"); }
  /// Nobody listens there.
  std::string deadUrl() const { return "http://127.0.0.1:47999/"; }
  void letLoadSucceed() { letNext("commit "); }
  void letPageLoad() {
    wait([this] { return owner.finished > 0; });
  }
  void letLoadFail() {
    letNext("fail");
    // Whatever else may be told of it.
    runFor(std::chrono::milliseconds(200));
  }
  void letHtmlShow() { letNext("commit about:blank"); }
  void navigateByScript(platform::WebWindow& made, const std::string& url) {
    made.evaluate("location.href = '" + url + "'");
    letNext("commit " + url);
  }
  void post(platform::WebWindow& made, const std::string& json) {
    made.evaluate("window.webkit.messageHandlers.orvalle.postMessage(" + json + ")");
    letNext("message ");
  }

  /// Waits for an event that begins like this, after the last one waited for.
  void letNext(const std::string& beginning) {
    auto& history = owner.history;
    wait([&] {
      while (waitedFor_ < history.size()) {
        if (history[waitedFor_++].starts_with(beginning)) return true;
      }
      return false;
    });
  }

  /// A page under a sanitizer on a busy machine takes its time.
  template <typename Done>
  static bool wait(Done done) {
    return runUntil(done, std::chrono::minutes(1));
  }

  WindowOwner owner;
  PageServer server;

 private:
  std::size_t waitedFor_ = 0;
};

}  // namespace orvalle::contract

#ifdef __APPLE__
#import "tests/contract/web_window_rig_macos.h"
#else
#include "tests/contract/web_window_rig_linux.h"
#endif
