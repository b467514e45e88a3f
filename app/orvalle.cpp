#include "app/orvalle.h"

#include <memory>
#include <utility>

#include "app/controller.h"
#include "link/config.h"
#include "link/pair_window.h"
#include "link/realtime_channel.h"
#include "link/web_address.h"
#include "services/archivio.h"
#include "services/attivita.h"
#include "services/inattivita.h"
#include "services/notifiche.h"
#include "services/permessi.h"
#include "update/aggiornamenti.h"
#include "web/services.h"

namespace orvalle::app {

int run(const platform::Platform& platform) {
  link::Config config(platform.defaults);
  const link::WebAddress address(platform.environment, platform.defaults, ORVALLE_DEFAULT_ADDRESS);
  services::Notifiche notifiche(platform.notificationCentre, platform.settingsPanes, platform.bundle,
                                platform.log);
  services::Archivio archivio(platform.userFolders, platform.background, platform.log);
  services::Attivita attivita(platform);
  services::Permessi permessi(platform, notifiche, archivio);
  update::Aggiornamenti aggiornamenti(platform, address);
  const web::Services services{notifiche, archivio, attivita, permessi, aggiornamenti};
  Neighbours neighbours;
  neighbours.makeChannel = [&] {
    return std::make_unique<link::RealtimeChannel>(config, platform.webSockets, platform.loop);
  };
  neighbours.makePairing = [&] { return std::make_unique<link::PairWindow>(platform, config); };
  neighbours.avviaNotifiche = [&] { notifiche.avvia(); };
  neighbours.avviaAttivita = [&] { attivita.avvia(); };
  neighbours.fermaAttivita = [&] { attivita.ferma(); };
  neighbours.sospendiAttivita = [&] { attivita.sospendi(); };
  neighbours.riprendiAttivita = [&] { attivita.riprendi(); };
  const services::Inattivita inattivita(platform.inputIdle);
  neighbours.fermoDa = [&] { return inattivita.fermoDa(); };
  neighbours.sogliaSecondi = inattivita.sogliaSecondi();
  neighbours.avviaAggiornamenti = [&] { aggiornamenti.avvia(); };
  neighbours.controllaAggiornamenti = [&] { aggiornamenti.controlla(false); };
  Controller controller(platform, address, config, services, std::move(neighbours));
  return platform.application.run(controller);
}

}  // namespace orvalle::app
