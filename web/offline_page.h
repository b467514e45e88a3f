#pragma once

#include <string>

namespace orvalle::web {

/// The document shown when the web application cannot be reached. `description` is the platform's error text;
/// it is put in as it is.
std::string offlinePage(const std::string& description);

}  // namespace orvalle::web
