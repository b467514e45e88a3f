#include "app/display.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "app/clock.h"
#include "app/ring_image.h"

namespace orvalle::app {
namespace {

constexpr double kIdleAlpha = 0.55;

/// Minutes come from the network and may be any number; those that the clock cannot show must not stop the
/// program.
double showable(double minutes) {
  constexpr double kMost = 1e15;
  return std::clamp(minutes, -kMost, kMost);
}

std::string labelOf(const link::Snapshot& snapshot) {
  if (snapshot.isBreak) return "Pausa";
  return snapshot.projectTitle.empty() ? "Focus" : snapshot.projectTitle;
}

double progressOf(const link::Snapshot& snapshot) {
  return snapshot.plannedMin > 0 ? snapshot.elapsedMin / snapshot.plannedMin : 0;
}

std::string statusLineOf(const DisplayState& state, double rim, const std::string& label) {
  if (state.live) {
    const auto m = std::to_string(static_cast<std::int64_t>(std::round(std::abs(rim))));
    return rim < 0 ? label + " · +" + m + "′ oltre" : label + " · " + m + "′ al traguardo";
  }
  if (!state.paired) return "Non abbinata: apri «Abbina…»";
  return state.connected ? "Nessuna sessione in corso" : "Cerco il canale…";
}

}  // namespace

Display describe(const DisplayState& state) {
  const double rim = showable(state.rimanenteVivo);
  const bool over = rim < 0;
  const auto label = labelOf(state.snapshot);
  const auto time = (over ? "+" : "") + clock(std::abs(rim));

  Display display;
  display.over = over;
  display.face.image = ringImage(state.live ? progressOf(state.snapshot) : 0, state.live && over);
  display.face.imagePosition = platform::ImagePosition::Right;
  display.face.title = state.live ? " " + time + " • " + label : " Orvalle";
  display.face.alpha = state.live ? 1.0 : kIdleAlpha;
  display.statusLine = statusLineOf(state, rim, label);
  display.overlayText = time + "  •  " + label;
  display.windowTitle = state.live ? time + " • " + label + " – Orvalle" : "Orvalle";
  return display;
}

}  // namespace orvalle::app
