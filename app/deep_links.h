#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "base/url.h"

namespace orvalle::app {

/// The user comes back from connecting a Google account in the browser.
struct GoogleReturn {
  /// The page's route that shows how it went.
  std::string path;
};

/// A one-time code signs the main window in.
struct SignIn {
  /// Where the code is exchanged: on the web application's own host, whatever the link says.
  base::Url address;
};

using DeepLink = std::variant<GoogleReturn, SignIn>;

/// What a link of the program's own scheme asks for, with the web application at `indirizzo`. Absent for
/// other schemes (case counts), hosts that we do not know, texts that are not valid URLs, and sign-in links
/// without a code.
std::optional<DeepLink> readDeepLink(std::string_view text, const base::Url& indirizzo);

}  // namespace orvalle::app
