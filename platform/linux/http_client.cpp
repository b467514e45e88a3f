#include "platform/http_client.h"

#include <memory>
#include <utility>

#include "platform/linux/factory.h"
#include "platform/linux/glib_ptr.h"
#include "platform/linux/http_exchange.h"

namespace orvalle::platform::linuxos {
namespace {

namespace fs = std::filesystem;

/// Whether what is announced fits on the disk; true when nothing is.
bool fits(SoupMessage* message, const fs::path& folder) {
  auto* headers = soup_message_get_response_headers(message);
  if (soup_message_headers_get_encoding(headers) != SOUP_ENCODING_CONTENT_LENGTH) return true;
  std::error_code error;
  const auto space = fs::space(folder, error);
  return error ||
         static_cast<std::uintmax_t>(soup_message_headers_get_content_length(headers)) <= space.available;
}

GObjectPtr<GOutputStream> createFile(const fs::path& path) {
  const auto file = GObjectPtr<GFile>::adopt(g_file_new_for_path(path.c_str()));
  return GObjectPtr<GOutputStream>::adopt(
      G_OUTPUT_STREAM(g_file_create(file.get(), G_FILE_CREATE_PRIVATE, nullptr, nullptr)));
}

class SoupHttpClient final : public HttpClient {
 public:
  explicit SoupHttpClient(std::chrono::seconds idle)
      : session_(GObjectPtr<SoupSession>::adopt(
            soup_session_new_with_options("timeout", static_cast<guint>(idle.count()), nullptr))) {
    // What arrives is what is kept: a small answer must not unfold into a large one.
    soup_session_remove_feature_by_type(session_.get(), SOUP_TYPE_CONTENT_DECODER);
    soup_session_remove_feature_by_type(session_.get(), SOUP_TYPE_CONTENT_SNIFFER);
  }

  base::Subscription get(const std::string& url,
                         std::function<void(const std::optional<std::string>&)> done) override {
    const auto memory = GObjectPtr<GOutputStream>::adopt(g_memory_output_stream_new_resizable());
    return start(url, {[memory](SoupMessage*) { return memory; },
                       [memory, done](int) {
                         auto* stream = G_MEMORY_OUTPUT_STREAM(memory.get());
                         const auto* bytes =
                             static_cast<const char*>(g_memory_output_stream_get_data(stream));
                         const auto size = g_memory_output_stream_get_data_size(stream);
                         done(std::string(bytes ? bytes : "", bytes ? size : 0));
                       },
                       [done] { done({}); }, kLongestBody});
  }

  base::Subscription download(const std::string& url, const fs::path& file,
                              std::function<void(std::optional<int>)> done) override {
    return start(url, {[file](SoupMessage* message) {
                         return fits(message, file.parent_path()) ? createFile(file)
                                                                  : GObjectPtr<GOutputStream>();
                       },
                       [done](int status) { done(status); }, [done] { done({}); }});
  }

 private:
  base::Subscription start(const std::string& url, HttpExchange::Receiver receiver) {
    const auto exchange = std::make_shared<HttpExchange>(session_.get(), std::move(receiver));
    exchange->start(url);
    return base::Subscription([exchange] { exchange->cancel(); });
  }

  GObjectPtr<SoupSession> session_;
};

}  // namespace

std::unique_ptr<HttpClient> makeHttpClient(std::chrono::seconds idle) {
  return std::make_unique<SoupHttpClient>(idle);
}

}  // namespace orvalle::platform::linuxos
