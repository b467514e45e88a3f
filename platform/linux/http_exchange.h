#pragma once

#include <libsoup/soup.h>

#include <functional>
#include <memory>
#include <string>

#include "platform/linux/glib_ptr.h"

namespace orvalle::platform::linuxos {

/// One request with all its redirects. It lives until it is over, and takes no notice of being cancelled
/// twice.
class HttpExchange : public std::enable_shared_from_this<HttpExchange> {
 public:
  /// What becomes of the answer. At most one of the ends is told, on the main loop, never inside `start`.
  struct Receiver {
    /// Where the body goes once the status is known; a null pointer gives up.
    std::function<GObjectPtr<GOutputStream>(SoupMessage*)> open;
    /// The body is there, whole.
    std::function<void(int status)> finished;
    std::function<void()> failed;
    /// A longer body fails; 0 for none that is too long.
    std::size_t longest = 0;
  };

  HttpExchange(SoupSession* session, Receiver receiver);
  HttpExchange(const HttpExchange&) = delete;
  HttpExchange& operator=(const HttpExchange&) = delete;

  void start(const std::string& url);
  /// Nothing is told any more.
  void cancel();

 private:
  using Step = void (HttpExchange::*)(GAsyncResult*);

  template <Step step>
  static void next(GObject*, GAsyncResult* result, gpointer data) {
    const std::unique_ptr<std::shared_ptr<HttpExchange>> self(
        static_cast<std::shared_ptr<HttpExchange>*>(data));
    if (!(*self)->over_) ((**self).*step)(result);
  }
  gpointer keep() { return new std::shared_ptr(shared_from_this()); }

  void send(GObjectPtr<SoupMessage> message);
  void answered(GAsyncResult* result);
  void follow();
  void read();
  void gotBytes(GAsyncResult* result);
  void wroteBytes(GAsyncResult* result);
  void closed(GAsyncResult* result);
  void fail();

  GObjectPtr<SoupSession> session_;
  Receiver receiver_;
  GObjectPtr<GCancellable> cancellable_ = GObjectPtr<GCancellable>::adopt(g_cancellable_new());
  GObjectPtr<SoupMessage> message_;
  GObjectPtr<GInputStream> body_;
  GObjectPtr<GOutputStream> output_;
  GlibPtr<GBytes> chunk_;
  std::size_t received_ = 0;
  int redirects_ = 0;
  bool over_ = false;
};

}  // namespace orvalle::platform::linuxos
