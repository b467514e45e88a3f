#import "platform/macos/web_view.h"

#import <AppKit/AppKit.h>
#import <dispatch/dispatch.h>

#include <utility>

#import "platform/macos/text.h"

using orvalle::platform::macos::WebView;

@interface OrvalleNavigationDelegate : NSObject <WKNavigationDelegate>
@property(nonatomic, assign) WebView* owner;
@end

@implementation OrvalleNavigationDelegate

- (void)webView:(WKWebView*)webView
    decidePolicyForNavigationAction:(WKNavigationAction*)navigationAction
                    decisionHandler:(void (^)(WKNavigationActionPolicy))decisionHandler {
  const bool allowed = self.owner && self.owner->mayNavigate(navigationAction);
  decisionHandler(allowed ? WKNavigationActionPolicyAllow : WKNavigationActionPolicyCancel);
}

- (void)webView:(WKWebView*)webView
    decidePolicyForNavigationResponse:(WKNavigationResponse*)navigationResponse
                      decisionHandler:(void (^)(WKNavigationResponsePolicy))decisionHandler {
  // What cannot be shown would be saved to a file.
  decisionHandler(navigationResponse.canShowMIMEType ? WKNavigationResponsePolicyAllow
                                                     : WKNavigationResponsePolicyCancel);
}

- (void)webView:(WKWebView*)webView didStartProvisionalNavigation:(WKNavigation*)navigation {
  if (self.owner) self.owner->started(navigation);
}

- (void)webView:(WKWebView*)webView
    didFailProvisionalNavigation:(WKNavigation*)navigation
                       withError:(NSError*)error {
  if (self.owner) self.owner->failed(navigation, error);
}

- (void)webView:(WKWebView*)webView didCommitNavigation:(WKNavigation*)navigation {
  if (self.owner) self.owner->committed(navigation);
}

- (void)webView:(WKWebView*)webView didFinishNavigation:(WKNavigation*)navigation {
  if (self.owner) self.owner->finished(navigation);
}

- (void)webView:(WKWebView*)webView didFailNavigation:(WKNavigation*)navigation withError:(NSError*)error {
  if (self.owner) self.owner->failed(navigation, error);
}

- (void)webViewWebContentProcessDidTerminate:(WKWebView*)webView {
  if (self.owner) self.owner->processEnded();
}

@end

