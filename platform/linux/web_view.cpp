#include "platform/linux/web_view.h"

#include <memory>
#include <utility>

namespace orvalle::platform::linuxos {
namespace {

constexpr char kTimeoutText[] = "Il server non ha risposto in tempo.";

GObjectPtr<WebKitWebView> makeView(WebKitWebContext* context, WebKitUserContentManager* content) {
  auto* view = WEBKIT_WEB_VIEW(g_object_new(WEBKIT_TYPE_WEB_VIEW, "web-context", context,
                                            "user-content-manager", content, "visible", TRUE, nullptr));
  g_object_set(webkit_web_view_get_settings(view), "enable-back-forward-navigation-gestures", TRUE,
               "enable-media-stream", FALSE, nullptr);
  // The window's own background shows until the page paints.
  constexpr GdkRGBA transparent = {0, 0, 0, 0};
  webkit_web_view_set_background_color(view, &transparent);
  return GObjectPtr<WebKitWebView>::share(view);
}

NavigationAction actionOf(WebKitPolicyDecision* decision) {
  auto* action =
      webkit_navigation_policy_decision_get_navigation_action(WEBKIT_NAVIGATION_POLICY_DECISION(decision));
  const char* uri = webkit_uri_request_get_uri(webkit_navigation_action_get_request(action));
  NavigationAction result;
  if (uri && *uri) result.url = uri;
  result.linkActivated =
      webkit_navigation_action_get_navigation_type(action) == WEBKIT_NAVIGATION_TYPE_LINK_CLICKED;
  return result;
}

}  // namespace

WebView::WebView(MainLoop& loop, WebKitWebContext* context, const WebWindowSpec& spec,
                 WebWindowDelegate& delegate)
    : delegate_(delegate),
      bridge_(spec.messageHandler, spec.documentStartScript,
              [this, name = spec.messageHandler](std::string json) {
                delegate_.didReceiveMessage(name, std::move(json));
              }),
      view_(makeView(context, bridge_.content())),
      watch_(loop, delegate, [this](const std::function<void()>& answered) { ask(answered); }),
      requests_(view_.get(), delegate, watch_),
      connections_{{{view_.get(), "decide-policy", G_CALLBACK(decidePolicy), this},
                    {view_.get(), "load-changed", G_CALLBACK(loadChanged), this},
                    {view_.get(), "load-failed", G_CALLBACK(loadFailed), this},
                    {view_.get(), "web-process-terminated", G_CALLBACK(processEnded), this}}} {}

WebView::~WebView() {
  stopTimeout();
}

void WebView::load(const std::string& url) {
  html_ = false;
  startTimeout();
  webkit_web_view_load_uri(view_.get(), url.c_str());
  awaitOwnLoad();
}

void WebView::startAnew() {
  // Told of inside the call.
  startsAnew_ = true;
  webkit_web_view_terminate_web_process(view_.get());
  startsAnew_ = false;
  watch_.startAgain();
  webkit_web_view_reload(view_.get());
}

void WebView::loadHtml(const std::string& html) {
  html_ = true;
  hasPage_ = false;
  stopTimeout();
  webkit_web_view_load_html(view_.get(), html.c_str(), nullptr);
  awaitOwnLoad();
}

void WebView::evaluate(const std::string& script) {
  webkit_web_view_evaluate_javascript(view_.get(), script.data(), static_cast<gssize>(script.size()), nullptr,
                                      nullptr, nullptr, nullptr, nullptr);
}

gboolean WebView::decidePolicy(WebKitWebView*, WebKitPolicyDecision* decision, WebKitPolicyDecisionType type,
                               gpointer self) {
  auto& view = *static_cast<WebView*>(self);
  bool use = false;
  switch (type) {
    case WEBKIT_POLICY_DECISION_TYPE_NAVIGATION_ACTION:
      use = view.decide(decision) == NavigationPolicy::Allow;
      break;
    case WEBKIT_POLICY_DECISION_TYPE_NEW_WINDOW_ACTION:
      // There is no second window: the owner may send the address elsewhere, and that is all.
      view.delegate_.decidePolicy(actionOf(decision));
      break;
    case WEBKIT_POLICY_DECISION_TYPE_RESPONSE:
      // What cannot be shown would be saved to a file.
      use = webkit_response_policy_decision_is_mime_type_supported(WEBKIT_RESPONSE_POLICY_DECISION(decision));
      break;
  }
  if (use) {
    webkit_policy_decision_use(decision);
  } else {
    webkit_policy_decision_ignore(decision);
  }
  return TRUE;
}

NavigationPolicy WebView::decide(WebKitPolicyDecision* decision) {
  const auto action = actionOf(decision);
  const auto policy = delegate_.decidePolicy(action);
  if (policy != NavigationPolicy::Allow) return policy;
  allowed_ = action.url.value_or("");
  // Frames within the page may ask between this and the start.
  if (ownLoadAwaited_ && allowed_ == ownAddress_) ownLoadAllowed_ = true;
  return policy;
}

void WebView::loadChanged(WebKitWebView*, WebKitLoadEvent event, gpointer self) {
  auto& view = *static_cast<WebView*>(self);
  switch (event) {
    case WEBKIT_LOAD_STARTED:
      view.started();
      break;
    case WEBKIT_LOAD_COMMITTED:
      view.committed();
      break;
    case WEBKIT_LOAD_FINISHED:
      // A load that failed finishes too; then either the offline page or the page before it is there.
      if (view.hasPage_ && !view.ownLoadAwaited_ && !view.html_) view.delegate_.didFinish();
      break;
    case WEBKIT_LOAD_REDIRECTED:
      break;
  }
}

void WebView::awaitOwnLoad() {
  ownLoadAwaited_ = true;
  ownLoadAllowed_ = false;
  ownAddress_ = address();
}

void WebView::started() {
  gaveUp_ = false;
  // The view's address still is the old one when a page goes elsewhere by itself, and is ours already when a
  // load of the page's comes in before ours: only what was let through tells them apart.
  ownLoad_ = ownLoadAwaited_ && ownLoadAllowed_;
  if (ownLoad_) ownLoadAwaited_ = false;
  started_ = ownLoad_ ? ownAddress_ : allowed_;
  if (!ownLoadAwaited_ && started_ != kBlankAddress) html_ = false;
  if (html_) return;
  startTimeout();
  delegate_.didStart(started_);
}

void WebView::committed() {
  // While ours is awaited the view answers with the address of that one, which is not what is shown now.
  const std::string shown = ownLoadAwaited_ ? kBlankAddress : address();
  // A blank page instead of one that was asked for: the view keeps away from some ports, and says no more.
  const bool blocked = !ownLoadAwaited_ && !html_ && shown == kBlankAddress && started_ != kBlankAddress;
  hasPage_ = !blocked && !(html_ && shown == kBlankAddress);
  if (!ownLoadAwaited_) stopTimeout();
  delegate_.didCommit(shown);
  if (blocked) delegate_.didFail(kAddressBlockedText);
}

gboolean WebView::loadFailed(WebKitWebView*, WebKitLoadEvent, const char*, GError* error, gpointer self) {
  auto& view = *static_cast<WebView*>(self);
  if (!view.ownLoadAwaited_) view.stopTimeout();
  if (view.isToBeTold(error)) view.delegate_.didFail(error->message);
  // The view's own error page is never wanted.
  return TRUE;
}

bool WebView::isToBeTold(const GError* error) {
  if (ownLoadAwaited_ || html_ || std::exchange(gaveUp_, false)) return false;
  // A page's link to something that cannot be shown leads nowhere and leaves the page alone; only if we
  // wanted to load such a thing there is nothing to show.
  return ownLoad_ || !g_error_matches(error, WEBKIT_POLICY_ERROR,
                                      WEBKIT_POLICY_ERROR_FRAME_LOAD_INTERRUPTED_BY_POLICY_CHANGE);
}

void WebView::processEnded(WebKitWebView*, WebKitWebProcessTerminationReason, gpointer self) {
  auto& view = *static_cast<WebView*>(self);
  view.stopTimeout();
  view.hasPage_ = false;
  view.ownLoadAwaited_ = false;
  view.watch_.startAgain();
  // A process that dies of our own document would do so again.
  if (!view.html_ && !view.startsAnew_) view.delegate_.didFail(kPageProcessEndedText);
}

void WebView::ask(const std::function<void()>& answered) {
  // The view itself only notices that keys are not answered, and nothing of a mouse that is moved before it
  // clicks. Nobody waits for a page that is not seen.
  if (!hasPage_ || !gtk_widget_get_mapped(widget())) return answered();
  webkit_web_view_evaluate_javascript(view_.get(), "0", -1, nullptr, nullptr, nullptr, pageAnswered,
                                      std::make_unique<std::function<void()>>(answered).release());
}

void WebView::pageAnswered(GObject* view, GAsyncResult* result, gpointer answered) {
  const std::unique_ptr<std::function<void()>> tell(static_cast<std::function<void()>*>(answered));
  // That it has no answer, because it has gone, is one too.
  const auto value = GObjectPtr<JSCValue>::adopt(
      webkit_web_view_evaluate_javascript_finish(WEBKIT_WEB_VIEW(view), result, nullptr));
  (*tell)();
}

void WebView::startTimeout() {
  stopTimeout();
  timeout_ = g_timeout_add_seconds(guint{kLoadTimeout.count()}, timedOut, this);
}

void WebView::stopTimeout() {
  if (timeout_) g_source_remove(std::exchange(timeout_, 0));
}

gboolean WebView::timedOut(gpointer self) {
  auto& view = *static_cast<WebView*>(self);
  view.timeout_ = 0;
  view.ownLoadAwaited_ = false;
  view.gaveUp_ = true;
  webkit_web_view_stop_loading(view.view_.get());
  view.delegate_.didFail(kTimeoutText);
  return G_SOURCE_REMOVE;
}

std::string WebView::address() const {
  const char* uri = webkit_web_view_get_uri(view_.get());
  return uri ? uri : "";
}

}  // namespace orvalle::platform::linuxos
