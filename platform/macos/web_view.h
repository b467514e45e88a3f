#pragma once

#import <WebKit/WebKit.h>

#include <functional>
#include <string>

#include "base/liveness.h"
#include "platform/answer_watch.h"
#import "platform/macos/page_bridge.h"
#import "platform/macos/page_requests.h"
#include "platform/web_window.h"

@class OrvalleNavigationDelegate;

namespace orvalle::platform::macos {

/// The web side of a web window: its operations and its delegate's calls mean what WebWindow says of them.
class WebView {
 public:
  /// `loop` and `delegate` outlive the view.
  WebView(MainLoop& loop, const WebWindowSpec& spec, WebWindowDelegate& delegate);
  WebView(const WebView&) = delete;
  WebView& operator=(const WebView&) = delete;
  ~WebView();

  /// Another one after `startAnew`, which puts it in the place of the one before.
  WKWebView* _Nonnull native() const { return view_; }

  void load(const std::string& url);
  void loadHtml(const std::string& html);
  void startAnew();
  bool hasPage() const { return hasPage_; }
  void evaluate(const std::string& script);

  // What the view tells, for the object that listens to it.
  bool mayNavigate(WKNavigationAction* _Nonnull action);
  void started(WKNavigation* _Nullable navigation);
  void committed(WKNavigation* _Nullable navigation);
  void finished(WKNavigation* _Nullable navigation);
  void failed(WKNavigation* _Nullable navigation, NSError* _Nonnull error);
  void processEnded();

 private:
  bool isHtml(WKNavigation* _Nullable navigation) const { return navigation && navigation == html_; }
  std::string address() const;
  void ask(const std::function<void()>& answered);

  WebWindowDelegate& delegate_;
  PageBridge bridge_;
  WKWebView* _Nonnull view_;
  AnswerWatch watch_;
  PageRequests requests_;
  /// The view holds it weakly.
  OrvalleNavigationDelegate* _Nonnull native_;

  bool hasPage_ = false;
  /// Our last load, until it is on show or has failed: whatever ends meanwhile makes room for it.
  WKNavigation* _Nullable own_ = nil;
  /// That of `loadHtml`, as long as what it was given is on its way or shown.
  WKNavigation* _Nullable html_ = nil;
  base::Liveness liveness_;
};

}  // namespace orvalle::platform::macos
