// From: developer.apple.com, "WKWebView". Checked against: objc2-web-kit, WKWebView.rs (generated from the
// SDK's headers).
#pragma once

#import <AppKit/NSView.h>
#import <WebKit/WKNavigationDelegate.h>
#import <WebKit/WKUIDelegate.h>
#import <WebKit/WKWebViewConfiguration.h>

NS_ASSUME_NONNULL_BEGIN

@interface WKWebView : NSView
- (instancetype)initWithFrame:(CGRect)frame
                configuration:(WKWebViewConfiguration*)configuration NS_DESIGNATED_INITIALIZER;
@property(nonatomic, readonly, copy) WKWebViewConfiguration* configuration;
@property(nullable, nonatomic, weak) id<WKNavigationDelegate> navigationDelegate;
@property(nullable, nonatomic, weak) id<WKUIDelegate> UIDelegate;
- (nullable WKNavigation*)loadRequest:(NSURLRequest*)request;
- (nullable WKNavigation*)reload;
- (nullable WKNavigation*)loadHTMLString:(NSString*)string baseURL:(nullable NSURL*)baseURL;
@property(nullable, nonatomic, readonly, copy) NSURL* URL;
- (void)evaluateJavaScript:(NSString*)javaScriptString
         completionHandler:(void (^_Nullable)(_Nullable id, NSError* _Nullable error))completionHandler;
@property(nonatomic) BOOL allowsBackForwardNavigationGestures;
@end

NS_ASSUME_NONNULL_END
