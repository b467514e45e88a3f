// From: developer.apple.com, "NSPasteboard". Checked against: objc2's icrate, AppKit/NSPasteboard.rs
// (generated from the SDK's headers, MIT).
#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

typedef NSString* NSPasteboardType;
extern NSPasteboardType const NSPasteboardTypeString;

@interface NSPasteboard : NSObject
@property(class, readonly, strong) NSPasteboard* generalPasteboard;
- (NSInteger)clearContents;
- (BOOL)setString:(NSString*)string forType:(NSPasteboardType)dataType;
- (nullable NSString*)stringForType:(NSPasteboardType)dataType;
@end

NS_ASSUME_NONNULL_END
