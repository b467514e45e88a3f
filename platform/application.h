#pragma once

#include <string>
#include <vector>

#include "platform/menu.h"

namespace orvalle::platform {

/// What the application object tells its delegate, on the main loop.
class ApplicationDelegate : public ActionTarget {
 public:
  virtual void applicationDidFinishLaunching() = 0;
  /// The last call before the loop ends, however the end was asked for.
  virtual void applicationWillTerminate() = 0;
  virtual bool applicationShouldTerminateAfterLastWindowClosed() = 0;
  /// The user started the program again. True lets the platform do what it usually does then.
  virtual bool applicationShouldHandleReopen(bool hasVisibleWindows) = 0;
  /// Other programs hand over addresses of our scheme, or what they take for such: the texts as they were
  /// written. Never before `applicationDidFinishLaunching`.
  virtual void applicationOpen(const std::vector<std::string>& urls) = 0;
};

/// The running application: one for each user session.
class Application {
 public:
  virtual ~Application() = default;

  /// Runs the loop until `terminate`, telling `delegate` what happens. The delegate must outlive the call.
  /// Returns the process's exit status.
  virtual int run(ApplicationDelegate& delegate) = 0;
  /// Brings the program to the front, over the windows of other programs.
  virtual void activate() = 0;
  /// Ends the loop in order: `applicationWillTerminate`, then `run` returns.
  virtual void terminate() = 0;
  /// Who carries out the actions of items without a target: the focused window, then the application, then
  /// the delegate. Valid as long as the application.
  virtual ActionTarget& responderChain() = 0;
};

}  // namespace orvalle::platform
