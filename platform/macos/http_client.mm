#include "platform/http_client.h"

#import <Foundation/Foundation.h>

#include <memory>
#include <utility>

#include "platform/macos/factory.h"
#include "platform/macos/file_url.h"
#include "platform/macos/http_exchange.h"

namespace orvalle::platform::macos {
namespace {

namespace fs = std::filesystem;

/// Takes the file from where it was written, unless there is one already.
bool moveFile(NSURL* from, const fs::path& to) {
  std::error_code error;
  fs::permissions(filePath(from), fs::perms::owner_read | fs::perms::owner_write, error);
  return !error && [NSFileManager.defaultManager moveItemAtURL:from toURL:fileUrl(to) error:nil];
}

class SessionHttpClient final : public HttpClient {
 public:
  explicit SessionHttpClient(std::chrono::seconds idle) : idle_(idle) {}

  base::Subscription get(const std::string& url,
                         std::function<void(const std::optional<std::string>&)> done) override {
    const auto body = std::make_shared<std::string>();
    return start(url, {[body](NSData* piece) {
                         body->append(static_cast<const char*>(piece.bytes), piece.length);
                         return body->size() <= kLongestBody;
                       },
                       nullptr, [body, done](int) { done(*body); }, [done] { done({}); }});
  }

  base::Subscription download(const std::string& url, const fs::path& file,
                              std::function<void(std::optional<int>)> done) override {
    return start(url, {nullptr, [file](NSURL* written) { return moveFile(written, file); },
                       [done](int status) { done(status); }, [done] { done({}); }});
  }

 private:
  base::Subscription start(const std::string& url, HttpExchange::Receiver receiver) const {
    const auto exchange = std::make_shared<HttpExchange>(std::move(receiver));
    exchange->start(url, idle_);
    return base::Subscription([exchange] { exchange->cancel(); });
  }

  std::chrono::seconds idle_;
};

}  // namespace

std::unique_ptr<HttpClient> makeHttpClient(std::chrono::seconds idle) {
  return std::make_unique<SessionHttpClient>(idle);
}

}  // namespace orvalle::platform::macos
