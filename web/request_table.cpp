#include "web/request_table.h"

#include "base/url.h"
#include "base/uuid.h"
#include "web/request.h"

namespace orvalle::web {
namespace {

void notifica(Request& request) {
  const auto tag = request.optionalText("tag");
  request.services().notifiche.mostra(request.text("titolo", "Orvalle"), request.text("corpo"),
                                      tag ? *tag : base::randomUuid());
}

void tattile(Request& request) {
  const bool touch = request.text("che") == "tocco";
  request.platform().haptics.perform(touch ? platform::HapticPattern::Alignment
                                           : platform::HapticPattern::LevelChange);
}

void apriFuori(Request& request) {
  const auto text = request.optionalText("url");
  const auto url = text ? base::Url::parse(*text) : std::nullopt;
  // Only pages of the web application itself: this is no general way out to any address.
  if (url && url->scheme() == "https" && url->host() == request.address().indirizzo().host())
    request.platform().workspace.open(url->text());
}

void backup(Request& request) {
  const auto answer = request.answerInTurn();
  request.services().archivio.scrivi(
      request.text("nome"), request.text("contenuto"),
      [answer](const std::optional<std::string>& path) { answer(path.value_or("")); });
}

void accendi(Request& request) {
  auto& attivita = request.services().attivita;
  const bool acceso = request.boolean("acceso");
  attivita.setAcceso(acceso);
  if (acceso) {
    attivita.avvia();
  } else {
    attivita.ferma();
  }
}

constexpr RequestRow kTable[] = {
    {"stato-permesso", [](Request& request) { request.services().notifiche.stato(request.answerLater()); }},
    {"permesso", [](Request& request) { request.services().notifiche.chiedi(request.answerLater()); }},
    {"notifica", notifica},
    {"tattile", tattile},
    {"apri-preferenze", [](Request& request) { request.services().notifiche.apriPreferenze(); }},
    {"apri-fuori", apriFuori},
    {"aggiornamenti-stato",
     [](Request& request) { request.answer(request.services().aggiornamenti.statoJSON()); }},
    {"aggiornamenti-cerca",
     [](Request& request) { request.services().aggiornamenti.cerca(request.answerLater()); }},
    {"aggiornamenti-installa", [](Request& request) { request.services().aggiornamenti.installaTrovato(); }},
    {"aggiornamenti-automatici",
     [](Request& request) { request.services().aggiornamenti.setAutomatici(request.boolean("acceso")); }},
    {"backup", backup},
    {"backup-ultimo", [](Request& request) { request.answer(request.services().archivio.ultimo()); }},
    {"backup-elenco", [](Request& request) { request.answer(request.services().archivio.elencoJSON()); }},
    {"attivita-stato", [](Request& request) { request.answer(request.services().attivita.statoJSON()); }},
    {"attivita-giorno",
     [](Request& request) {
       request.answer(request.services().attivita.giornoJSON(request.text("giorno")));
     }},
    {"attivita-accendi", accendi},
    {"attivita-titoli", [](Request& request) { request.services().attivita.chiediTitoli(); }},
    {"attivita-cartella", [](Request& request) { request.services().attivita.apriCartella(); }},
    {"permessi-stato",
     [](Request& request) { request.services().permessi.statoJSON(request.answerLater()); }},
    {"permessi-apri", [](Request& request) { request.services().permessi.apri(request.text("quale")); }},
    {"permessi-notifiche",
     [](Request& request) { request.services().permessi.chiediNotifiche(request.answerLater()); }},
    {"permessi-riavvia", [](Request& request) { request.services().permessi.riavvia(); }},
    {"permessi-documenti",
     [](Request& request) { request.answer(request.services().permessi.provaDocumenti()); }},
    {"apri-backup",
     [](Request& request) {
       request.platform().workspace.openFolder(request.services().archivio.cartella());
     }},
};

}  // namespace

std::span<const RequestRow> requestTable() {
  return kTable;
}

}  // namespace orvalle::web
