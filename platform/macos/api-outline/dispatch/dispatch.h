// From: developer.apple.com, "Dispatch". Binding: xamarin-macios src/CoreFoundation/Dispatch.cs and
// DispatchSource.cs; of the semaphores there is none.
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

@protocol OS_dispatch_source <NSObject>
@end
typedef NSObject<OS_dispatch_source>* dispatch_source_t;
typedef const struct dispatch_source_type_s* dispatch_source_type_t;

@protocol OS_dispatch_semaphore <NSObject>
@end
typedef NSObject<OS_dispatch_semaphore>* dispatch_semaphore_t;

typedef void (*dispatch_function_t)(void* _Nullable);

typedef uint64_t dispatch_time_t;
enum : dispatch_time_t { DISPATCH_TIME_NOW = 0, DISPATCH_TIME_FOREVER = ~0ULL };
enum : uint64_t { NSEC_PER_SEC = 1000000000, NSEC_PER_MSEC = 1000000 };

extern "C" {
dispatch_queue_t dispatch_get_main_queue(void);
dispatch_queue_t dispatch_queue_create(const char* _Nullable label, dispatch_queue_attr_t _Nullable attr);
void dispatch_async(dispatch_queue_t queue, dispatch_block_t block);
void dispatch_async_f(dispatch_queue_t queue, void* _Nullable context, dispatch_function_t work);
void dispatch_sync(dispatch_queue_t queue, NS_NOESCAPE dispatch_block_t block);
void dispatch_after(dispatch_time_t when, dispatch_queue_t queue, dispatch_block_t block);
extern const struct dispatch_source_type_s _dispatch_source_type_signal;
#define DISPATCH_SOURCE_TYPE_SIGNAL (&_dispatch_source_type_signal)
dispatch_time_t dispatch_time(dispatch_time_t when, int64_t delta);

extern const struct dispatch_source_type_s _dispatch_source_type_timer;
#define DISPATCH_SOURCE_TYPE_TIMER (&_dispatch_source_type_timer)
dispatch_source_t dispatch_source_create(dispatch_source_type_t type, uintptr_t handle, uintptr_t mask,
                                         dispatch_queue_t _Nullable queue);
void dispatch_source_set_event_handler(dispatch_source_t source, dispatch_block_t _Nullable handler);
void dispatch_source_set_timer(dispatch_source_t source, dispatch_time_t start, uint64_t interval,
                               uint64_t leeway);
void dispatch_source_cancel(dispatch_source_t source);
/// Of a source, as used here.
void dispatch_resume(dispatch_source_t object);

dispatch_semaphore_t dispatch_semaphore_create(intptr_t value);
intptr_t dispatch_semaphore_signal(dispatch_semaphore_t dsema);
intptr_t dispatch_semaphore_wait(dispatch_semaphore_t dsema, dispatch_time_t timeout);
}

NS_ASSUME_NONNULL_END
