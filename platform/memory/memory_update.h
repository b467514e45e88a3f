#pragma once

#include <charconv>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/http_client.h"
#include "platform/package_tools.h"

/// Twins of what the updates need: tests play the server and the tools.
namespace orvalle::platform::memory {

/// A request as its server sees it.
struct HttpRequest {
  std::string url;
  /// Where a download goes; empty for a page.
  std::filesystem::path file;
  std::function<void(const std::optional<std::string>&)> gotBody;
  std::function<void(std::optional<int>)> gotFile;
  bool cancelled = false;
};

class MemoryHttpClient : public HttpClient {
 public:
  base::Subscription get(const std::string& url,
                         std::function<void(const std::optional<std::string>&)> done) override {
    return add({url, {}, std::move(done), {}});
  }
  base::Subscription download(const std::string& url, const std::filesystem::path& file,
                              std::function<void(std::optional<int>)> done) override {
    return add({url, file, {}, std::move(done)});
  }
  /// Everything that was ever asked for, in order.
  std::vector<std::shared_ptr<HttpRequest>> requests;

 private:
  base::Subscription add(HttpRequest request) {
    auto made = std::make_shared<HttpRequest>(std::move(request));
    requests.push_back(made);
    return base::Subscription([made] { made->cancelled = true; });
  }
};

class MemoryPackageTools : public PackageTools {
 public:
  Command list(const std::filesystem::path& archive) const override { return {"/bin/list", {archive}}; }
  /// A listing is the number of bytes, or anything else as the reason against it.
  std::variant<std::uintmax_t, std::string> judge(const std::string& listing) const override {
    std::uintmax_t bytes = 0;
    const auto* end = listing.data() + listing.size();
    if (std::from_chars(listing.data(), end, bytes).ptr == end && !listing.empty()) return bytes;
    return listing;
  }
  Command unpack(const std::filesystem::path& archive, const std::filesystem::path& folder) const override {
    return {"/bin/unpack", {archive, folder}};
  }
  Command verify(const std::filesystem::path& bundle) const override { return {"/bin/verify", {bundle}}; }
  std::string copyLine() const override { return R"(copy "$3" "$2")"; }
  std::string openLine() const override { return R"(open "$2")"; }
};

}  // namespace orvalle::platform::memory
