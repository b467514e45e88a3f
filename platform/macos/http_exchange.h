#pragma once

#import <Foundation/Foundation.h>

#include <chrono>
#include <functional>
#include <string>

@class OrvalleExchangeDelegate;

namespace orvalle::platform::macos {

/// One request with all its redirects. It takes no notice of being cancelled twice.
class HttpExchange {
 public:
  /// What becomes of the answer. At most one of the ends is told, on the main loop, never inside `start`; it
  /// may destroy the exchange.
  struct Receiver {
    /// A piece of the body; false gives up. A body that is taken in pieces is not written to a file.
    std::function<bool(NSData* _Nonnull)> take;
    /// The whole body lies in this file, which is gone after the call; false gives up.
    std::function<bool(NSURL* _Nonnull)> keep;
    /// The body is there, whole.
    std::function<void(int status)> finished;
    std::function<void()> failed;
  };

  explicit HttpExchange(Receiver receiver);
  HttpExchange(const HttpExchange&) = delete;
  HttpExchange& operator=(const HttpExchange&) = delete;
  ~HttpExchange() { cancel(); }

  /// Fails when nothing moves for `idle`.
  void start(const std::string& url, std::chrono::seconds idle);
  /// Nothing is told any more.
  void cancel();

  // What the session tells, on the main loop.
  bool mayFollow(NSURL* _Nullable from, NSURL* _Nullable to) const;
  void took(NSData* _Nonnull piece);
  void downloaded(NSURL* _Nonnull file);
  void completed(NSURLResponse* _Nullable response, bool whole);

 private:
  void fail();

  Receiver receiver_;
  OrvalleExchangeDelegate* _Nonnull delegate_;
  NSURLSession* _Nullable session_ = nil;
};

}  // namespace orvalle::platform::macos
