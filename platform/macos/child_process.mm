#import "platform/macos/child_process.h"

#import <Foundation/Foundation.h>
#import <dispatch/dispatch.h>
#include <unistd.h>

#include <csignal>
#include <memory>
#include <utility>

#include "platform/macos/task.h"

namespace orvalle::platform::macos {
namespace {

class Child : public std::enable_shared_from_this<Child> {
 public:
  explicit Child(std::function<void(const ProcessOutcome&)> done) : done_(std::move(done)) {}

  void start(const std::filesystem::path& program, const std::vector<std::string>& arguments) {
    NSPipe* pipe = [NSPipe pipe];
    NSTask* task = makeTask(program, arguments);
    task.standardOutput = pipe;
    task.standardError = pipe;
    dispatch_semaphore_t ended = dispatch_semaphore_create(0);
    task.terminationHandler = ^(NSTask*) {
      dispatch_semaphore_signal(ended);
    };
    task_ = task;
    const auto self = shared_from_this();
    if (auto error = launch(task)) {
      ProcessOutcome outcome;
      outcome.launchError = std::move(error);
      dispatch_async(dispatch_get_main_queue(), ^{
        self->report(outcome);
      });
      return;
    }
    // On a thread of its own: the pipe would fill up, and the process wait for us.
    dispatch_queue_t reader = dispatch_queue_create("app.orvalle.child", DISPATCH_QUEUE_SERIAL);
    dispatch_async(reader, ^{
      NSData* output = [pipe.fileHandleForReading readDataToEndOfFileAndReturnError:nil];
      dispatch_semaphore_wait(ended, DISPATCH_TIME_FOREVER);
      dispatch_async(dispatch_get_main_queue(), ^{
        self->report(self->outcome(output));
      });
    });
  }

  void cancel() {
    if (!std::exchange(done_, nullptr) || !task_.running) return;
    // Where it does not lead a group of its own, the system knows what it started.
    if (::kill(-task_.processIdentifier, SIGKILL) != 0) [task_ terminate];
  }

 private:
  ProcessOutcome outcome(NSData* output) const {
    ProcessOutcome outcome;
    if (output.length > 0) outcome.output.assign(static_cast<const char*>(output.bytes), output.length);
    const bool signalled = task_.terminationReason == NSTaskTerminationReasonUncaughtSignal;
    outcome.status = task_.terminationStatus + (signalled ? kSignalled : 0);
    return outcome;
  }

  void report(const ProcessOutcome& outcome) {
    if (const auto done = std::exchange(done_, nullptr)) done(outcome);
  }

  /// Empty once told or cancelled.
  std::function<void(const ProcessOutcome&)> done_;
  NSTask* task_ = nil;
};

}  // namespace

base::Subscription runChild(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                            std::function<void(const ProcessOutcome&)> done) {
  const auto child = std::make_shared<Child>(std::move(done));
  child->start(program, arguments);
  return base::Subscription([child] { child->cancel(); });
}

}  // namespace orvalle::platform::macos
