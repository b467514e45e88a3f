#pragma once

#include <functional>

namespace orvalle::link {

/// The window in which the user pairs this desktop with the live session.
class Pairing {
 public:
  virtual ~Pairing() = default;
  virtual void show() = 0;

  /// Called on the main loop after new settings were stored; the owner guards it itself.
  std::function<void()> onSaved;
};

}  // namespace orvalle::link
