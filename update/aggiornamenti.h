#pragma once

#include <cstdint>
#include <functional>
#include <list>
#include <optional>
#include <set>
#include <string>

#include "base/liveness.h"
#include "base/subscription.h"
#include "base/url.h"
#include "link/web_address.h"
#include "platform/platform.h"
#include "update/installazione.h"
#include "update/rilascio.h"

namespace orvalle::update {

/// The program's updates: asks the web application's server for the newest release, offers it when it is
/// newer, and has it installed. Beside the settings it remembers only what the page's last check found.
class Aggiornamenti {
 public:
  /// An answer for the page, as JSON.
  using Reply = std::function<void(const std::string& text)>;

  /// The update that was last begun.
  struct Ultimo {
    /// ISO 8601.
    std::string quando;
    std::string versione;
    bool operator==(const Ultimo&) const = default;
  };

  /// What is passed must outlive this.
  Aggiornamenti(const platform::Platform& platform, const link::WebAddress& address);
  Aggiornamenti(const Aggiornamenti&) = delete;
  Aggiornamenti& operator=(const Aggiornamenti&) = delete;

  /// Where the manifest lies; absent when the web application's address is relative.
  std::optional<base::Url> manifesto() const;
  /// The build that runs; 0 when its text is no whole number of 64 bits.
  std::int64_t buildCorrente() const;
  std::string versioneLeggibile() const;

  /// Whether the program looks for updates by itself: unless the user decided otherwise, it does.
  bool automatici() const;
  void setAutomatici(bool accesi);

  /// Unless switched off: looks for an update now and then every six hours, skipping the hours in which it is
  /// switched off. Called once, at launch.
  void avvia();
  /// Looks for an update and offers it, unless the same offer still waits for its answer. An automatic check
  /// keeps quiet about everything else, and about a build that the user chose to skip.
  void controlla(bool automatico);
  /// Looks for an update without showing anything. `reply` is called once on the main loop, possibly inside
  /// this call: the empty text when there was nothing to read.
  void cerca(Reply reply);
  /// Downloads and installs what the last `cerca` found, if anything.
  void installaTrovato();
  /// What the page shows about updates.
  std::string statoJSON() const;

  std::optional<Ultimo> ultimoAggiornamento() const;
  /// Notes that an update to this version begins now.
  void segnaAggiornamento(const std::string& versione);

 private:
  /// Fetches the manifest; `done` gets an absent release when there is none to read. False, without a call,
  /// when it has no address.
  bool fetch(std::function<void(std::optional<Rilascio>)> done);
  bool isNewer(const Rilascio& rilascio) const { return buildCorrente() < rilascio.build; }
  /// The build that the user does not want; 0 without one.
  std::int64_t saltato() const;
  void proponi(const Rilascio& rilascio);
  void inform(const std::string& message, const std::string& informative);

  platform::Platform platform_;
  const link::WebAddress& address_;
  Installazione installazione_;
  std::optional<Rilascio> trovato_;
  /// The builds that are offered and not yet answered for.
  std::set<std::int64_t> proposte_;
  base::Subscription timer_;
  /// The fetches under way.
  std::list<base::Subscription> fetches_;
  base::Liveness liveness_;
};

}  // namespace orvalle::update
