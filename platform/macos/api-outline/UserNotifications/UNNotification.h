// From: developer.apple.com, "UNNotification". Binding: xamarin-macios src/usernotifications.cs.
#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

API_AVAILABLE(macos(10.14))
@interface UNNotification : NSObject <NSCopying>
- (instancetype)init NS_UNAVAILABLE;
@end

NS_ASSUME_NONNULL_END
