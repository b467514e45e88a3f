#include "platform/addresses.h"

#include <gtest/gtest.h>

namespace orvalle::platform {
namespace {

TEST(Addresses, needASchemeOfTheGivenOnesAndAHost) {
  for (const char* text : {"ws://host", "wss://host:4000/a?b=c", "WS://Host/", "ws://[::1]/", "ws://u@h/"})
    EXPECT_TRUE(isAddress(text, {"ws", "wss"})) << text;
  for (const char* text : {"", "host", "//host/", "ws:", "ws://", "ws:///path", "ws://:80/", "http://host/",
                           "wsx://host/", "ws://a b/", "ws://ex%zzample/", "ws://[::1", "localhost:4000"})
    EXPECT_FALSE(isAddress(text, {"ws", "wss"})) << text;
  EXPECT_FALSE(isAddress("ws://host", {}));
}

TEST(Addresses, knowTheAnswersThatSendElsewhere) {
  for (const int status : {301, 302, 303, 307, 308}) EXPECT_TRUE(isRedirect(status)) << status;
  for (const int status : {0, 200, 300, 304, 305, 306, 309, 404}) EXPECT_FALSE(isRedirect(status)) << status;
}

TEST(Addresses, stayEncryptedOrOnTheirHost) {
  EXPECT_TRUE(mayRedirect("https://a/", "https://b/x"));
  EXPECT_TRUE(mayRedirect("http://a/", "https://b/x"));
  EXPECT_TRUE(mayRedirect("http://a:1/", "http://A:2/x"));
  EXPECT_TRUE(mayRedirect("HTTP://a/", "Https://a/"));
  EXPECT_FALSE(mayRedirect("https://a/", "http://a/x"));
  EXPECT_FALSE(mayRedirect("http://a/", "http://b/x"));
  EXPECT_FALSE(mayRedirect("http://a/", "http://a.b/x"));
}

TEST(Addresses, leadToTheWebOnly) {
  for (const char* to : {"file:///etc/hostname", "ftp://a/x", "data:,x", "https:", "https:///x", "x", ""})
    EXPECT_FALSE(mayRedirect("http://a/", to)) << to;
  EXPECT_FALSE(mayRedirect("ftp://a/", "http://a/"));
  EXPECT_FALSE(mayRedirect("", "http://a/"));
}

}  // namespace
}  // namespace orvalle::platform
