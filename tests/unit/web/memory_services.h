#pragma once

#include "platform/platform.h"
#include "web/services.h"

namespace orvalle::web {

/// The desktop services on the platform that a test runs on.
class MemoryServices {
 public:
  explicit MemoryServices(const platform::Platform& platform)
      : notifiche(platform.notificationCentre, platform.settingsPanes, platform.bundle, platform.log),
        archivio(platform.userFolders, platform.background, platform.log),
        attivita(platform),
        permessi(platform, notifiche, archivio),
        address(platform.environment, platform.defaults, "https://default.example/"),
        aggiornamenti(platform, address) {}
  operator const Services&() const { return all_; }

  services::Notifiche notifiche;
  services::Archivio archivio;
  services::Attivita attivita;
  services::Permessi permessi;
  link::WebAddress address;
  update::Aggiornamenti aggiornamenti;

 private:
  Services all_{notifiche, archivio, attivita, permessi, aggiornamenti};
};

}  // namespace orvalle::web
