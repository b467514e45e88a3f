// From: developer.apple.com, "Dispatch". Binding: xamarin-macios src/CoreFoundation/Dispatch.cs.
#pragma once

#import <Foundation/NSObject.h>

NS_ASSUME_NONNULL_BEGIN

typedef void (^dispatch_block_t)(void);

/// Under ARC a dispatch object is an Objective-C object.
@protocol OS_dispatch_queue <NSObject>
@end
typedef NSObject<OS_dispatch_queue>* dispatch_queue_t;

@protocol OS_dispatch_queue_attr <NSObject>
@end
typedef NSObject<OS_dispatch_queue_attr>* dispatch_queue_attr_t;
#define DISPATCH_QUEUE_SERIAL nullptr

typedef uint64_t dispatch_time_t;
enum : dispatch_time_t { DISPATCH_TIME_NOW = 0 };
enum : uint64_t { NSEC_PER_SEC = 1000000000, NSEC_PER_MSEC = 1000000 };

extern "C" {
dispatch_queue_t dispatch_get_main_queue(void);
dispatch_queue_t dispatch_queue_create(const char* _Nullable label, dispatch_queue_attr_t _Nullable attr);
void dispatch_async(dispatch_queue_t queue, dispatch_block_t block);
void dispatch_sync(dispatch_queue_t queue, NS_NOESCAPE dispatch_block_t block);
void dispatch_after(dispatch_time_t when, dispatch_queue_t queue, dispatch_block_t block);
dispatch_time_t dispatch_time(dispatch_time_t when, int64_t delta);
}

NS_ASSUME_NONNULL_END
