#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <optional>

#include "platform/linux/drawing_cairo.h"
#include "platform/linux/glib_ptr.h"

namespace orvalle::platform::linuxos {

/// The ink that can be read on the desktop's panel, where status items stand. No protocol tells it, so this
/// is the best that is known:
/// - GNOME, Unity, Cinnamon and Budgie paint their bars dark under any theme: white;
/// - Xfce's panel follows the GTK theme, or, when the user has chosen so, the theme's dark variant: the text
///   colour that the theme gives to that panel;
/// - others follow the GTK theme or are matched to it by the desktop's settings: the same, without the
/// choice.
class PanelInk {
 public:
  /// `changed` is called on the main loop when `current` may have become another one.
  explicit PanelInk(std::function<void()> changed);
  PanelInk(const PanelInk&) = delete;
  PanelInk& operator=(const PanelInk&) = delete;
  ~PanelInk();

  Ink current();
  /// Follows the desktop's settings that are told over the session bus.
  void follow(GDBusConnection* bus);

 private:
  void forget();
  void ask();
  void setDarkPanel(bool dark);

  std::function<void()> changed_;
  std::optional<Ink> ink_;
  bool darkPanel_ = false;
  GObjectPtr<GDBusConnection> bus_;
  GObjectPtr<GCancellable> cancellable_;
  guint watch_ = 0;
  guint subscription_ = 0;
  SignalConnection theme_;
  SignalConnection preference_;
};

}  // namespace orvalle::platform::linuxos
