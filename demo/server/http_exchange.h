#pragma once

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace orvalle::demo {

/// The parts of an HTTP request that our answers depend on.
struct Request {
  std::string method;
  /// Path and query as they were sent, still percent-encoded; no query is the empty text.
  std::string path;
  std::string query;
  /// Header values; an absent header is the empty text.
  std::string host;
  std::string cookie;
  std::string ifNoneMatch;
  std::string fetchSite;
};

/// An HTTP answer. For HEAD requests it is built like for GET; the transport leaves the body out.
struct Response {
  unsigned status = 200;
  std::vector<std::pair<std::string, std::string>> headers;
  std::string body;
  /// Where it is not empty, what is in this file takes the body's place.
  std::filesystem::path file = {};
};

}  // namespace orvalle::demo
