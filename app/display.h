#pragma once

#include <string>

#include "link/snapshot.h"
#include "platform/status_item.h"

namespace orvalle::app {

/// What the display is made from.
struct DisplayState {
  const link::Snapshot& snapshot;
  bool live = false;
  /// Minutes left as of now; negative past the planned end.
  double rimanenteVivo = 0;
  bool paired = false;
  bool connected = false;
};

/// What the user reads, in all three places.
struct Display {
  platform::StatusFace face;
  std::string statusLine;
  std::string overlayText;
  /// The main window's title where there is no status bar to read.
  std::string windowTitle;
  /// The session is past its planned end.
  bool over = false;
};

/// The display rules. Minutes of absurd size are shown as the greatest that the clock can show.
Display describe(const DisplayState& state);

}  // namespace orvalle::app
