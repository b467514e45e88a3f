#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "base/subscription.h"

namespace orvalle::platform {

/// Of a body that is kept in memory, in bytes.
inline constexpr std::size_t kLongestBody = 1024 * 1024;

/// Plain requests to web servers, without the web view's cookies. Certificates are always checked. Redirects
/// are followed, except to an unencrypted address that lies on another host or comes after an encrypted one.
/// A request on which nothing moves for 60 seconds fails. Each `done` is called once, on the main loop and
/// never inside the call that asks, unless the subscription goes first: that cancels the request.
class HttpClient {
 public:
  virtual ~HttpClient() = default;
  /// Fetches what is at `url`. `done` gets the whole body, whatever the status that came with it; absent when
  /// no answer arrived, or one longer than `kLongestBody`.
  [[nodiscard]] virtual base::Subscription get(
      const std::string& url, std::function<void(const std::optional<std::string>& body)> done) = 0;
  /// Writes what is at `url` to `file`, which must not exist and is made for the user alone. `done` gets the
  /// status that came with a body that arrived whole. It is absent otherwise, also when the disk had no room
  /// for it; what is in the file then has no meaning.
  [[nodiscard]] virtual base::Subscription download(const std::string& url, const std::filesystem::path& file,
                                                    std::function<void(std::optional<int> status)> done) = 0;
};

}  // namespace orvalle::platform
