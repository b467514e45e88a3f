// From: developer.apple.com, "UNUserNotificationCenter". Checked against: xamarin-macios
// src/usernotifications.cs and objc2's generated UserNotifications/UNUserNotificationCenter.rs (MIT).
#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

@class UNNotification;
@class UNNotificationRequest;
@class UNNotificationResponse;
@class UNNotificationSettings;
@protocol UNUserNotificationCenterDelegate;

typedef NS_OPTIONS(NSUInteger, UNAuthorizationOptions) {
  UNAuthorizationOptionBadge = 1 << 0,
  UNAuthorizationOptionSound = 1 << 1,
  UNAuthorizationOptionAlert = 1 << 2,
};

typedef NS_OPTIONS(NSUInteger, UNNotificationPresentationOptions) {
  UNNotificationPresentationOptionBadge = 1 << 0,
  UNNotificationPresentationOptionSound = 1 << 1,
  UNNotificationPresentationOptionList API_AVAILABLE(macos(11.0)) = 1 << 3,
  UNNotificationPresentationOptionBanner API_AVAILABLE(macos(11.0)) = 1 << 4,
};

API_AVAILABLE(macos(10.14))
@interface UNUserNotificationCenter : NSObject
@property(weak, nonatomic, nullable) id<UNUserNotificationCenterDelegate> delegate;
+ (UNUserNotificationCenter*)currentNotificationCenter;
- (instancetype)init NS_UNAVAILABLE;
- (void)requestAuthorizationWithOptions:(UNAuthorizationOptions)options
                      completionHandler:(void (^)(BOOL granted, NSError* _Nullable error))completionHandler;
- (void)getNotificationSettingsWithCompletionHandler:
    (void (^)(UNNotificationSettings* settings))completionHandler;
- (void)addNotificationRequest:(UNNotificationRequest*)request
         withCompletionHandler:(nullable void (^)(NSError* _Nullable error))completionHandler;
@end

API_AVAILABLE(macos(10.14))
@protocol UNUserNotificationCenterDelegate <NSObject>
@optional
- (void)userNotificationCenter:(UNUserNotificationCenter*)center
       willPresentNotification:(UNNotification*)notification
         withCompletionHandler:(void (^)(UNNotificationPresentationOptions options))completionHandler;
- (void)userNotificationCenter:(UNUserNotificationCenter*)center
    didReceiveNotificationResponse:(UNNotificationResponse*)response
             withCompletionHandler:(void (^)(void))completionHandler;
@end

NS_ASSUME_NONNULL_END
