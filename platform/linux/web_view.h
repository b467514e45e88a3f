#pragma once

#include <webkit2/webkit2.h>

#include <array>
#include <functional>
#include <string>

#include "platform/answer_watch.h"
#include "platform/linux/glib_ptr.h"
#include "platform/linux/page_bridge.h"
#include "platform/linux/page_requests.h"
#include "platform/main_loop.h"
#include "platform/web_window.h"

namespace orvalle::platform::linuxos {

/// The web side of a web window: its operations and its delegate's calls mean what WebWindow says of them.
class WebView {
 public:
  /// `context` keeps what has to outlive the process. `loop` and `delegate` outlive the view.
  WebView(MainLoop& loop, WebKitWebContext* context, const WebWindowSpec& spec, WebWindowDelegate& delegate);
  WebView(const WebView&) = delete;
  WebView& operator=(const WebView&) = delete;
  ~WebView();

  GtkWidget* widget() const { return GTK_WIDGET(view_.get()); }

  void load(const std::string& url);
  void startAnew();
  void loadHtml(const std::string& html);
  bool hasPage() const { return hasPage_; }
  void evaluate(const std::string& script);

 private:
  static gboolean decidePolicy(WebKitWebView*, WebKitPolicyDecision* decision, WebKitPolicyDecisionType type,
                               gpointer self);
  static void loadChanged(WebKitWebView*, WebKitLoadEvent event, gpointer self);
  static gboolean loadFailed(WebKitWebView*, WebKitLoadEvent, const char*, GError* error, gpointer self);
  static void processEnded(WebKitWebView*, WebKitWebProcessTerminationReason, gpointer self);
  static void pageAnswered(GObject* view, GAsyncResult* result, gpointer answered);
  static gboolean timedOut(gpointer self);

  void ask(const std::function<void()>& answered);
  NavigationPolicy decide(WebKitPolicyDecision* decision);
  void awaitOwnLoad();
  void started();
  void committed();
  bool isToBeTold(const GError* error);
  void startTimeout();
  void stopTimeout();
  std::string address() const;

  WebWindowDelegate& delegate_;
  PageBridge bridge_;
  GObjectPtr<WebKitWebView> view_;
  AnswerWatch watch_;
  PageRequests requests_;
  std::array<SignalConnection, 4> connections_;

  bool hasPage_ = false;
  /// What `loadHtml` was given is on its way or shown.
  bool html_ = false;
  /// The address of the last navigation let through, in whatever frame: that of a load that then starts.
  std::string allowed_;
  /// That of the load that started last.
  std::string started_;
  /// The address of our last load, as the view writes it.
  std::string ownAddress_;
  /// Our last load has not started yet: whatever ends meanwhile makes room for it.
  bool ownLoadAwaited_ = false;
  /// It has been let through.
  bool ownLoadAllowed_ = false;
  /// The load that started last is ours, not the page's or the user's.
  bool ownLoad_ = false;
  /// We gave up the load under way ourselves and have told so.
  bool gaveUp_ = false;
  /// The process is being ended by us, and the page loaded again.
  bool startsAnew_ = false;
  guint timeout_ = 0;
};

}  // namespace orvalle::platform::linuxos
