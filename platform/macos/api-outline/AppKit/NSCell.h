// From: developer.apple.com, "NSCell". Checked against: objc2's generated AppKit/NSCell.rs (MIT).
#pragma once

#import <Foundation/Foundation.h>

@interface NSCell : NSObject <NSCopying>
@property(getter=isScrollable) BOOL scrollable;
@end
