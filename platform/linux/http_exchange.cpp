#include "platform/linux/http_exchange.h"

#include <string_view>
#include <utility>

#include "platform/addresses.h"

namespace orvalle::platform::linuxos {
namespace {

constexpr int kMostRedirects = 20;
constexpr gsize kChunk = 256 * 1024;

/// The request; empty for an address that is not of the web.
GObjectPtr<SoupMessage> makeRequest(GUri* uri) {
  if (!uri) return {};
  const std::string_view scheme = g_uri_get_scheme(uri);
  const char* host = g_uri_get_host(uri);
  if ((scheme != "http" && scheme != "https") || !host || !*host) return {};
  auto request = GObjectPtr<SoupMessage>::adopt(soup_message_new_from_uri(SOUP_METHOD_GET, uri));
  // Where it leads is looked at first.
  if (request) soup_message_add_flags(request.get(), SOUP_MESSAGE_NO_REDIRECT);
  return request;
}

bool mayLead(GUri* from, GUri* to) {
  const GlibPtr<char> start(g_uri_to_string(from));
  const GlibPtr<char> end(g_uri_to_string(to));
  return mayRedirect(start.get(), end.get());
}

}  // namespace

HttpExchange::HttpExchange(SoupSession* session, Receiver receiver)
    : session_(GObjectPtr<SoupSession>::share(session)), receiver_(std::move(receiver)) {}

void HttpExchange::start(const std::string& url) {
  const GlibPtr<GUri> uri(g_uri_parse(url.c_str(), static_cast<GUriFlags>(SOUP_HTTP_URI_FLAGS), nullptr));
  send(makeRequest(uri.get()));
}

void HttpExchange::cancel() {
  if (std::exchange(over_, true)) return;
  g_cancellable_cancel(cancellable_.get());
}

void HttpExchange::send(GObjectPtr<SoupMessage> message) {
  message_ = std::move(message);
  if (!message_) {
    g_idle_add(
        [](gpointer data) -> gboolean {
          const std::unique_ptr<std::shared_ptr<HttpExchange>> self(
              static_cast<std::shared_ptr<HttpExchange>*>(data));
          (*self)->fail();
          return G_SOURCE_REMOVE;
        },
        keep());
    return;
  }
  soup_session_send_async(session_.get(), message_.get(), G_PRIORITY_DEFAULT, cancellable_.get(),
                          next<&HttpExchange::answered>, keep());
}

void HttpExchange::answered(GAsyncResult* result) {
  body_ = GObjectPtr<GInputStream>::adopt(soup_session_send_finish(session_.get(), result, nullptr));
  if (!body_) return fail();
  if (isRedirect(static_cast<int>(soup_message_get_status(message_.get())))) return follow();
  output_ = receiver_.open(message_.get());
  if (!output_) return fail();
  read();
}

void HttpExchange::follow() {
  auto* headers = soup_message_get_response_headers(message_.get());
  const char* place = soup_message_headers_get_one(headers, "Location");
  if (!place || ++redirects_ > kMostRedirects) return fail();
  GUri* from = soup_message_get_uri(message_.get());
  const GlibPtr<GUri> to(
      g_uri_parse_relative(from, place, static_cast<GUriFlags>(SOUP_HTTP_URI_FLAGS), nullptr));
  if (!to || !mayLead(from, to.get())) return fail();
  body_ = {};
  send(makeRequest(to.get()));
}

void HttpExchange::read() {
  g_input_stream_read_bytes_async(body_.get(), kChunk, G_PRIORITY_DEFAULT, cancellable_.get(),
                                  next<&HttpExchange::gotBytes>, keep());
}

void HttpExchange::gotBytes(GAsyncResult* result) {
  chunk_.reset(g_input_stream_read_bytes_finish(body_.get(), result, nullptr));
  if (!chunk_) return fail();
  gsize size = 0;
  const void* bytes = g_bytes_get_data(chunk_.get(), &size);
  if (size == 0) {
    g_output_stream_close_async(output_.get(), G_PRIORITY_DEFAULT, cancellable_.get(),
                                next<&HttpExchange::closed>, keep());
    return;
  }
  received_ += size;
  if (receiver_.longest && received_ > receiver_.longest) return fail();
  g_output_stream_write_all_async(output_.get(), bytes, size, G_PRIORITY_DEFAULT, cancellable_.get(),
                                  next<&HttpExchange::wroteBytes>, keep());
}

void HttpExchange::wroteBytes(GAsyncResult* result) {
  if (!g_output_stream_write_all_finish(output_.get(), result, nullptr, nullptr)) return fail();
  read();
}

void HttpExchange::closed(GAsyncResult* result) {
  if (!g_output_stream_close_finish(output_.get(), result, nullptr)) return fail();
  over_ = true;
  receiver_.finished(static_cast<int>(soup_message_get_status(message_.get())));
}

void HttpExchange::fail() {
  if (std::exchange(over_, true)) return;
  g_cancellable_cancel(cancellable_.get());
  receiver_.failed();
}

}  // namespace orvalle::platform::linuxos
