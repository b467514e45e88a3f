#pragma once

#include <webkit2/webkit2.h>

#include "platform/linux/glib_ptr.h"

namespace orvalle::platform::linuxos {

/// A web context that keeps cookies, local storage and cache in the user's own folders, readable by the user
/// only, and never saves a download. One is enough for a process; where the folders cannot be made, pages
/// work but nothing outlives the process.
GObjectPtr<WebKitWebContext> makeWebProfile();

}  // namespace orvalle::platform::linuxos
