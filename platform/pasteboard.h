#pragma once

#include <functional>
#include <string>

namespace orvalle::platform {

/// The general clipboard, the one of copy and paste.
class Pasteboard {
 public:
  virtual ~Pasteboard() = default;
  /// Reads its plain text as UTF-8; empty when there is none. `done` is called once, on the main loop.
  virtual void readText(std::function<void(const std::string&)> done) = 0;
};

}  // namespace orvalle::platform