namespace orvalle::platform::macos {
namespace {

WKWebViewConfiguration* makeConfiguration(WKUserContentController* content) {
  WKWebViewConfiguration* configuration = [[WKWebViewConfiguration alloc] init];
  configuration.userContentController = content;
  configuration.websiteDataStore = [WKWebsiteDataStore defaultDataStore];
  if (@available(macOS 14, *)) {
    // A page that nobody sees goes on running: it is what tells how the session stands.
    configuration.preferences.inactiveSchedulingPolicy = WKInactiveSchedulingPolicyNone;
  }
  return configuration;
}

WKWebView* makeView(NSRect frame, WKWebViewConfiguration* configuration) {
  WKWebView* view = [[WKWebView alloc] initWithFrame:frame configuration:configuration];
  view.autoresizingMask = NSViewWidthSizable | NSViewHeightSizable;
  view.allowsBackForwardNavigationGestures = YES;
  // The window's own background shows until the page paints.
  [view setValue:@NO forKey:@"drawsBackground"];
  return view;
}

/// Whether the load ended because what came cannot be shown. The names of this domain and code are in headers
/// that are deprecated.
bool isPolicyInterruption(NSError* error) {
  constexpr NSInteger kFrameLoadInterruptedByPolicyChange = 102;
  return [error.domain isEqualToString:@"WebKitErrorDomain"] &&
         error.code == kFrameLoadInterruptedByPolicyChange;
}

}  // namespace

WebView::WebView(MainLoop& loop, const WebWindowSpec& spec, WebWindowDelegate& delegate)
    : delegate_(delegate),
      bridge_(spec.messageHandler, spec.documentStartScript,
              [this, name = spec.messageHandler](std::string json) {
                delegate_.didReceiveMessage(name, std::move(json));
              }),
      view_(makeView(NSMakeRect(0, 0, spec.contentSize.width, spec.contentSize.height),
                     makeConfiguration(bridge_.content()))),
      watch_(loop, delegate, [this](const std::function<void()>& answered) { ask(answered); }),
      requests_(view_, delegate, watch_),
      native_([[OrvalleNavigationDelegate alloc] init]) {
  native_.owner = this;
  view_.navigationDelegate = native_;
}

WebView::~WebView() {
  native_.owner = nullptr;
}

void WebView::load(const std::string& url) {
  html_ = nil;
  NSURL* address = [NSURL URLWithString:nativeText(url)];
  if (!address) {
    const std::function<void()> tell = liveness_.guard([this] { delegate_.didFail(kAddressBlockedText); });
    dispatch_async(dispatch_get_main_queue(), ^{
      tell();
    });
    return;
  }
  own_ = [view_ loadRequest:[NSURLRequest requestWithURL:address
                                             cachePolicy:NSURLRequestUseProtocolCachePolicy
                                         timeoutInterval:kLoadTimeout.count()]];
}

void WebView::loadHtml(const std::string& html) {
  hasPage_ = false;
  own_ = [view_ loadHTMLString:nativeText(html) baseURL:nil];
  html_ = own_;
}

void WebView::startAnew() {
  const std::string page = address();
  // A process that does not answer would not hear of a reload either; it ends with its view.
  WKWebView* fresh = makeView(view_.frame, view_.configuration);
  fresh.navigationDelegate = view_.navigationDelegate;
  fresh.UIDelegate = view_.UIDelegate;
  NSWindow* window = view_.window;
  [view_.superview replaceSubview:view_ with:fresh];
  window.initialFirstResponder = fresh;
  [window makeFirstResponder:fresh];
  view_ = fresh;
  hasPage_ = false;
  watch_.startAgain();
  load(page);
}

void WebView::evaluate(const std::string& script) {
  [view_ evaluateJavaScript:nativeText(script) completionHandler:nil];
}

bool WebView::mayNavigate(WKNavigationAction* action) {
  NavigationAction asked;
  if (NSURL* url = action.request.URL) asked.url = utf8Text(url.absoluteString);
  asked.linkActivated = action.navigationType == WKNavigationTypeLinkActivated;
  const auto policy = delegate_.decidePolicy(asked);
  // There is no second window: the owner may send the address elsewhere, and that is all.
  return action.targetFrame && policy == NavigationPolicy::Allow;
}

void WebView::started(WKNavigation* navigation) {
  if (!isHtml(navigation)) delegate_.didStart(address());
}

void WebView::committed(WKNavigation* navigation) {
  // While ours is awaited the view answers with the address of that one, which is not what is shown now.
  const bool another = own_ && navigation != own_;
  const bool html = isHtml(navigation);
  if (!another) own_ = nil;
  if (!another && !html) html_ = nil;
  hasPage_ = !html_;
  delegate_.didCommit(another || html ? kBlankAddress : address());
}

void WebView::finished(WKNavigation* navigation) {
  if (hasPage_ && !own_ && !isHtml(navigation)) delegate_.didFinish();
}

void WebView::failed(WKNavigation* navigation, NSError* error) {
  if (isHtml(navigation)) {
    own_ = nil;
    return;
  }
  const bool own = own_ && navigation == own_;
  if (own_ && !own) return;
  own_ = nil;
  // A page's link to something that cannot be shown leads nowhere and leaves the page alone; only if we
  // wanted to load such a thing there is nothing to show.
  if (own || !isPolicyInterruption(error)) delegate_.didFail(utf8Text(error.localizedDescription));
}

void WebView::processEnded() {
  hasPage_ = false;
  own_ = nil;
  watch_.startAgain();
  // A process that dies of our own document would do so again.
  if (!html_) delegate_.didFail(kPageProcessEndedText);
}

void WebView::ask(const std::function<void()>& answered) {
  if (!hasPage_) return answered();
  const auto told = answered;
  [view_ evaluateJavaScript:@"0"
          completionHandler:^(id, NSError*) {
            told();
          }];
}

std::string WebView::address() const {
  return utf8Text(view_.URL.absoluteString);
}

}  // namespace orvalle::platform::macos
