#include "link/web_address.h"

#include <utility>

namespace orvalle::link {

WebAddress::WebAddress(const platform::Environment& environment, const platform::Defaults& defaults,
                       std::string defaultAddress)
    : environment_(environment), defaults_(defaults), defaultAddress_(std::move(defaultAddress)) {}

base::Url WebAddress::indirizzo() const {
  auto text = environment_.variable("ORVALLE_APP_URL");
  if (!text) text = defaults_.text("appUrl");
  if (text) {
    if (auto url = base::Url::parse(*text)) return *url;
  }
  return base::Url::parse(defaultAddress_).value();
}

}  // namespace orvalle::link
