#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "base/subscription.h"

namespace orvalle::platform {

/// Added to the number of the signal that ended a process, as shells do.
inline constexpr int kSignalled = 128;

/// How a process ended.
struct ProcessOutcome {
  /// Why it could not be started; the rest then has no meaning.
  std::optional<std::string> launchError;
  /// The exit status; never 0 for a process that a signal ended.
  int status = 0;
  /// Standard output and standard error together, as they were written.
  std::string output;
};

/// Other processes. They get the environment and the working folder of this one, and nothing to read.
class Processes {
 public:
  virtual ~Processes() = default;
  /// Has the program in `bundle` started as soon as this process has ended, as a process of its own. Asked
  /// again, it is still started once. False when that could not be arranged.
  virtual bool startAfterExit(const std::filesystem::path& bundle) = 0;
  /// Runs a program to its end and reads what it says meanwhile. `done` is called once, on the main loop and
  /// never inside this call, unless the subscription goes first: that ends the process and all it started.
  [[nodiscard]] virtual base::Subscription run(const std::filesystem::path& program,
                                               const std::vector<std::string>& arguments,
                                               std::function<void(const ProcessOutcome&)> done) = 0;
  /// Starts a program that lives on when this process ends, and holds none of its files. The reason when it
  /// could not be started.
  virtual std::optional<std::string> startDetached(const std::filesystem::path& program,
                                                   const std::vector<std::string>& arguments) = 0;
  /// The number of this process.
  virtual int ownId() const = 0;
};

}  // namespace orvalle::platform
