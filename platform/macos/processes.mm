#include "platform/processes.h"

#import <Foundation/Foundation.h>
#include <unistd.h>

#include "platform/macos/child_process.h"
#include "platform/macos/factory.h"
#include "platform/macos/restart_command.h"
#include "platform/macos/task.h"

namespace orvalle::platform::macos {
namespace {

class TaskProcesses final : public Processes {
 public:
  bool startAfterExit(const std::filesystem::path& bundle) override {
    if (arranged_) return true;
    const auto command = restartCommand(bundle);
    arranged_ = !startDetached(command.path, command.arguments);
    return arranged_;
  }

  base::Subscription run(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                         std::function<void(const ProcessOutcome&)> done) override {
    return runChild(program, arguments, std::move(done));
  }

  std::optional<std::string> startDetached(const std::filesystem::path& program,
                                           const std::vector<std::string>& arguments) override {
    NSTask* task = makeTask(program, arguments);
    // The bundle's folder must be free to go.
    task.currentDirectoryURL = [NSURL fileURLWithPath:@"/"];
    return launch(task);
  }

  int ownId() const override { return ::getpid(); }

 private:
  bool arranged_ = false;
};

}  // namespace

std::unique_ptr<Processes> makeProcesses() {
  return std::make_unique<TaskProcesses>();
}

}  // namespace orvalle::platform::macos
