// From: developer.apple.com, "UNMutableNotificationContent". Binding: xamarin-macios
// src/usernotifications.cs.
#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

@class UNNotificationSound;

API_AVAILABLE(macos(10.14))
@interface UNNotificationContent : NSObject <NSCopying>
@end

API_AVAILABLE(macos(10.14))
@interface UNMutableNotificationContent : UNNotificationContent
@property(nonatomic, copy) NSString* title;
@property(nonatomic, copy) NSString* body;
@property(nonatomic, copy, nullable) UNNotificationSound* sound;
@end

NS_ASSUME_NONNULL_END
