#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/point.h"
#include "platform/title_strip.h"

namespace orvalle::platform {

/// A navigation that the page or the user has started.
struct NavigationAction {
  /// Where to; absent when the request has no address.
  std::optional<std::string> url;
  /// A link was clicked, by the user or by script; false for typed, reload, form, back, forward, script and
  /// others.
  bool linkActivated = false;
};

enum class NavigationPolicy { Allow, Cancel };

/// What a document without an address is said to be at.
inline constexpr char kBlankAddress[] = "about:blank";

/// Descriptions of failures for which systems have no text of their own.
inline constexpr char kAddressBlockedText[] = "L'indirizzo non si può aprire.";
inline constexpr char kPageProcessEndedText[] = "Il processo della pagina si è chiuso.";

/// How long a load may go without an answer.
inline constexpr std::chrono::seconds kLoadTimeout{60};

/// How long a page's process may take to answer before it is told of.
inline constexpr std::chrono::seconds kAnswerNotice{3};

/// What a web window tells and asks its owner, on the main loop. Every `done` must be called exactly once,
/// also when the answer comes late; the page's script waits for it while everything else goes on.
class WebWindowDelegate {
 public:
  virtual ~WebWindowDelegate() = default;

  virtual NavigationPolicy decidePolicy(const NavigationAction& action) = 0;
  /// The main frame began to ask for `url`, redirects aside; not for `loadHtml`.
  virtual void didStart(const std::string& url) = 0;
  /// The main frame now shows the document at `url` (`kBlankAddress` for `loadHtml`).
  virtual void didCommit(const std::string& url) = 0;
  /// The page that was committed last has loaded with all that belongs to it: its script has run. Not for
  /// `loadHtml`.
  virtual void didFinish() = 0;
  /// A load of the main frame failed before or after it committed; also when it was cancelled, and when the
  /// web process ended. Not told: navigations that `decidePolicy` cancelled, a load that a later `load` or
  /// `loadHtml` of ours replaced, and failures of `loadHtml` itself. The description is the platform's own
  /// error text.
  virtual void didFail(const std::string& description) = 0;
  /// The page's process has been asked for something and has not answered for `kAnswerNotice`; it does again.
  virtual void didStopAnswering() = 0;
  virtual void didAnswerAgain() = 0;
  /// The main frame's script posted a message to the handler `name`; `json` is its body as a JSON document.
  virtual void didReceiveMessage(const std::string& name, std::string json) = 0;

  virtual void runAlert(const std::string& message, std::function<void()> done) = 0;
  virtual void runConfirm(const std::string& message, std::function<void(bool)> done) = 0;
  /// The paths of the chosen files; absent when the user cancelled.
  virtual void chooseFiles(bool multiple,
                           std::function<void(std::optional<std::vector<std::string>>)> done) = 0;
};

/// How a web window is made.
struct WebWindowSpec {
  std::string title;
  base::Size contentSize;
  base::Size minimumSize;
  double stripHeight = 0;
  /// The name under which pages find `window.webkit.messageHandlers.NAME.postMessage`, in the main frame
  /// only.
  std::string messageHandler;
  /// Run at the start of every document of the main frame, before the page's own scripts.
  std::string documentStartScript;
};

/// A window filled by one web view up to its top edge, with a title strip over it. Made hidden. Closing it
/// only hides it: the page lives on, and goes on running. Cookies and local storage are kept across launches.
class WebWindow {
 public:
  virtual ~WebWindow() = default;

  /// Saves the window's frame in the user's settings under "NSWindow Frame " + `name` whenever it changes,
  /// and restores it now if one is stored there.
  virtual void setFrameAutosaveName(const std::string& name) = 0;
  /// The title by which window lists know the window. Touches the system only where it differs from the last
  /// one.
  virtual void setTitle(const std::string& title) = 0;
  /// Puts the window into the middle of the usable screen.
  virtual void center() = 0;
  /// Shows the window if it is hidden or minimised, gives it the keyboard and brings it to the front.
  virtual void makeKeyAndOrderFront() = 0;
  /// Loads the address by the protocol's own caching rules; fails after `kLoadTimeout` without an answer.
  virtual void load(const std::string& url) = 0;
  /// Ends whatever the page is doing, even if it does not answer, and loads it again.
  virtual void startAnew() = 0;
  /// Shows this document instead, without a base address.
  virtual void loadHtml(const std::string& html) = 0;
  /// Whether a document of the web has been shown and is still there: false until the first one commits, and
  /// while one given by `loadHtml` is shown.
  virtual bool hasPage() const = 0;
  /// Runs the script in the main frame; result and failure are ignored.
  virtual void evaluate(const std::string& script) = 0;
  /// The strip over the top of the window; lives as long as the window.
  virtual TitleStrip& strip() = 0;
};

class WebWindows {
 public:
  virtual ~WebWindows() = default;
  /// `delegate` must outlive the window.
  virtual std::unique_ptr<WebWindow> make(const WebWindowSpec& spec, WebWindowDelegate& delegate) = 0;
};

}  // namespace orvalle::platform
