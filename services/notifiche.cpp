#include "services/notifiche.h"

#include <utility>

namespace orvalle::services {
namespace {

using platform::NotificationStatus;

constexpr char kDefault[] = "default";
constexpr char kDenied[] = "denied";
constexpr char kGranted[] = "granted";

const char* wordFor(NotificationStatus status) {
  switch (status) {
    case NotificationStatus::Denied:
      return kDenied;
    case NotificationStatus::Authorised:
    case NotificationStatus::Provisional:
    case NotificationStatus::Ephemeral:
      return kGranted;
    case NotificationStatus::NotDetermined:
    case NotificationStatus::Unknown:
      break;
  }
  return kDefault;
}

}  // namespace

Notifiche::Notifiche(platform::NotificationCentre& centre, platform::SettingsPanes& panes,
                     const platform::Bundle& bundle, platform::SystemLog& log)
    : centre_(centre), panes_(panes), bundle_(bundle), log_(log) {}

Notifiche::~Notifiche() {
  if (listening_) centre_.setDelegate(nullptr);
}

void Notifiche::avvia() {
  if (!bundle_.identifier()) return;
  listening_ = true;
  centre_.setDelegate(this);
}

void Notifiche::stato(Completion completion) {
  if (!bundle_.identifier()) return completion(kDenied);
  centre_.status(liveness_.guard(
      [completion = std::move(completion)](NotificationStatus status) { completion(wordFor(status)); }));
}

void Notifiche::chiedi(Completion completion) {
  if (!bundle_.identifier()) return completion(kDenied);
  centre_.status(
      liveness_.guard([this, completion = std::move(completion)](NotificationStatus status) mutable {
        if (status == NotificationStatus::NotDetermined) {
          richiediPermesso(std::move(completion));
        } else {
          stato(std::move(completion));
        }
      }));
}

void Notifiche::richiediPermesso(Completion completion) {
  centre_.requestAuthorisation(
      {.alert = true, .sound = true, .badge = true},
      liveness_.guard(
          [this, completion = std::move(completion)](bool granted, const std::optional<std::string>& error) {
            const char* word = granted ? kGranted : kDenied;
            log_.write(std::string("Orvalle: permesso notifiche = ") + word + (error ? " — " + *error : ""));
            completion(word);
          }));
}

void Notifiche::mostra(const std::string& titolo, const std::string& corpo, const std::string& tag) {
  chiedi(liveness_.guard(
      [this, notification = platform::Notification{tag, titolo, corpo}](const std::string& word) {
        if (word == kGranted) {
          invia(notification);
        } else {
          log_.write("Orvalle: notifica saltata, permesso = " + word);
        }
      }));
}

void Notifiche::invia(const platform::Notification& notification) {
  centre_.add(
      notification,
      liveness_.guard([this, titolo = notification.title](const std::optional<std::string>& error) {
        log_.write("Orvalle: notifica «" + titolo + "» " + (error ? "fallita — " + *error : "mostrata"));
      }));
}

void Notifiche::apriPreferenze() {
  panes_.open(platform::SettingsPane::Notifications);
}

platform::Presentation Notifiche::willPresent() {
  return {.banner = true, .list = true};
}

void Notifiche::didSelect() {
  if (onSelezionata) onSelezionata();
}

}  // namespace orvalle::services
