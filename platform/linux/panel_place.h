#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <memory>

#include "base/point.h"

namespace orvalle::platform::linuxos {

/// Where a panel stands, and how the user drags it: what differs between window systems.
class PanelPlace {
 public:
  virtual ~PanelPlace() = default;
  /// Puts the panel's lower left corner there, on the screen or not. Calls `onDidMove` before it returns if
  /// that is another place.
  virtual void setOrigin(base::Point origin) = 0;
  virtual base::Point origin() const = 0;
  virtual void show() = 0;
  virtual void hide() = 0;

  /// Called when the panel has moved; once for a whole drag, when
  /// the user lets go.
  std::function<void()> onDidMove;
};

/// Whether the display has places above the windows of other programs.
bool hasPanelPlaces();

/// Prepares `window`, which is not realized yet, for its life as a panel of this size, and keeps it where it
/// should be: exactly on X11 and where a compositor has the layer-shell protocol. Other Wayland compositors
/// let no program place its windows: there the place is only remembered. `window` outlives the place.
std::unique_ptr<PanelPlace> makePanelPlace(GtkWindow* window, base::Size size);

}  // namespace orvalle::platform::linuxos
