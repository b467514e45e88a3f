#pragma once

#include <functional>
#include <optional>
#include <string>

namespace orvalle::platform {

/// Whether the user lets the program notify them.
enum class NotificationStatus { NotDetermined, Denied, Authorised, Provisional, Ephemeral, Unknown };

struct Notification {
  /// A later notification with the same identifier takes the place of this one.
  std::string identifier;
  /// Literal texts, no markup.
  std::string title;
  std::string body;
};

/// How a notification appears while the program is in front.
struct Presentation {
  bool banner = false;
  bool list = false;
  bool sound = false;
  bool badge = false;
  bool operator==(const Presentation&) const = default;
};

/// What the user is asked to allow.
struct NotificationOptions {
  bool alert = false;
  bool sound = false;
  bool badge = false;
  bool operator==(const NotificationOptions&) const = default;
};

/// What the centre asks and tells, on the main loop.
class NotificationDelegate {
 public:
  virtual ~NotificationDelegate() = default;
  /// How to show a notification that comes while the program is in front. Not asked by systems that leave no
  /// choice and show it.
  virtual Presentation willPresent() = 0;
  /// The user has clicked on one of our notifications.
  virtual void didSelect() = 0;
};

/// The system's notifications. They appear at once and without a sound. Every `done` is called once, on the
/// main loop, possibly inside the call; never once the centre is gone.
class NotificationCentre {
 public:
  virtual ~NotificationCentre() = default;

  /// Who is told; null pointer for nobody. The delegate must outlive its being one.
  virtual void setDelegate(NotificationDelegate* delegate) = 0;
  /// The status as it is now; "denied" where there is nothing to notify with.
  virtual void status(std::function<void(NotificationStatus)> done) = 0;
  /// Lets the system ask the user, once in the program's life. With a failure comes its description.
  virtual void requestAuthorisation(
      const NotificationOptions& options,
      std::function<void(bool granted, std::optional<std::string> error)> done) = 0;
  /// Shows the notification. A failure comes with its description.
  virtual void add(const Notification& notification,
                   std::function<void(std::optional<std::string> error)> done) = 0;
};

}  // namespace orvalle::platform
