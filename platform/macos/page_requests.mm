#import "platform/macos/page_requests.h"

#include <memory>

#import "platform/macos/text.h"

using orvalle::base::Subscription;
using orvalle::platform::AnswerWatch;
using orvalle::platform::WebWindowDelegate;
using orvalle::platform::macos::nativeText;
using orvalle::platform::macos::utf8Text;

@interface OrvalleUIDelegate : NSObject <WKUIDelegate>
@property(nonatomic, assign) WebWindowDelegate* owner;
/// There as long as the owner is.
@property(nonatomic, assign) AnswerWatch* watch;
@end

@implementation OrvalleUIDelegate

- (void)webView:(WKWebView*)webView
    runJavaScriptAlertPanelWithMessage:(NSString*)message
                      initiatedByFrame:(WKFrameInfo*)frame
                     completionHandler:(void (^)(void))completionHandler {
  if (!self.owner) return completionHandler();
  const auto held = std::make_shared<Subscription>(self.watch->hold());
  self.owner->runAlert(utf8Text(message), [completionHandler, held] {
    completionHandler();
    held->reset();
  });
}

- (void)webView:(WKWebView*)webView
    runJavaScriptConfirmPanelWithMessage:(NSString*)message
                        initiatedByFrame:(WKFrameInfo*)frame
                       completionHandler:(void (^)(BOOL result))completionHandler {
  if (!self.owner) return completionHandler(NO);
  const auto held = std::make_shared<Subscription>(self.watch->hold());
  self.owner->runConfirm(utf8Text(message), [completionHandler, held](bool agreed) {
    completionHandler(agreed);
    held->reset();
  });
}

- (void)webView:(WKWebView*)webView
    runOpenPanelWithParameters:(WKOpenPanelParameters*)parameters
              initiatedByFrame:(WKFrameInfo*)frame
             completionHandler:(void (^)(NSArray<NSURL*>* _Nullable URLs))completionHandler {
  if (!self.owner) return completionHandler(nil);
  self.owner->chooseFiles(parameters.allowsMultipleSelection, [completionHandler](const auto& paths) {
    if (!paths) return completionHandler(nil);
    NSMutableArray<NSURL*>* urls = [NSMutableArray array];
    for (const auto& path : *paths) [urls addObject:[NSURL fileURLWithPath:nativeText(path)]];
    completionHandler(urls);
  });
}

- (void)webView:(WKWebView*)webView
    requestMediaCapturePermissionForOrigin:(WKSecurityOrigin*)origin
                          initiatedByFrame:(WKFrameInfo*)frame
                                      type:(WKMediaCaptureType)type
                           decisionHandler:(void (^)(WKPermissionDecision decision))decisionHandler {
  decisionHandler(WKPermissionDecisionDeny);
}

@end

namespace orvalle::platform::macos {

PageRequests::PageRequests(WKWebView* view, WebWindowDelegate& delegate, AnswerWatch& watch)
    : native_([[OrvalleUIDelegate alloc] init]) {
  native_.owner = &delegate;
  native_.watch = &watch;
  view.UIDelegate = native_;
}

PageRequests::~PageRequests() {
  native_.owner = nullptr;
}

}  // namespace orvalle::platform::macos
