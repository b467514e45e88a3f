#pragma once

#include "platform/input_idle.h"

namespace orvalle::services {

/// How long the user has been away, and when that is long enough to close a session that runs. Keeps no
/// memory: the rule holds again at every look for as long as the user stays away.
class Inattivita {
 public:
  static constexpr double kSogliaSecondi = 3600.0;

  /// `idle` must outlive this.
  explicit Inattivita(platform::InputIdle& idle, double sogliaSecondi = kSogliaSecondi)
      : idle_(idle), sogliaSecondi_(sogliaSecondi) {}

  /// From how many seconds without input on a session is to be closed.
  double sogliaSecondi() const { return sogliaSecondi_; }
  /// Seconds since the last input to any program.
  double fermoDa() const { return idle_.secondsSinceInput(); }
  /// Whether the session is to be closed. Measures nothing when none runs.
  bool daChiudere(bool sessioneInCorso) const;

 private:
  platform::InputIdle& idle_;
  double sogliaSecondi_;
};

}  // namespace orvalle::services
