#include "platform/web_socket.h"

#import <Foundation/Foundation.h>
#import <dispatch/dispatch.h>

#include <memory>
#include <utility>

#include "base/text.h"
#include "platform/addresses.h"
#include "platform/macos/factory.h"
#include "platform/macos/text.h"

namespace orvalle::platform::macos {
namespace {

/// What a connection hears of the session, on the main loop.
class SessionListener {
 public:
  virtual ~SessionListener() = default;
  virtual void opened() = 0;
  virtual void received(NSURLSessionWebSocketMessage* message) = 0;
  /// The connection is at its end; messages that came before may still be told.
  virtual void closed() = 0;
  /// Nothing more can be received.
  virtual void failed() = 0;
  virtual void tooLate() = 0;
};

dispatch_time_t after(std::chrono::nanoseconds delay) {
  return dispatch_time(DISPATCH_TIME_NOW, delay.count());
}

}  // namespace
}  // namespace orvalle::platform::macos

/// Kept by the session until that is invalid. Its queue is the main one.
@interface OrvalleSocketDelegate : NSObject <NSURLSessionWebSocketDelegate>
/// Null once nobody listens any more.
@property(nonatomic) orvalle::platform::macos::SessionListener* listener;
/// Asks for the next message; the session gives one for each time that it is asked.
- (void)receiveFrom:(NSURLSessionWebSocketTask*)task;
@end

@implementation OrvalleSocketDelegate

- (void)URLSession:(NSURLSession*)session
          webSocketTask:(NSURLSessionWebSocketTask*)webSocketTask
    didOpenWithProtocol:(NSString*)protocol {
  if (self.listener) self.listener->opened();
}

- (void)URLSession:(NSURLSession*)session
       webSocketTask:(NSURLSessionWebSocketTask*)webSocketTask
    didCloseWithCode:(NSURLSessionWebSocketCloseCode)closeCode
              reason:(NSData*)reason {
  if (self.listener) self.listener->closed();
}

- (void)URLSession:(NSURLSession*)session task:(NSURLSessionTask*)task didCompleteWithError:(NSError*)error {
  if (self.listener) self.listener->closed();
}

/// The key in the address is for the server that the user chose, not for where that one points.
- (void)URLSession:(NSURLSession*)session
                          task:(NSURLSessionTask*)task
    willPerformHTTPRedirection:(NSHTTPURLResponse*)response
                    newRequest:(NSURLRequest*)request
             completionHandler:(void (^)(NSURLRequest*))completionHandler {
  completionHandler(nil);
}

- (void)receiveFrom:(NSURLSessionWebSocketTask*)task {
  [task receiveMessageWithCompletionHandler:^(NSURLSessionWebSocketMessage* message, NSError* error) {
    dispatch_async(dispatch_get_main_queue(), ^{
      if (!self.listener) return;
      if (!message || error) return self.listener->failed();
      [self receiveFrom:task];
      self.listener->received(message);
    });
  }];
}

@end

namespace orvalle::platform::macos {
namespace {

/// No cookies, no passwords, nothing kept.
NSURLSessionConfiguration* configuration() {
  NSURLSessionConfiguration* made = NSURLSessionConfiguration.ephemeralSessionConfiguration;
  made.HTTPShouldSetCookies = NO;
  made.HTTPCookieStorage = nil;
  made.URLCredentialStorage = nil;
  made.URLCache = nil;
  return made;
}

/// The owner may destroy this from inside any event: after one is told, nothing of this is touched.
class SessionWebSocket final : public WebSocket, public SessionListener {
 public:
  SessionWebSocket(const std::string& url, WebSocketEvents events)
      : events_(std::make_shared<WebSocketEvents>(std::move(events))) {
    delegate_.listener = this;
    OrvalleSocketDelegate* delegate = delegate_;
    NSURL* address = isAddress(url, {"ws", "wss"}) ? [NSURL URLWithString:nativeText(url)] : nil;
    if (address) {
      session_ = [NSURLSession sessionWithConfiguration:configuration()
                                               delegate:delegate
                                          delegateQueue:NSOperationQueue.mainQueue];
      task_ = [session_ webSocketTaskWithURL:address];
      task_.maximumMessageSize = kLongestMessage;
      [task_ resume];
    }
    dispatch_after(after(address ? kHandshakeTime : std::chrono::seconds(0)), dispatch_get_main_queue(), ^{
      if (delegate.listener) delegate.listener->tooLate();
    });
  }
  SessionWebSocket(const SessionWebSocket&) = delete;
  SessionWebSocket& operator=(const SessionWebSocket&) = delete;
  ~SessionWebSocket() override { cancel(kGoingAway); }

  void sendText(const std::string& text) override {
    if (!open_ || !base::isValidUtf8(text)) return;
    NSURLSessionWebSocketMessage* message =
        [[NSURLSessionWebSocketMessage alloc] initWithString:nativeText(text)];
    [task_ sendMessage:message
        completionHandler:^(NSError*){
        }];
  }

  void cancel(int code) override {
    if (!delegate_.listener) return;
    delegate_.listener = nullptr;
    if (!std::exchange(open_, false)) return [session_ invalidateAndCancel];
    [task_ cancelWithCloseCode:static_cast<NSURLSessionWebSocketCloseCode>(code) reason:nil];
    // A peer that does not answer the close is not waited for.
    NSURLSession* session = session_;
    dispatch_after(after(kFarewellTime), dispatch_get_main_queue(), ^{
      [session invalidateAndCancel];
    });
  }

  void opened() override {
    open_ = true;
    [delegate_ receiveFrom:task_];
    const auto events = events_;
    if (events->onOpen) events->onOpen();
  }

  void received(NSURLSessionWebSocketMessage* message) override {
    NSString* text = message.type == NSURLSessionWebSocketMessageTypeString ? message.string : nil;
    if (!text) return;
    const auto events = events_;
    if (events->onText) events->onText(utf8Text(text));
  }

  void closed() override {
    if (!open_) return failed();
    // What is being received will come to its end by itself.
    OrvalleSocketDelegate* delegate = delegate_;
    dispatch_after(after(kFarewellTime), dispatch_get_main_queue(), ^{
      if (delegate.listener) delegate.listener->failed();
    });
  }

  /// However many signs of it there are, a loss is told once.
  void failed() override {
    delegate_.listener = nullptr;
    open_ = false;
    [session_ invalidateAndCancel];
    const auto events = events_;
    if (events->onLost) events->onLost();
  }

  void tooLate() override {
    if (!open_) failed();
  }

 private:
  std::shared_ptr<WebSocketEvents> events_;
  OrvalleSocketDelegate* delegate_ = [[OrvalleSocketDelegate alloc] init];
  /// For this one connection: nothing of it remains for another.
  NSURLSession* session_ = nil;
  NSURLSessionWebSocketTask* task_ = nil;
  bool open_ = false;
};

class SessionWebSockets final : public WebSockets {
 public:
  std::unique_ptr<WebSocket> connect(const std::string& url, WebSocketEvents events) override {
    return std::make_unique<SessionWebSocket>(url, std::move(events));
  }
};

}  // namespace

std::unique_ptr<WebSockets> makeWebSockets() {
  return std::make_unique<SessionWebSockets>();
}

}  // namespace orvalle::platform::macos
