// From: developer.apple.com, "NSFont". Binding: xamarin-macios src/appkit.cs.
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
