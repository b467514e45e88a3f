// From: developer.apple.com, "WKUIDelegate", "WKOpenPanelParameters". Checked against: objc2-web-kit,
// WKUIDelegate.rs (generated from the SDK's headers), and xamarin-macios src/wkwebkit.cs.
#pragma once

#import <WebKit/WKNavigation.h>

NS_ASSUME_NONNULL_BEGIN

@class WKSecurityOrigin;
@class WKWebView;

typedef NS_ENUM(NSInteger, WKPermissionDecision) {
  WKPermissionDecisionPrompt = 0,
  WKPermissionDecisionGrant = 1,
  WKPermissionDecisionDeny = 2,
} API_AVAILABLE(macos(12.0));

typedef NS_ENUM(NSInteger, WKMediaCaptureType) {
  WKMediaCaptureTypeCamera = 0,
} API_AVAILABLE(macos(12.0));

@interface WKOpenPanelParameters : NSObject
@property(nonatomic, readonly) BOOL allowsMultipleSelection;
@end

@protocol WKUIDelegate <NSObject>
@optional
- (void)webView:(WKWebView*)webView
    runJavaScriptAlertPanelWithMessage:(NSString*)message
                      initiatedByFrame:(WKFrameInfo*)frame
                     completionHandler:(void (^)(void))completionHandler;
- (void)webView:(WKWebView*)webView
    runJavaScriptConfirmPanelWithMessage:(NSString*)message
                        initiatedByFrame:(WKFrameInfo*)frame
                       completionHandler:(void (^)(BOOL result))completionHandler;
- (void)webView:(WKWebView*)webView
    runOpenPanelWithParameters:(WKOpenPanelParameters*)parameters
              initiatedByFrame:(WKFrameInfo*)frame
             completionHandler:(void (^)(NSArray<NSURL*>* _Nullable URLs))completionHandler
    API_AVAILABLE(macos(10.12));
- (void)webView:(WKWebView*)webView
    requestMediaCapturePermissionForOrigin:(WKSecurityOrigin*)origin
                          initiatedByFrame:(WKFrameInfo*)frame
                                      type:(WKMediaCaptureType)type
                           decisionHandler:(void (^)(WKPermissionDecision decision))decisionHandler
    API_AVAILABLE(macos(12.0));
@end

NS_ASSUME_NONNULL_END
