#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/json.h"
#include "base/liveness.h"
#include "base/subscription.h"
#include "link/snapshot.h"
#include "link/web_address.h"
#include "platform/platform.h"
#include "web/inbox.h"
#include "web/page_trust.h"
#include "web/request.h"
#include "web/striscia_trascinabile.h"

namespace orvalle::web {

/// The main window: hosts the web application, keeps its links inside its own host, stands in with an offline
/// page when it cannot be reached, and is the desktop's end of the bridge to its script. Window and page are
/// made on first use and live as long as this; closing the window only hides it.
class Finestra : private platform::WebWindowDelegate {
 public:
  /// What is passed must outlive this, and so must what `services` refers to.
  Finestra(const platform::Platform& platform, const link::WebAddress& address, const Services& services);
  Finestra(const Finestra&) = delete;
  Finestra& operator=(const Finestra&) = delete;
  ~Finestra() override;

  /// Called when the page pushes its session's state.
  std::function<void(const link::Snapshot&)> onState;

  /// The web application's address.
  base::Url indirizzo() const { return address_.indirizzo(); }
  /// Brings the window to the front, program and all, and tells the page.
  void mostra();
  /// Loads `url` in the window and brings it to the front.
  void vai(const base::Url& url);
  /// Gives the window this title; nothing before the window is built.
  void intitola(const std::string& title);
  /// Tells a loaded page that it has regained the focus; nothing without one. Never reloads.
  void sveglia();
  /// Gives the page a command with an optional argument. False, with nothing done, when there is no page to
  /// take it.
  bool comanda(const std::string& command, const std::optional<std::string>& id);
  /// Gives the page a command, and to one that is still loading as soon as it can take it. Nothing while the
  /// offline page is shown: hours later nobody would expect it.
  void consegna(const std::string& command, const std::optional<std::string>& id);
  /// Answers the page's request `id` with `text`; nothing without an id or before the window is built.
  void rispondi(std::optional<std::int64_t> id, const std::string& text);

 private:
  void costruisci();
  void load(const base::Url& url);
  void bringToFront();
  void waitForPage(std::chrono::seconds patience);
  void askWhetherToWait();
  void mostraErrore(const std::string& description);
  /// The page has loaded, or has had its time for that: gives it what waited.
  void deliver();
  void handleMessage(const base::Json& body, std::function<void()> next);
  void pushSnapshot(const base::Json& body);

  platform::NavigationPolicy decidePolicy(const platform::NavigationAction& action) override;
  void didStart(const std::string& url) override;
  void didCommit(const std::string& url) override;
  void didFinish() override;
  void didFail(const std::string& description) override;
  void didStopAnswering() override;
  void didAnswerAgain() override;
  void didReceiveMessage(const std::string& name, std::string json) override;
  void runAlert(const std::string& message, std::function<void()> done) override;
  void runConfirm(const std::string& message, std::function<void(bool)> done) override;
  void chooseFiles(bool multiple, std::function<void(std::optional<std::vector<std::string>>)> done) override;

  const platform::Platform& platform_;
  const link::WebAddress& address_;
  const Services& services_;
  PageTrust trust_;
  std::unique_ptr<platform::WebWindow> window_;
  std::optional<StrisciaTrascinabile> strip_;
  Inbox inbox_;
  /// Runs while the page does not answer; the question that comes then.
  base::Subscription patience_;
  base::Subscription question_;
  /// Runs while the page's last parts load.
  base::Subscription loading_;
  /// The page can take commands.
  bool ready_ = false;
  /// The last load failed.
  bool failed_ = false;
  /// The commands that wait for the page: word and argument.
  std::vector<std::pair<std::string, std::optional<std::string>>> waiting_;
  base::Liveness liveness_;
};

}  // namespace orvalle::web
