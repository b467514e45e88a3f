#pragma once

#include <functional>
#include <string>

#include "base/liveness.h"
#include "platform/bundle.h"
#include "platform/notification_centre.h"
#include "platform/settings_panes.h"
#include "platform/system_log.h"

namespace orvalle::services {

/// Notifications for the page, in the words that browsers use: "default", "denied", "granted". Outside a
/// bundle there is nothing to notify with, and everything is "denied".
class Notifiche : private platform::NotificationDelegate {
 public:
  using Completion = std::function<void(const std::string& word)>;

  /// What is passed must outlive this.
  Notifiche(platform::NotificationCentre& centre, platform::SettingsPanes& panes,
            const platform::Bundle& bundle, platform::SystemLog& log);
  Notifiche(const Notifiche&) = delete;
  Notifiche& operator=(const Notifiche&) = delete;
  ~Notifiche() override;

  /// Called when the user clicks on a notification.
  std::function<void()> onSelezionata;

  /// Starts to listen to the centre.
  void avvia();
  /// The permission as it is. `completion` is called once, on the main loop, possibly inside the call.
  void stato(Completion completion);
  /// The same, after asking a user who was never asked.
  void chiedi(Completion completion);
  /// Shows a notification, silently, in place of an earlier one with the same tag. Asks first when the user
  /// was never asked. What became of it is in the log only.
  void mostra(const std::string& titolo, const std::string& corpo, const std::string& tag);
  /// Opens the system's settings for notifications.
  void apriPreferenze();

 private:
  void richiediPermesso(Completion completion);
  void invia(const platform::Notification& notification);

  platform::Presentation willPresent() override;
  void didSelect() override;

  platform::NotificationCentre& centre_;
  platform::SettingsPanes& panes_;
  const platform::Bundle& bundle_;
  platform::SystemLog& log_;
  bool listening_ = false;
  base::Liveness liveness_;
};

}  // namespace orvalle::services
