#include "update/aggiornamenti.h"

#include <charconv>
#include <chrono>
#include <string_view>
#include <utility>

#include <boost/json/object.hpp>

#include "base/iso8601.h"
#include "base/json.h"

namespace orvalle::update {
namespace {

using std::chrono::floor;
using std::chrono::seconds;

constexpr std::string_view kManifest = "/mac/versione.json";
constexpr std::chrono::hours kInterval{6};

constexpr std::string_view kAutomatici = "aggiornamentiAutomatici";
constexpr std::string_view kSaltato = "aggiornamentoSaltato";
constexpr std::string_view kUltimoQuando = "ultimoAggiornamentoQuando";
constexpr std::string_view kUltimaVersione = "ultimoAggiornamentoVersione";

constexpr char kInstall[] = "Aggiorna e riavvia";
constexpr char kSkip[] = "Salta questa versione";

/// The whole text as a decimal number with or without a sign; 0 for anything else.
std::int64_t wholeNumber(std::string_view text) {
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) return 0;
  }
  std::int64_t number = 0;
  const auto* end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, number);
  return read.ec == std::errc() && read.ptr == end ? number : 0;
}

std::string written(const base::Json& object) {
  return base::writeJson(object).value_or("");
}

}  // namespace

Aggiornamenti::Aggiornamenti(const platform::Platform& platform, const link::WebAddress& address)
    : platform_(platform), address_(address), installazione_(platform, address) {
  installazione_.onScambio =
      liveness_.guard([this](const std::string& versione) { segnaAggiornamento(versione); });
}

std::optional<base::Url> Aggiornamenti::manifesto() const {
  return base::resolve(kManifest, address_.indirizzo());
}

std::int64_t Aggiornamenti::buildCorrente() const {
  return wholeNumber(platform_.bundle.version().value_or("0"));
}

std::string Aggiornamenti::versioneLeggibile() const {
  return platform_.bundle.versioneLeggibile();
}

bool Aggiornamenti::automatici() const {
  const auto stored = platform_.defaults.value(kAutomatici);
  return !stored || platform_.defaults.boolean(kAutomatici).value_or(false);
}

void Aggiornamenti::setAutomatici(bool accesi) {
  platform_.defaults.set(kAutomatici, accesi);
}

void Aggiornamenti::avvia() {
  if (!automatici()) return;
  controlla(true);
  timer_ = platform_.loop.every(kInterval, liveness_.guard([this] {
    if (automatici()) controlla(true);
  }));
}

void Aggiornamenti::controlla(bool automatico) {
  fetch([this, automatico](const std::optional<Rilascio>& rilascio) {
    if (!rilascio) {
      if (!automatico) inform("Non riesco a controllare gli aggiornamenti.", "Riprova quando c'è rete.");
    } else if (isNewer(*rilascio)) {
      if (!automatico || (saltato() != rilascio->build && !proposte_.contains(rilascio->build))) {
        proponi(*rilascio);
      }
    } else if (!automatico) {
      inform("Sei già aggiornato.", "Orvalle " + versioneLeggibile() + " è l'ultima versione.");
    }
  });
}

void Aggiornamenti::cerca(Reply reply) {
  const bool asked = fetch([this, reply](std::optional<Rilascio> rilascio) {
    if (!rilascio) return reply("");
    const bool newer = isNewer(*rilascio);
    boost::json::object answer{{"esito", newer ? "trovato" : "aggiornato"},
                               {"versione", rilascio->versione},
                               {"build", rilascio->build}};
    if (rilascio->note) answer["note"] = *rilascio->note;
    if (rilascio->pubblicato) answer["pubblicato"] = *rilascio->pubblicato;
    trovato_ = newer ? std::move(rilascio) : std::nullopt;
    reply(written(answer));
  });
  if (!asked) reply("");
}

void Aggiornamenti::installaTrovato() {
  if (trovato_) installazione_.scarica(*trovato_);
}

std::string Aggiornamenti::statoJSON() const {
  boost::json::object state{
      {"versione", versioneLeggibile()}, {"build", buildCorrente()}, {"automatico", automatici()}};
  if (const auto ultimo = ultimoAggiornamento()) {
    state["ultimoQuando"] = ultimo->quando;
    state["ultimaVersione"] = ultimo->versione;
  }
  return written(state);
}

std::optional<Aggiornamenti::Ultimo> Aggiornamenti::ultimoAggiornamento() const {
  auto quando = platform_.defaults.text(kUltimoQuando);
  auto versione = platform_.defaults.text(kUltimaVersione);
  if (!quando || !versione) return {};
  return Ultimo{std::move(*quando), std::move(*versione)};
}

void Aggiornamenti::segnaAggiornamento(const std::string& versione) {
  platform_.defaults.set(kUltimoQuando, base::writeIso8601(floor<seconds>(platform_.clock.now())));
  platform_.defaults.set(kUltimaVersione, versione);
}

std::int64_t Aggiornamenti::saltato() const {
  const auto stored = platform_.defaults.value(kSaltato);
  const auto* build = stored ? std::get_if<std::int64_t>(&*stored) : nullptr;
  return build ? *build : 0;
}

bool Aggiornamenti::fetch(std::function<void(std::optional<Rilascio>)> done) {
  const auto manifest = manifesto();
  auto parts = manifest ? base::UrlComponents::parse(manifest->text()) : std::nullopt;
  if (!parts) return false;
  // Keeps caches from answering.
  const auto now = std::chrono::duration_cast<seconds>(platform_.clock.now().time_since_epoch());
  parts->setQueryItems({{"t", std::to_string(now.count())}});
  const auto url = parts->text();
  if (!url) return false;

  const auto place = fetches_.emplace(fetches_.end());
  *place = platform_.http.get(
      *url, liveness_.guard([this, place, done = std::move(done)](const std::optional<std::string>& body) {
        auto rilascio = body ? decodeRilascio(*body) : std::nullopt;
        // Its work is done; what follows may look for updates again.
        const auto finished = std::move(*place);
        fetches_.erase(place);
        done(std::move(rilascio));
      }));
  return true;
}

void Aggiornamenti::proponi(const Rilascio& rilascio) {
  platform_.application.activate();
  // Whoever asks while it is on show is shown it, not asked twice.
  if (!proposte_.insert(rilascio.build).second) return;
  const std::string note = rilascio.note.value_or("");
  platform::Alert alert{"C'è Orvalle " + rilascio.versione,
                        (note.empty() ? "" : note + "\n\n") +
                            "L'app si chiude e si riapre da sola: quello che stai facendo resta dov'è.",
                        {kInstall, "Più tardi", kSkip},
                        0,
                        1};
  if (const auto manager = platform_.bundle.packageManager()) {
    // What came with a package is not ours to replace.
    alert.informative += " Questa copia fa parte del sistema: aggiornala con " + *manager + ".";
    alert.buttons.erase(alert.buttons.begin());
    alert.closing = 0;
  }
  platform_.alerts.show(alert, liveness_.guard([this, rilascio, buttons = alert.buttons](std::size_t button) {
    proposte_.erase(rilascio.build);
    if (buttons[button] == kInstall) installazione_.scarica(rilascio);
    if (buttons[button] == kSkip) platform_.defaults.set(kSaltato, rilascio.build);
  }));
}

void Aggiornamenti::inform(const std::string& message, const std::string& informative) {
  platform_.application.activate();
  platform_.alerts.show({message, informative, {"Va bene"}}, [](std::size_t) {});
}

}  // namespace orvalle::update
