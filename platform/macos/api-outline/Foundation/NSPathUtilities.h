// From: developer.apple.com, "NSSearchPathDirectory". Binding: xamarin-macios src/Foundation/Enum.cs; of the
// functions there is none.
#pragma once

#import <Foundation/NSString.h>

NS_ASSUME_NONNULL_BEGIN

typedef NS_ENUM(NSUInteger, NSSearchPathDirectory) {
  NSDocumentDirectory = 9,
  NSApplicationSupportDirectory = 14,
};

typedef NS_OPTIONS(NSUInteger, NSSearchPathDomainMask) {
  NSUserDomainMask = 1,
};

extern "C" {
NSString* NSHomeDirectory(void);
NSString* NSTemporaryDirectory(void);
}

NS_ASSUME_NONNULL_END
