#include "services/permessi.h"

#include <filesystem>
#include <fstream>
#include <system_error>
#include <utility>

#include <boost/json/object.hpp>

#include "base/json.h"

namespace orvalle::services {
namespace {

namespace fs = std::filesystem;
using platform::NotificationStatus;
using platform::SettingsPane;

constexpr char kConcesso[] = "concesso";
constexpr char kNegato[] = "negato";

const char* parolaPer(NotificationStatus status) {
  switch (status) {
    case NotificationStatus::Authorised:
    case NotificationStatus::Provisional:
    case NotificationStatus::Ephemeral:
      return kConcesso;
    case NotificationStatus::Denied:
      return kNegato;
    case NotificationStatus::NotDetermined:
    case NotificationStatus::Unknown:
      break;
  }
  return "mai-chiesto";
}

}  // namespace

Permessi::Permessi(const platform::Platform& platform, Notifiche& notifiche, const Archivio& archivio)
    : platform_(platform), notifiche_(notifiche), archivio_(archivio) {}

void Permessi::statoJSON(Completion completion) {
  // Outside a bundle there is no centre to ask.
  if (!platform_.bundle.identifier()) return completion(describe(NotificationStatus::Denied));
  platform_.notificationCentre.status(
      liveness_.guard([this, completion = std::move(completion)](NotificationStatus status) {
        completion(describe(status));
      }));
}

std::string Permessi::describe(NotificationStatus notifications) const {
  const boost::json::object state = {
      {"notifiche", parolaPer(notifications)},
      {"accessibilita", platform_.accessibility.trusted() ? kConcesso : kNegato},
      {"documenti", backupScritti() ? kConcesso : "da-provare"},
      {"cartellaBackup", archivio_.cartella().string()},
      {"versione", platform_.bundle.versioneLeggibile()},
      {"firmaStabile", firmaStabile()},
      {"percorso", platform_.bundle.path().string()},
  };
  return base::writeJson(state).value_or("");
}

void Permessi::apri(const std::string& quale) {
  if (quale == "notifiche") {
    platform_.settingsPanes.open(SettingsPane::Notifications);
  } else if (quale == "accessibilita") {
    platform_.accessibility.prompt();
    platform_.accessibility.openSettings();
  } else if (quale == "documenti") {
    platform_.settingsPanes.open(SettingsPane::Documents);
  }
}

void Permessi::chiediNotifiche(Completion completion) {
  notifiche_.chiedi(std::move(completion));
}

std::string Permessi::provaDocumenti() const {
  const auto folder = archivio_.cartella();
  std::error_code error;
  fs::create_directories(folder, error);
  if (error) return kNegato;
  const auto probe = folder / ".prova";
  std::ofstream file(probe, std::ios::binary | std::ios::trunc);
  file << "ok";
  file.close();
  if (!file) return kNegato;
  fs::remove(probe, error);
  return kConcesso;
}

void Permessi::riavvia() {
  // Whether or not it will come back: the user then starts it by hand.
  static_cast<void>(platform_.processes.startAfterExit(platform_.bundle.path()));
  platform_.application.terminate();
}

bool Permessi::firmaStabile() const {
  const auto flags = platform_.codeSigning.ownFlags();
  return flags && (*flags & platform::kSignatureAdhoc) == 0;
}

bool Permessi::backupScritti() const {
  return !archivio_.ultimo().empty();
}

}  // namespace orvalle::services
