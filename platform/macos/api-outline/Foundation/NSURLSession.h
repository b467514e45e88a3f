// From: developer.apple.com, "URL Loading System". Binding: xamarin-macios src/foundation.cs. The block types
// and what configuration and socket are asked for, with their nullability, also against objc2's generated
// Foundation/NSURLSession.rs (MIT).
#pragma once

#import <Foundation/NSDictionary.h>
#import <Foundation/NSURLRequest.h>
#import <Foundation/NSURLResponse.h>

NS_ASSUME_NONNULL_BEGIN

@class NSData;
@class NSError;
@class NSHTTPCookieStorage;
@class NSOperationQueue;
@class NSURLCache;
@class NSURLCredentialStorage;
@protocol NSURLSessionDelegate;

@interface NSURLSessionConfiguration : NSObject <NSCopying>
@property(class, readonly, strong) NSURLSessionConfiguration* ephemeralSessionConfiguration;
@property NSURLRequestCachePolicy requestCachePolicy;
@property NSTimeInterval timeoutIntervalForRequest;
@property BOOL HTTPShouldSetCookies;
@property(nullable, copy) NSDictionary* HTTPAdditionalHeaders;
@property(nullable, retain) NSHTTPCookieStorage* HTTPCookieStorage;
@property(nullable, retain) NSURLCredentialStorage* URLCredentialStorage;
@property(nullable, retain) NSURLCache* URLCache;
@end

@interface NSURLSessionTask : NSObject <NSCopying>
@property(nullable, readonly, copy) NSURLResponse* response;
- (void)cancel;
- (void)resume;
@end

@interface NSURLSessionDataTask : NSURLSessionTask
@end

@interface NSURLSessionDownloadTask : NSURLSessionTask
@end

typedef NS_ENUM(NSInteger, NSURLSessionWebSocketMessageType) {
  NSURLSessionWebSocketMessageTypeData = 0,
  NSURLSessionWebSocketMessageTypeString = 1,
};

API_AVAILABLE(macos(10.15))
@interface NSURLSessionWebSocketMessage : NSObject
- (instancetype)initWithString:(NSString*)string NS_DESIGNATED_INITIALIZER;
- (instancetype)init NS_UNAVAILABLE;
@property(readonly) NSURLSessionWebSocketMessageType type;
@property(nullable, readonly, copy) NSString* string;
@end

typedef NS_ENUM(NSInteger, NSURLSessionWebSocketCloseCode) {
  NSURLSessionWebSocketCloseCodeInvalid = 0,
  NSURLSessionWebSocketCloseCodeNormalClosure = 1000,
  NSURLSessionWebSocketCloseCodeGoingAway = 1001,
};

API_AVAILABLE(macos(10.15))
@interface NSURLSessionWebSocketTask : NSURLSessionTask
- (void)sendMessage:(NSURLSessionWebSocketMessage*)message
    completionHandler:(void (^)(NSError* _Nullable error))completionHandler;
- (void)receiveMessageWithCompletionHandler:(void (^)(NSURLSessionWebSocketMessage* _Nullable message,
                                                      NSError* _Nullable error))completionHandler;
- (void)cancelWithCloseCode:(NSURLSessionWebSocketCloseCode)closeCode reason:(nullable NSData*)reason;
@property NSInteger maximumMessageSize;
@end

@interface NSURLSession : NSObject
+ (NSURLSession*)sessionWithConfiguration:(NSURLSessionConfiguration*)configuration
                                 delegate:(nullable id<NSURLSessionDelegate>)delegate
                            delegateQueue:(nullable NSOperationQueue*)queue;
- (void)finishTasksAndInvalidate;
- (void)invalidateAndCancel;
- (NSURLSessionDataTask*)dataTaskWithRequest:(NSURLRequest*)request;
- (NSURLSessionDownloadTask*)downloadTaskWithRequest:(NSURLRequest*)request;
- (NSURLSessionWebSocketTask*)webSocketTaskWithURL:(NSURL*)url API_AVAILABLE(macos(10.15));
@end

@protocol NSURLSessionDelegate <NSObject>
@end

@protocol NSURLSessionTaskDelegate <NSURLSessionDelegate>
@optional
- (void)URLSession:(NSURLSession*)session
                          task:(NSURLSessionTask*)task
    willPerformHTTPRedirection:(NSHTTPURLResponse*)response
                    newRequest:(NSURLRequest*)request
             completionHandler:(void (^)(NSURLRequest* _Nullable))completionHandler;
- (void)URLSession:(NSURLSession*)session
                    task:(NSURLSessionTask*)task
    didCompleteWithError:(nullable NSError*)error;
@end

@protocol NSURLSessionDataDelegate <NSURLSessionTaskDelegate>
@optional
- (void)URLSession:(NSURLSession*)session
          dataTask:(NSURLSessionDataTask*)dataTask
    didReceiveData:(NSData*)data;
@end

@protocol NSURLSessionDownloadDelegate <NSURLSessionTaskDelegate>
- (void)URLSession:(NSURLSession*)session
                 downloadTask:(NSURLSessionDownloadTask*)downloadTask
    didFinishDownloadingToURL:(NSURL*)location;
@end

API_AVAILABLE(macos(10.15))
@protocol NSURLSessionWebSocketDelegate <NSURLSessionTaskDelegate>
@optional
- (void)URLSession:(NSURLSession*)session
          webSocketTask:(NSURLSessionWebSocketTask*)webSocketTask
    didOpenWithProtocol:(nullable NSString*)protocol;
- (void)URLSession:(NSURLSession*)session
       webSocketTask:(NSURLSessionWebSocketTask*)webSocketTask
    didCloseWithCode:(NSURLSessionWebSocketCloseCode)closeCode
              reason:(nullable NSData*)reason;
@end

NS_ASSUME_NONNULL_END
