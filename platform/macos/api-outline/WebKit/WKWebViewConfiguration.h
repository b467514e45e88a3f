// From: developer.apple.com, "WKWebViewConfiguration", "WKPreferences", "WKWebsiteDataStore". Checked
// against: objc2-web-kit, WKPreferences.rs; xamarin-macios src/wkwebkit.cs; objc2's generated
// WebKit/WKWebViewConfiguration.rs (MIT).
#pragma once

#import <WebKit/WKUserContentController.h>

NS_ASSUME_NONNULL_BEGIN

typedef NS_ENUM(NSInteger, WKInactiveSchedulingPolicy) {
  WKInactiveSchedulingPolicySuspend = 0,
  WKInactiveSchedulingPolicyThrottle = 1,
  WKInactiveSchedulingPolicyNone = 2,
} API_AVAILABLE(macos(14.0));

@interface WKPreferences : NSObject
@property(nonatomic) WKInactiveSchedulingPolicy inactiveSchedulingPolicy API_AVAILABLE(macos(14.0));
@end

@interface WKWebsiteDataStore : NSObject
+ (WKWebsiteDataStore*)defaultDataStore;
@end

@interface WKWebViewConfiguration : NSObject <NSCopying>
@property(nonatomic, strong) WKPreferences* preferences;
@property(nonatomic, strong) WKUserContentController* userContentController;
@property(nonatomic, strong) WKWebsiteDataStore* websiteDataStore;
@end

NS_ASSUME_NONNULL_END
