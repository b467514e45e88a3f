#pragma once

#include <gtk/gtk.h>

#include <array>
#include <memory>

#include "platform/linux/factory.h"
#include "platform/linux/glib_ptr.h"
#include "platform/linux/strip_controls.h"
#include "platform/title_strip.h"

namespace orvalle::platform::linuxos {

/// The band over the top of a window, with the window's controls at its ends. The secondary button opens the
/// window manager's menu.
class WindowStrip : public TitleStrip {
 public:
  /// `height` in points. The strip is made for the window, and goes with it.
  WindowStrip(GtkWindow* window, double height, WindowMenu& menu);
  WindowStrip(const WindowStrip&) = delete;
  WindowStrip& operator=(const WindowStrip&) = delete;
  ~WindowStrip() override;

  GtkWidget* widget() const { return box_; }
  /// Opens the menu of the menu button.
  void openMenu() { controls_.openMenu(); }

  void performWindowDrag() override;
  void miniaturize() override;
  void zoom() override;
  std::optional<std::string> doubleClickAction() const override;

 private:
  struct Press {
    guint32 time = 0;
    double x = 0;
    double y = 0;
    int count = 0;
  };

  static gboolean pressed(GtkWidget*, GdkEventButton* event, gpointer self);
  static gboolean moved(GtkWidget*, GdkEventMotion* event, gpointer self);
  static gboolean released(GtkWidget*, GdkEventButton* event, gpointer self);
  static gboolean stateChanged(GtkWidget*, GdkEventWindowState* event, gpointer self);

  bool follows(const GdkEventButton& event) const;

  GtkWindow* window_;
  GtkWidget* box_;
  StripControls controls_;
  Press press_;
  /// The press that is being handled may become a drag once the pointer has moved far enough.
  bool dragAwaited_ = false;
  std::array<SignalConnection, 4> connections_;
};

}  // namespace orvalle::platform::linuxos
