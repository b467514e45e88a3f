#pragma once

#include <optional>
#include <string>

namespace orvalle::platform {

/// Which application the user has in front of them.
class Frontmost {
 public:
  virtual ~Frontmost() = default;
  /// The localised display name of the application in front, as UTF-8 and never empty. Absent when there is
  /// none, when it has no name, and where the system does not tell: never that of another moment. Reads no
  /// title.
  virtual std::optional<std::string> applicationName() = 0;
  /// The title of the focused window of the application that `applicationName` told of last, as UTF-8 and
  /// never empty. Absent when it has none, when the window is gone meanwhile, or where the system does not
  /// tell. Only for who has the user's consent.
  virtual std::optional<std::string> focusedWindowTitle() = 0;
};

}  // namespace orvalle::platform
