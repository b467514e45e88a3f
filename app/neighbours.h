#pragma once

#include <functional>
#include <memory>

#include "link/channel.h"
#include "link/pairing.h"

namespace orvalle::app {

/// The parts that stand beside the shell, as far as it starts, asks and stops them. An empty function is a
/// part that this build does not have: what needs it is then greyed out or left undone.
struct Neighbours {
  std::function<std::unique_ptr<link::Channel>()> makeChannel;
  std::function<std::unique_ptr<link::Pairing>()> makePairing;

  std::function<void()> avviaNotifiche;
  std::function<void()> avviaAggiornamenti;
  std::function<void()> avviaAttivita;
  /// Closes the diary's current block before the program ends.
  std::function<void()> fermaAttivita;
  /// The diary stands still while the user cannot be at work.
  std::function<void()> sospendiAttivita;
  std::function<void()> riprendiAttivita;
  /// An update check that the user asked for.
  std::function<void()> controllaAggiornamenti;

  /// Seconds since the user's last input, finite, and from how many on the user counts as away.
  std::function<double()> fermoDa;
  double sogliaSecondi = 0;
};

}  // namespace orvalle::app
