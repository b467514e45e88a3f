#include "services/attivita.h"

#include <utility>

#include "base/json.h"
#include "base/local_day.h"

namespace orvalle::services {
namespace {

using namespace std::chrono;

constexpr char kAccesaKey[] = "attivitaAccesa";

bool countsFor(const Blocco& blocco) {
  return blocco.a - blocco.da >= Attivita::kMinimo;
}

std::string dayKey(platform::WallTime moment) {
  return base::localDay(floor<seconds>(moment));
}

}  // namespace

DayFiles Attivita::files() const {
  return DayFiles(platform_.userFolders.applicationSupport() / "Orvalle" / "attivita");
}

bool Attivita::acceso() const {
  return platform_.defaults.boolean(kAccesaKey).value_or(false);
}

void Attivita::setAcceso(bool acceso) {
  platform_.defaults.set(kAccesaKey, acceso);
}

void Attivita::avvia() {
  if (!acceso()) return;
  giornoInCorso_ = dayKey(platform_.clock.now());
  oggi_ = files().load(giornoInCorso_);
  avviata_ = true;
  osserva();
}

void Attivita::osserva() {
  if (avviata_ && !sospesa_) timer_ = platform_.loop.every(kPasso, liveness_.guard([this] { guarda(); }));
}

void Attivita::ferma() {
  chiudiCorrente();
  salva();
  timer_.reset();
  avviata_ = false;
}

void Attivita::sospendi() {
  if (std::exchange(sospesa_, true) || !avviata_) return;
  guarda();
  chiudiCorrente();
  timer_.reset();
}

void Attivita::riprendi() {
  if (std::exchange(sospesa_, false)) osserva();
}

void Attivita::guarda() {
  const auto now = platform_.clock.now();
  if (const auto giorno = dayKey(now); giorno != giornoInCorso_) {
    chiudiCorrente();
    salva();
    giornoInCorso_ = giorno;
    oggi_ = files().load(giorno);
  }
  auto app = platform_.frontmost.applicationName();
  if (!app) return;
  auto titolo = this->titolo();
  const auto moment = floor<microseconds>(now);
  if (corrente_ && corrente_->app == *app && corrente_->titolo == titolo) {
    corrente_->a = moment;
    return;
  }
  chiudiCorrente();
  corrente_ = Blocco{std::move(*app), std::move(titolo), moment, moment};
}

std::optional<std::string> Attivita::titolo() const {
  if (!platform_.accessibility.trusted()) return {};
  auto titolo = platform_.frontmost.focusedWindowTitle();
  return titolo && !titolo->empty() ? titolo : std::nullopt;
}

void Attivita::chiudiCorrente() {
  if (!corrente_) return;
  const auto chiuso = *std::exchange(corrente_, std::nullopt);
  if (!countsFor(chiuso)) return;
  oggi_.push_back(chiuso);
  salva();
}

void Attivita::salva() {
  if (giornoInCorso_.empty()) return;
  if (const auto error = files().save(giornoInCorso_, oggi_))
    platform_.log.write("Orvalle: diario attività — " + error.message());
}

void Attivita::chiediTitoli() {
  platform_.accessibility.prompt();
  platform_.accessibility.openSettings();
}

void Attivita::apriCartella() {
  // A failure shows by itself: there is nothing to open then.
  static_cast<void>(files().makeFolder());
  platform_.workspace.openFolder(files().folder());
}

std::string Attivita::giornoJSON(const std::string& giorno) const {
  auto blocchi = giorno == giornoInCorso_ ? oggi_ : files().load(giorno);
  if (giorno == giornoInCorso_ && corrente_ && countsFor(*corrente_)) blocchi.push_back(*corrente_);
  return encodeBlocchi(blocchi).value_or("[]");
}

std::string Attivita::statoJSON() const {
  const base::Json stato = {{"acceso", acceso()},
                            {"titoli", platform_.accessibility.trusted()},
                            {"cartella", files().folder().string()}};
  return base::writeJson(stato).value_or("");
}

}  // namespace orvalle::services
