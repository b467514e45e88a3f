// From: developer.apple.com, "NSSearchPathDirectory", "NSHomeDirectory". Checked against: objc2's generated
// Foundation/NSPathUtilities.rs (MIT).
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
