#include "tests/contract/http_rig.h"

/// What the client says of encodings, which other systems' clients undo by themselves.
namespace orvalle::contract {
namespace {

class HttpClientEncoding : public HttpRig {
 protected:
  WebSite site;
};

TEST_F(HttpClientEncoding, unpacksNothingOnTheWay) {
  std::string accepted = "-";
  site.handlers["/x.zip"] = [&](SoupServerMessage* message) {
    auto* headers = soup_server_message_get_request_headers(message);
    if (const char* encoding = soup_message_headers_get_list(headers, "Accept-Encoding")) accepted = encoding;
    soup_message_headers_append(soup_server_message_get_response_headers(message), "Content-Encoding",
                                "gzip");
    soup_server_message_set_status(message, SOUP_STATUS_OK, nullptr);
    soup_server_message_set_response(message, "text/plain", SOUP_MEMORY_STATIC, "non gzip", 8);
  };
  EXPECT_EQ(download(site.url("/x.zip")), "200");
  EXPECT_EQ(contents(), "non gzip");
  EXPECT_EQ(accepted, "-");
}

}  // namespace
}  // namespace orvalle::contract
