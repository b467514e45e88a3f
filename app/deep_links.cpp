#include "app/deep_links.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace orvalle::app {
namespace {

constexpr char kScheme[] = "orvalle";
constexpr char kGoogleHost[] = "google";
constexpr char kSignInHost[] = "accesso";
constexpr char kSignInPath[] = "/api/mac/entra";

/// The value of the link's first item of this name; absent when there is no such item or it has no value.
std::optional<std::string> firstValue(std::string_view link, std::string_view name) {
  const auto parts = base::UrlComponents::parse(link);
  const auto items = parts ? parts->queryItems() : std::nullopt;
  if (!items) return {};
  const auto found =
      std::find_if(items->begin(), items->end(), [&](const auto& item) { return item.name == name; });
  return found == items->end() ? std::nullopt : found->value;
}

/// Anybody may write a link, and the path goes into a script.
std::string withoutApostrophes(std::string text) {
  for (auto at = text.find('\''); at != std::string::npos; at = text.find('\'', at))
    text.replace(at, 1, "%27");
  return text;
}

GoogleReturn googleReturn(std::string_view link) {
  base::UrlComponents route;
  route.path = "/settings";
  route.setQueryItems({{"sezione", "google"}, {"esito", firstValue(link, "esito").value_or("ok")}});
  return {withoutApostrophes(route.text().value_or("/settings?sezione=google"))};
}

std::optional<SignIn> signIn(std::string_view link, const base::Url& indirizzo) {
  const auto code = firstValue(link, "codice");
  auto parts = base::UrlComponents::parse(indirizzo.text());
  if (!code || !parts) return {};
  parts->path = kSignInPath;
  parts->setQueryItems({{"codice", *code}});
  const auto text = parts->text();
  auto address = text ? base::Url::parse(*text) : std::nullopt;
  if (!address) return {};
  return SignIn{std::move(*address)};
}

}  // namespace

std::optional<DeepLink> readDeepLink(std::string_view text, const base::Url& indirizzo) {
  const auto url = base::Url::parse(text);
  if (!url || url->scheme() != kScheme) return {};
  if (url->host() == kGoogleHost) return googleReturn(text);
  if (url->host() == kSignInHost) return signIn(text, indirizzo);
  return {};
}

}  // namespace orvalle::app
