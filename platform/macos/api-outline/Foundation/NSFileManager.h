// From: developer.apple.com, "NSFileManager". Binding: xamarin-macios src/foundation.cs.
#pragma once

#import <Foundation/NSArray.h>
#import <Foundation/NSPathUtilities.h>
#import <Foundation/NSURL.h>

NS_ASSUME_NONNULL_BEGIN

@class NSError;

@interface NSFileManager : NSObject
@property(class, readonly, strong) NSFileManager* defaultManager;
- (NSArray<NSURL*>*)URLsForDirectory:(NSSearchPathDirectory)directory
                           inDomains:(NSSearchPathDomainMask)domainMask;
- (BOOL)moveItemAtURL:(NSURL*)srcURL toURL:(NSURL*)dstURL error:(NSError* _Nullable* _Nullable)error;
@end

NS_ASSUME_NONNULL_END
