#import "platform/macos/http_exchange.h"

#import <dispatch/dispatch.h>

#include <utility>

#include "platform/addresses.h"
#include "platform/macos/text.h"

/// Kept by the session until that is invalid. Its queue is the main one.
@interface OrvalleExchangeDelegate : NSObject <NSURLSessionDataDelegate, NSURLSessionDownloadDelegate>
/// Null once nothing is to be told any more.
@property(nonatomic) orvalle::platform::macos::HttpExchange* exchange;
@end

@implementation OrvalleExchangeDelegate

- (void)URLSession:(NSURLSession*)session
                          task:(NSURLSessionTask*)task
    willPerformHTTPRedirection:(NSHTTPURLResponse*)response
                    newRequest:(NSURLRequest*)request
             completionHandler:(void (^)(NSURLRequest*))completionHandler {
  const bool follow = self.exchange && self.exchange->mayFollow(response.URL, request.URL);
  // Otherwise the answer is the one that wanted to send us there.
  completionHandler(follow ? request : nil);
}

- (void)URLSession:(NSURLSession*)session
          dataTask:(NSURLSessionDataTask*)dataTask
    didReceiveData:(NSData*)data {
  if (self.exchange) self.exchange->took(data);
}

- (void)URLSession:(NSURLSession*)session
                 downloadTask:(NSURLSessionDownloadTask*)downloadTask
    didFinishDownloadingToURL:(NSURL*)location {
  if (self.exchange) self.exchange->downloaded(location);
}

- (void)URLSession:(NSURLSession*)session task:(NSURLSessionTask*)task didCompleteWithError:(NSError*)error {
  if (self.exchange) self.exchange->completed(task.response, error == nil);
}

@end

namespace orvalle::platform::macos {
namespace {

NSURLSessionConfiguration* configuration(NSTimeInterval idle) {
  NSURLSessionConfiguration* made = NSURLSessionConfiguration.ephemeralSessionConfiguration;
  made.timeoutIntervalForRequest = idle;
  made.HTTPShouldSetCookies = NO;
  made.HTTPCookieStorage = nil;
  made.URLCredentialStorage = nil;
  made.URLCache = nil;
  // What arrives is what is kept: a small answer must not unfold into a large one.
  made.HTTPAdditionalHeaders = @{@"Accept-Encoding" : @"identity"};
  return made;
}

int statusOf(NSURLResponse* response) {
  if (![response isKindOfClass:[NSHTTPURLResponse class]]) return 0;
  return static_cast<int>(static_cast<NSHTTPURLResponse*>(response).statusCode);
}

std::string addressOf(NSURL* url) {
  return utf8Text(url.absoluteString);
}

}  // namespace

HttpExchange::HttpExchange(Receiver receiver)
    : receiver_(std::move(receiver)), delegate_([[OrvalleExchangeDelegate alloc] init]) {}

void HttpExchange::start(const std::string& url, std::chrono::seconds idle) {
  delegate_.exchange = this;
  NSURL* address = isAddress(url, {"http", "https"}) ? [NSURL URLWithString:nativeText(url)] : nil;
  if (!address) {
    OrvalleExchangeDelegate* delegate = delegate_;
    dispatch_async(dispatch_get_main_queue(), ^{
      if (delegate.exchange) delegate.exchange->fail();
    });
    return;
  }
  const auto seconds = static_cast<NSTimeInterval>(idle.count());
  session_ = [NSURLSession sessionWithConfiguration:configuration(seconds)
                                           delegate:delegate_
                                      delegateQueue:NSOperationQueue.mainQueue];
  NSURLRequest* request = [NSURLRequest requestWithURL:address
                                           cachePolicy:NSURLRequestReloadIgnoringLocalCacheData
                                       timeoutInterval:seconds];
  if (receiver_.take) {
    [[session_ dataTaskWithRequest:request] resume];
  } else {
    [[session_ downloadTaskWithRequest:request] resume];
  }
}

void HttpExchange::cancel() {
  delegate_.exchange = nullptr;
  [session_ invalidateAndCancel];
  session_ = nil;
}

bool HttpExchange::mayFollow(NSURL* from, NSURL* to) const {
  return mayRedirect(addressOf(from), addressOf(to));
}

void HttpExchange::took(NSData* piece) {
  if (!receiver_.take(piece)) fail();
}

void HttpExchange::downloaded(NSURL* file) {
  if (!receiver_.keep(file)) fail();
}

void HttpExchange::completed(NSURLResponse* response, bool whole) {
  const int status = statusOf(response);
  if (!whole || status == 0 || isRedirect(status)) return fail();
  cancel();
  const auto finished = std::move(receiver_.finished);
  finished(status);
}

void HttpExchange::fail() {
  cancel();
  const auto failed = std::move(receiver_.failed);
  failed();
}

}  // namespace orvalle::platform::macos
