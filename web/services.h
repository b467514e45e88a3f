#pragma once

#include "services/archivio.h"

namespace orvalle::web {

/// The desktop services that the page can reach over the bridge. Each outlives the window.
struct Services {
  services::Archivio& archivio;
};

}  // namespace orvalle::web
