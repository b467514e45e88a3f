#include "platform/notification_centre.h"

#import <Foundation/Foundation.h>
#import <UserNotifications/UserNotifications.h>
#import <dispatch/dispatch.h>

#include <memory>
#include <utility>

#include "base/liveness.h"
#include "platform/macos/factory.h"
#include "platform/macos/text.h"

/// Hears the system's centre, on whatever thread, and answers for our delegate on the main loop.
@interface OrvalleNotificationDelegate : NSObject <UNUserNotificationCenterDelegate>
/// Null once nobody listens any more.
@property(nonatomic) orvalle::platform::NotificationDelegate* listener;
@end

@implementation OrvalleNotificationDelegate

- (void)userNotificationCenter:(UNUserNotificationCenter*)center
       willPresentNotification:(UNNotification*)notification
         withCompletionHandler:(void (^)(UNNotificationPresentationOptions))completionHandler {
  dispatch_async(dispatch_get_main_queue(), ^{
    UNNotificationPresentationOptions options = 0;
    if (self.listener) {
      const auto wanted = self.listener->willPresent();
      if (wanted.banner) options |= UNNotificationPresentationOptionBanner;
      if (wanted.list) options |= UNNotificationPresentationOptionList;
      if (wanted.sound) options |= UNNotificationPresentationOptionSound;
      if (wanted.badge) options |= UNNotificationPresentationOptionBadge;
    }
    completionHandler(options);
  });
}

- (void)userNotificationCenter:(UNUserNotificationCenter*)center
    didReceiveNotificationResponse:(UNNotificationResponse*)response
             withCompletionHandler:(void (^)(void))completionHandler {
  const bool selected = [response.actionIdentifier isEqualToString:UNNotificationDefaultActionIdentifier];
  dispatch_async(dispatch_get_main_queue(), ^{
    if (selected && self.listener) self.listener->didSelect();
    completionHandler();
  });
}

@end

namespace orvalle::platform::macos {
namespace {

NotificationStatus toStatus(NSInteger status) {
  // The system for phones has one more, which is not declared for this one.
  constexpr NSInteger kEphemeral = 4;
  switch (status) {
    case UNAuthorizationStatusNotDetermined:
      return NotificationStatus::NotDetermined;
    case UNAuthorizationStatusDenied:
      return NotificationStatus::Denied;
    case UNAuthorizationStatusAuthorized:
      return NotificationStatus::Authorised;
    case UNAuthorizationStatusProvisional:
      return NotificationStatus::Provisional;
    case kEphemeral:
      return NotificationStatus::Ephemeral;
    default:
      return NotificationStatus::Unknown;
  }
}

std::optional<std::string> description(NSError* error) {
  return error ? std::optional(utf8Text(error.localizedDescription)) : std::nullopt;
}

/// Calls `done` on the main loop, which also lets go of it.
template <typename... Arguments>
void finish(std::function<void(Arguments...)>* done, Arguments... arguments) {
  dispatch_async(dispatch_get_main_queue(), ^{
    const std::unique_ptr<std::function<void(Arguments...)>> held(done);
    (*held)(arguments...);
  });
}

class UserNotifications final : public NotificationCentre {
 public:
  UserNotifications() {
    // Outside a bundle there is none, and asking for it would end the program.
    if (NSBundle.mainBundle.bundleIdentifier) centre_ = UNUserNotificationCenter.currentNotificationCenter;
  }
  UserNotifications(const UserNotifications&) = delete;
  UserNotifications& operator=(const UserNotifications&) = delete;
  ~UserNotifications() override { setDelegate(nullptr); }

  void setDelegate(NotificationDelegate* delegate) override {
    delegate_.listener = delegate;
    centre_.delegate = delegate ? delegate_ : nil;
  }

  void status(std::function<void(NotificationStatus)> done) override {
    if (!centre_) return done(NotificationStatus::Denied);
    auto* held = new std::function<void(NotificationStatus)>(liveness_.guard(std::move(done)));
    [centre_ getNotificationSettingsWithCompletionHandler:^(UNNotificationSettings* settings) {
      finish(held, toStatus(settings.authorizationStatus));
    }];
  }

  void requestAuthorisation(const NotificationOptions& options,
                            std::function<void(bool, std::optional<std::string>)> done) override {
    if (!centre_) return done(false, {});
    UNAuthorizationOptions asked = 0;
    if (options.alert) asked |= UNAuthorizationOptionAlert;
    if (options.sound) asked |= UNAuthorizationOptionSound;
    if (options.badge) asked |= UNAuthorizationOptionBadge;
    auto* held = new std::function<void(bool, std::optional<std::string>)>(liveness_.guard(std::move(done)));
    [centre_ requestAuthorizationWithOptions:asked
                           completionHandler:^(BOOL granted, NSError* error) {
                             finish(held, granted != NO, description(error));
                           }];
  }

  void add(const Notification& notification, std::function<void(std::optional<std::string>)> done) override {
    if (!centre_) return done("nessun centro notifiche");
    UNMutableNotificationContent* content = [[UNMutableNotificationContent alloc] init];
    content.title = nativeText(notification.title);
    content.body = nativeText(notification.body);
    content.sound = nil;
    UNNotificationRequest* request =
        [UNNotificationRequest requestWithIdentifier:nativeText(notification.identifier)
                                             content:content
                                             trigger:nil];
    auto* held = new std::function<void(std::optional<std::string>)>(liveness_.guard(std::move(done)));
    [centre_ addNotificationRequest:request
              withCompletionHandler:^(NSError* error) {
                finish(held, description(error));
              }];
  }

 private:
  UNUserNotificationCenter* centre_ = nil;
  OrvalleNotificationDelegate* delegate_ = [[OrvalleNotificationDelegate alloc] init];
  base::Liveness liveness_;
};

}  // namespace

std::unique_ptr<NotificationCentre> makeNotificationCentre() {
  return std::make_unique<UserNotifications>();
}

}  // namespace orvalle::platform::macos
