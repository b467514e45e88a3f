#pragma once

#include "services/archivio.h"
#include "services/attivita.h"
#include "services/notifiche.h"
#include "services/permessi.h"
#include "update/aggiornamenti.h"

namespace orvalle::web {

/// The desktop services that the page can reach over the bridge. Each outlives the window.
struct Services {
  services::Notifiche& notifiche;
  services::Archivio& archivio;
  services::Attivita& attivita;
  services::Permessi& permessi;
  update::Aggiornamenti& aggiornamenti;
};

}  // namespace orvalle::web
