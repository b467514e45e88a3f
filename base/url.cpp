#include "base/url.h"

#include <algorithm>

#include <boost/url/parse.hpp>
#include <boost/url/url.hpp>
#include <boost/url/url_view.hpp>

#include "base/text.h"

namespace orvalle::base {
namespace {

namespace urls = boost::urls;

std::string copy(urls::string_view text) {
  return {text.data(), text.size()};
}

std::optional<urls::url_view> parseReference(std::string_view text) {
  const auto parsed = urls::parse_uri_reference({text.data(), text.size()});
  if (!parsed) return {};
  // The library takes "https://a:x" and "https://a@b@c" for an authority with a path right behind it. That is
  // no valid reference, and other programs, our web view among them, read another host there.
  const auto path = copy(parsed->encoded_path());
  if (parsed->has_authority() && !path.empty() && path.front() != '/') return {};
  return *parsed;
}

int hexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

/// Absent when the escapes are bad or the bytes are not UTF-8.
std::optional<std::string> percentDecoded(std::string_view text) {
  std::string decoded;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '%') {
      decoded += text[i];
      continue;
    }
    if (i + 2 >= text.size()) return {};
    const int high = hexDigit(text[i + 1]);
    const int low = hexDigit(text[i + 2]);
    if (high < 0 || low < 0) return {};
    decoded += static_cast<char>(high * 16 + low);
    i += 2;
  }
  if (!isValidUtf8(decoded)) return {};
  return decoded;
}

bool staysInQuery(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
         std::string_view("-._~!$'()*+,;:@/?").find(c) != std::string_view::npos;
}

QueryItem queryItem(std::string_view text) {
  const auto equals = text.find('=');
  QueryItem item;
  item.name = percentDecoded(text.substr(0, equals)).value_or("");
  if (equals != std::string_view::npos) item.value = percentDecoded(text.substr(equals + 1));
  return item;
}

}  // namespace

std::string encodeQueryText(std::string_view text) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  std::string encoded;
  for (const char c : text) {
    if (staysInQuery(c)) {
      encoded += c;
    } else {
      const auto byte = static_cast<unsigned char>(c);
      encoded += {'%', kDigits[byte >> 4], kDigits[byte & 15]};
    }
  }
  return encoded;
}

std::optional<UrlComponents> UrlComponents::parse(std::string_view text) {
  const auto parsed = parseReference(text);
  if (!parsed) return {};
  UrlComponents parts;
  if (parsed->has_scheme()) parts.scheme = copy(parsed->scheme());
  if (parsed->has_authority()) parts.authority = copy(parsed->encoded_authority());
  parts.path = copy(parsed->encoded_path());
  if (parsed->has_query()) parts.query = copy(parsed->encoded_query());
  if (parsed->has_fragment()) parts.fragment = copy(parsed->encoded_fragment());
  return parts;
}

std::optional<std::vector<QueryItem>> UrlComponents::queryItems() const {
  if (!query) return {};
  std::vector<QueryItem> items;
  std::string_view rest = *query;
  while (!rest.empty()) {
    const auto end = rest.find('&');
    items.push_back(queryItem(rest.substr(0, end)));
    rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
  }
  return items;
}

void UrlComponents::setQueryItems(const std::vector<QueryItem>& items) {
  std::string encoded;
  for (const auto& item : items) {
    if (!encoded.empty()) encoded += '&';
    encoded += encodeQueryText(item.name);
    if (item.value) encoded += '=' + encodeQueryText(*item.value);
  }
  query = encoded;
}

std::optional<std::string> UrlComponents::text() const {
  std::string whole;
  if (scheme) whole += *scheme + ':';
  if (authority) whole += "//" + *authority;
  whole += path;
  if (query) whole += '?' + *query;
  if (fragment) whole += '#' + *fragment;
  // Parts that do not fit together, such as an authority before a path without a slash, read back
  // differently.
  const auto again = parse(whole);
  if (!again || again->scheme != scheme || again->authority != authority || again->path != path) return {};
  return whole;
}

std::optional<Url> Url::parse(std::string_view text) {
  if (text.empty()) return {};
  const auto parsed = parseReference(text);
  if (!parsed) return {};
  Url url;
  url.text_ = text;
  if (parsed->has_scheme()) url.scheme_ = copy(parsed->scheme());
  if (!parsed->encoded_host().empty()) url.host_ = copy(parsed->encoded_host());
  return url;
}

std::optional<Url> parseOrigin(std::string_view address) {
  const auto colon = address.find(':');
  if (colon == std::string_view::npos) return {};
  const bool hasAuthority = address.substr(colon).starts_with("://");
  return Url::parse(address.substr(0, hasAuthority ? address.find_first_of("/?#", colon + 3) : colon + 1));
}

std::optional<Url> resolve(std::string_view reference, const Url& home) {
  const auto own = Url::parse(reference);
  if (!own) return {};
  if (own->scheme()) return own;
  const auto from = parseReference(home.text());
  const auto to = parseReference(reference);
  urls::url resolved;
  if (!from || !to || !urls::resolve(*from, *to, resolved)) return {};
  auto parts = UrlComponents::parse(copy(resolved.buffer()));
  if (!parts) return {};
  // The library keeps a path's steps above the root, which lead nowhere.
  while (parts->path == "/.." || parts->path.starts_with("/../"))
    parts->path.replace(0, std::min(parts->path.size(), std::string_view("/../").size()), "/");
  const auto text = parts->text();
  return text ? Url::parse(*text) : std::nullopt;
}

}  // namespace orvalle::base
