#pragma once

#include <functional>
#include <optional>
#include <string>

#include "link/snapshot.h"

namespace orvalle::link {

/// A live link to the user's session elsewhere. Callbacks run on the main loop; the owner guards them itself.
class Channel {
 public:
  virtual ~Channel() = default;
  /// Connects with the stored settings, or connects anew; the outcome comes through `onConnection`.
  virtual void connect() = 0;
  /// Sends a command word with an optional argument; lost silently when there is no link.
  virtual void command(const std::string& word, const std::optional<std::string>& id) = 0;

  std::function<void(const Snapshot&)> onState;
  std::function<void(bool connected)> onConnection;
};

}  // namespace orvalle::link
