// From: developer.apple.com, "NSFileHandle" and "NSPipe". Binding: xamarin-macios src/foundation.cs.
#pragma once

#import <Foundation/NSObject.h>

NS_ASSUME_NONNULL_BEGIN

@class NSData;
@class NSError;

@interface NSFileHandle : NSObject
@property(class, readonly, strong) NSFileHandle* fileHandleWithNullDevice;
- (nullable NSData*)readDataToEndOfFileAndReturnError:(NSError* _Nullable* _Nullable)error
    API_AVAILABLE(macos(10.15));
@end

@interface NSPipe : NSObject
@property(readonly, retain) NSFileHandle* fileHandleForReading;
+ (NSPipe*)pipe;
@end

NS_ASSUME_NONNULL_END
