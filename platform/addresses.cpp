#include "platform/addresses.h"

#include <algorithm>

#include "base/url.h"

namespace orvalle::platform {
namespace {

char lower(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

bool sameButForCase(std::string_view one, std::string_view other) {
  return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                    [](char a, char b) { return lower(a) == lower(b); });
}

bool isOneOf(const base::Url& url, std::initializer_list<std::string_view> schemes) {
  return url.host() && url.scheme() && std::any_of(schemes.begin(), schemes.end(), [&](auto scheme) {
           return sameButForCase(scheme, *url.scheme());
         });
}

}  // namespace

bool isAddress(std::string_view text, std::initializer_list<std::string_view> schemes) {
  const auto url = base::Url::parse(text);
  return url && isOneOf(*url, schemes);
}

bool isRedirect(int status) {
  return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

bool mayRedirect(std::string_view from, std::string_view to) {
  const auto start = base::Url::parse(from);
  const auto end = base::Url::parse(to);
  if (!start || !end) return false;
  if (isOneOf(*end, {"https"})) return true;
  return isOneOf(*start, {"http"}) && isOneOf(*end, {"http"}) && sameButForCase(*start->host(), *end->host());
}

}  // namespace orvalle::platform
