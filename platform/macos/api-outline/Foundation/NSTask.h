// From: developer.apple.com, "NSTask". Binding: macios src/foundation.cs, of 2024 for what a URL names.
#pragma once

#import <Foundation/NSArray.h>
#import <Foundation/NSURL.h>

NS_ASSUME_NONNULL_BEGIN

@class NSError;

typedef NS_ENUM(NSInteger, NSTaskTerminationReason) {
  NSTaskTerminationReasonExit = 1,
  NSTaskTerminationReasonUncaughtSignal = 2,
};

@interface NSTask : NSObject
- (instancetype)init NS_DESIGNATED_INITIALIZER;
@property(nullable, copy) NSURL* executableURL API_AVAILABLE(macos(10.13));
@property(nullable, copy) NSArray<NSString*>* arguments;
@property(nullable, copy) NSURL* currentDirectoryURL API_AVAILABLE(macos(10.13));
/// Each a file handle or a pipe.
@property(nullable, retain) id standardInput;
@property(nullable, retain) id standardOutput;
@property(nullable, retain) id standardError;
- (BOOL)launchAndReturnError:(NSError* _Nullable* _Nullable)error API_AVAILABLE(macos(10.13));
- (void)terminate;
@property(readonly) int processIdentifier;
@property(readonly, getter=isRunning) BOOL running;
@property(readonly) int terminationStatus;
@property(readonly) NSTaskTerminationReason terminationReason;
@property(nullable, copy) void (^terminationHandler)(NSTask*);
@end

NS_ASSUME_NONNULL_END
