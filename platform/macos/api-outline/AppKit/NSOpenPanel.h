// From: developer.apple.com, "NSOpenPanel", "NSSavePanel". Checked against: objc2's icrate,
// AppKit/NSOpenPanel.rs and NSSavePanel.rs (generated from the SDK's headers, MIT).
#pragma once

#import <AppKit/NSPanel.h>

NS_ASSUME_NONNULL_BEGIN

enum : NSModalResponse { NSModalResponseOK = 1 };

@interface NSSavePanel : NSPanel
@property(null_resettable, copy) NSString* prompt;
@property(null_resettable, copy) NSString* message;
- (void)beginWithCompletionHandler:(void (^)(NSModalResponse result))handler;
- (void)cancel:(nullable id)sender;
@end

@interface NSOpenPanel : NSSavePanel
+ (NSOpenPanel*)openPanel;
@property(readonly, copy) NSArray<NSURL*>* URLs;
@property BOOL canChooseFiles;
@property BOOL canChooseDirectories;
@property BOOL allowsMultipleSelection;
@end

NS_ASSUME_NONNULL_END
