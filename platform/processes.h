#pragma once

#include <filesystem>

namespace orvalle::platform {

/// Other processes.
class Processes {
 public:
  virtual ~Processes() = default;
  /// Has the program in `bundle` started as soon as this process has ended, as a process of its own. Asked
  /// again, it is still started once. False when that could not be arranged.
  virtual bool startAfterExit(const std::filesystem::path& bundle) = 0;
};

}  // namespace orvalle::platform
