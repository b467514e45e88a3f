#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "base/liveness.h"
#include "base/subscription.h"
#include "platform/platform.h"
#include "services/blocco.h"
#include "services/day_files.h"

namespace orvalle::services {

/// The user's diary of what was in front of them: which application and, with their consent, which window of
/// it, from when to when. Off until the user turns it on. Looks every few seconds while it runs; writes only
/// when a stretch that is long enough ends, when the day changes, and when it is stopped.
class Attivita {
 public:
  static constexpr std::chrono::seconds kPasso{5};
  /// The shortest stretch that is kept.
  static constexpr std::chrono::seconds kMinimo{60};

  /// `platform` must outlive this.
  explicit Attivita(const platform::Platform& platform) : platform_(platform) {}
  Attivita(const Attivita&) = delete;
  Attivita& operator=(const Attivita&) = delete;

  /// Whether the user has turned the diary on. Setting it only stores it; starting and stopping is up to the
  /// caller.
  bool acceso() const;
  void setAcceso(bool acceso);

  /// Starts looking, unless the diary is off. Started again, it reads the day's file again.
  void avvia();
  /// Ends the open stretch, saves, and stops looking.
  void ferma();
  /// The user cannot be at work from now on: looks once more, ends the open stretch and stops looking, until
  /// `riprendi`.
  void sospendi();
  void riprendi();
  /// Asks the user for consent to window titles, and shows where to change it.
  void chiediTitoli();
  /// Shows the diary's folder in the file manager.
  void apriCartella();

  /// The day's blocks as a JSON array; today's with the open one as soon as it is long enough. A key that
  /// names no readable file has none.
  std::string giornoJSON(const std::string& giorno) const;
  /// Whether the diary is on, whether it may read titles, and where it lies, as a JSON object.
  std::string statoJSON() const;

 private:
  void osserva();
  void guarda();
  void chiudiCorrente();
  void salva();
  DayFiles files() const;
  /// The title of the window in front, where there is consent.
  std::optional<std::string> titolo() const;

  const platform::Platform& platform_;
  base::Subscription timer_;
  bool avviata_ = false;
  bool sospesa_ = false;
  std::optional<Blocco> corrente_;
  /// The closed blocks of `giornoInCorso_`, oldest first.
  std::vector<Blocco> oggi_;
  /// Empty until the diary is started.
  std::string giornoInCorso_;
  base::Liveness liveness_;
};

}  // namespace orvalle::services
