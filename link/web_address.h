#pragma once

#include <string>

#include "base/url.h"
#include "platform/defaults.h"
#include "platform/environment.h"

namespace orvalle::link {

/// Where the web application lives.
class WebAddress {
 public:
  /// `defaultAddress` must parse as a URL.
  WebAddress(const platform::Environment& environment, const platform::Defaults& defaults,
             std::string defaultAddress);

  /// Chosen afresh at each call: the environment variable ORVALLE_APP_URL, else the address stored under
  /// "appUrl", else the default one. A text that does not parse gives way to the default, not to the next in
  /// line.
  base::Url indirizzo() const;

 private:
  const platform::Environment& environment_;
  const platform::Defaults& defaults_;
  std::string defaultAddress_;
};

}  // namespace orvalle::link
