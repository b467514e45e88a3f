#pragma once

#import <WebKit/WebKit.h>

#include "platform/answer_watch.h"
#include "platform/web_window.h"

@class OrvalleUIDelegate;

namespace orvalle::platform::macos {

/// What pages ask of the program beside navigating: dialogs, files, camera and microphone. Dialogs and files
/// are the delegate's; the rest is denied.
class PageRequests {
 public:
  /// Answers the requests of `view`, and of whatever has its delegates, as long as it lives. `delegate` and
  /// `watch` outlive it.
  PageRequests(WKWebView* _Nonnull view, WebWindowDelegate& delegate, AnswerWatch& watch);
  PageRequests(const PageRequests&) = delete;
  PageRequests& operator=(const PageRequests&) = delete;
  ~PageRequests();

 private:
  /// The view holds it weakly.
  OrvalleUIDelegate* _Nonnull native_;
};

}  // namespace orvalle::platform::macos
