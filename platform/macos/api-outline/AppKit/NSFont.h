// From: developer.apple.com, "NSFont". Checked against: objc2's icrate, AppKit/NSFont.rs (generated from
// the SDK's headers, MIT).
#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

typedef CGFloat NSFontWeight;
extern const NSFontWeight NSFontWeightRegular;
extern const NSFontWeight NSFontWeightSemibold;

@interface NSFont : NSObject <NSCopying>
+ (NSFont*)systemFontOfSize:(CGFloat)fontSize;
+ (NSFont*)boldSystemFontOfSize:(CGFloat)fontSize;
+ (NSFont*)systemFontOfSize:(CGFloat)fontSize weight:(NSFontWeight)weight;
+ (NSFont*)monospacedSystemFontOfSize:(CGFloat)fontSize
                               weight:(NSFontWeight)weight API_AVAILABLE(macos(10.15));
@end

NS_ASSUME_NONNULL_END
