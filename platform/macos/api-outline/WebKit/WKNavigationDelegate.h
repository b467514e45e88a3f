// From: developer.apple.com, "WKNavigationDelegate". Checked against: xamarin-macios src/wkwebkit.cs.
#pragma once

#import <WebKit/WKNavigation.h>

NS_ASSUME_NONNULL_BEGIN

@class WKWebView;

typedef NS_ENUM(NSInteger, WKNavigationActionPolicy) {
  WKNavigationActionPolicyCancel = 0,
  WKNavigationActionPolicyAllow = 1,
};

typedef NS_ENUM(NSInteger, WKNavigationResponsePolicy) {
  WKNavigationResponsePolicyCancel = 0,
  WKNavigationResponsePolicyAllow = 1,
};

@protocol WKNavigationDelegate <NSObject>
@optional
- (void)webView:(WKWebView*)webView
    decidePolicyForNavigationAction:(WKNavigationAction*)navigationAction
                    decisionHandler:(void (^)(WKNavigationActionPolicy))decisionHandler;
- (void)webView:(WKWebView*)webView
    decidePolicyForNavigationResponse:(WKNavigationResponse*)navigationResponse
                      decisionHandler:(void (^)(WKNavigationResponsePolicy))decisionHandler;
- (void)webView:(WKWebView*)webView didStartProvisionalNavigation:(null_unspecified WKNavigation*)navigation;
- (void)webView:(WKWebView*)webView
    didFailProvisionalNavigation:(null_unspecified WKNavigation*)navigation
                       withError:(NSError*)error;
- (void)webView:(WKWebView*)webView didCommitNavigation:(null_unspecified WKNavigation*)navigation;
- (void)webView:(WKWebView*)webView didFinishNavigation:(null_unspecified WKNavigation*)navigation;
- (void)webView:(WKWebView*)webView
    didFailNavigation:(null_unspecified WKNavigation*)navigation
            withError:(NSError*)error;
- (void)webViewWebContentProcessDidTerminate:(WKWebView*)webView;
@end

NS_ASSUME_NONNULL_END
