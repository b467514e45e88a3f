// From: developer.apple.com, "UNNotificationSettings". Binding: xamarin-macios src/usernotifications.cs.
#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

/// The next one, 4, is for other systems.
typedef NS_ENUM(NSInteger, UNAuthorizationStatus) {
  UNAuthorizationStatusNotDetermined = 0,
  UNAuthorizationStatusDenied = 1,
  UNAuthorizationStatusAuthorized = 2,
  UNAuthorizationStatusProvisional = 3,
};

API_AVAILABLE(macos(10.14))
@interface UNNotificationSettings : NSObject <NSCopying>
@property(nonatomic, readonly) UNAuthorizationStatus authorizationStatus;
- (instancetype)init NS_UNAVAILABLE;
@end

NS_ASSUME_NONNULL_END
