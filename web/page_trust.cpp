#include "web/page_trust.h"

#include <algorithm>
#include <utility>

#include "base/url.h"

namespace orvalle::web {
namespace {

/// Hosts are compared without regard to case here: the web view writes them in lower case, whatever was asked
/// for.
std::string lowerCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  return text;
}

std::optional<std::string> hostOf(const std::string& url) {
  const auto parsed = base::parseOrigin(url);
  if (!parsed || !parsed->host()) return {};
  return lowerCase(*parsed->host());
}

}  // namespace

void PageTrust::willLoad(const std::string& url) {
  awaited_ = hostOf(url);
}

void PageTrust::didStart(const std::string& url) {
  // A load that the page started just before ours may still come in between: it is told apart by its host.
  ownLoad_ = awaited_ && hostOf(url) == awaited_;
  if (ownLoad_) awaited_.reset();
}

void PageTrust::didCommit(const std::string& url) {
  current_ = hostOf(url);
  if (std::exchange(ownLoad_, false) && current_) loaded_.insert(*current_);
}

bool PageTrust::serves(const std::optional<std::string>& ownHost) const {
  return current_ && ((ownHost && *current_ == lowerCase(*ownHost)) || loaded_.contains(*current_));
}

}  // namespace orvalle::web
