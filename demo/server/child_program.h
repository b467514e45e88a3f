#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace orvalle::demo {

/// A program that was started and is waited for. Destroying this stops the waiting and leaves the program
/// alone.
class ChildProgram {
 public:
  ChildProgram() = default;
  ChildProgram(const ChildProgram&) = delete;
  ChildProgram& operator=(const ChildProgram&) = delete;
  virtual ~ChildProgram() = default;

  /// Asks the program to end (SIGTERM), and ends it by force when it still runs five seconds later.
  virtual void end() = 0;
};

/// Why a program could not be started, in the system's words.
struct StartFailure {
  std::string reason;
};

/// Starts the program, without arguments and without a shell, with these additions to the environment.
/// `onExit` runs once, on the main context that is the thread's default now, with the exit status (128 plus
/// the signal's number when a signal ended the program), unless the object is gone by then.
std::variant<std::unique_ptr<ChildProgram>, StartFailure> startProgram(
    const std::filesystem::path& program, const std::vector<std::pair<std::string, std::string>>& environment,
    std::function<void(int)> onExit);

}  // namespace orvalle::demo
