#pragma once

namespace orvalle::platform {

/// Told, on the main loop, when the user can no longer be at work, and when they can again.
class SessionDelegate {
 public:
  virtual ~SessionDelegate() = default;
  /// The machine goes to sleep as soon as this returns. Timers may still run for a moment.
  virtual void willSleep() = 0;
  /// Not always after `willSleep`: also when the sleep was given up.
  virtual void didWake() = 0;
  /// The screen was locked, or covered by a screen saver; soon after the start where the system says that it
  /// is so already. Each only once in turn.
  virtual void didLock() = 0;
  virtual void didUnlock() = 0;
};

/// The user's session as far as it stands still. Silent where the system does not tell.
class SessionWatch {
 public:
  virtual ~SessionWatch() = default;
  /// Null pointer for nobody. The delegate must outlive this or be taken back.
  virtual void setDelegate(SessionDelegate* delegate) = 0;
};

}  // namespace orvalle::platform
