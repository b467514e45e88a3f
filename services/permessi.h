#pragma once

#include <functional>
#include <string>

#include "base/liveness.h"
#include "platform/platform.h"
#include "services/archivio.h"
#include "services/notifiche.h"

namespace orvalle::services {

/// What the system lets the program do, for the page's settings: notifications, titles of other programs'
/// windows ("accessibilita"), the backup folder ("documenti").
class Permessi {
 public:
  using Completion = std::function<void(const std::string& text)>;

  /// What is passed must outlive this.
  Permessi(const platform::Platform& platform, Notifiche& notifiche, const Archivio& archivio);
  Permessi(const Permessi&) = delete;
  Permessi& operator=(const Permessi&) = delete;

  /// Gives the state of everything as a JSON object; the empty text when it cannot be written as JSON.
  /// `completion` is called once, on the main loop, possibly inside the call.
  void statoJSON(Completion completion);
  /// Opens the settings of the named permission; for "accessibilita" the user is asked first. Nothing happens
  /// for another name.
  void apri(const std::string& quale);
  /// Asks for notifications; gives the words of `Notifiche::chiedi`.
  void chiediNotifiche(Completion completion);
  /// Tries to write into the backup folder: "concesso" or "negato".
  std::string provaDocumenti() const;
  /// Ends the program and has it started again.
  void riavvia();
  /// Whether the program carries a signature that stays the same from one version to the next.
  bool firmaStabile() const;
  /// Whether there is a backup.
  bool backupScritti() const;

 private:
  std::string describe(platform::NotificationStatus notifications) const;

  const platform::Platform& platform_;
  Notifiche& notifiche_;
  const Archivio& archivio_;
  base::Liveness liveness_;
};

}  // namespace orvalle::services
