#pragma once

#include <gtk/gtk.h>

#include <array>

#include "platform/linux/factory.h"
#include "platform/linux/glib_ptr.h"

namespace orvalle::platform::linuxos {

/// The menu button and the window's buttons, at the ends of a window's title strip: which ones, in which
/// order and at which end is the desktop's setting. The menu button stands next to them, towards the middle.
class StripControls {
 public:
  /// Fills `strip`, which goes with `window`.
  StripControls(GtkWindow* window, GtkContainer* strip, WindowMenu& menu);
  StripControls(const StripControls&) = delete;
  StripControls& operator=(const StripControls&) = delete;

  void openMenu();

 private:
  static void layoutChanged(GtkSettings*, GParamSpec*, gpointer self);
  static gboolean stateChanged(GtkWidget*, GdkEventWindowState* event, gpointer self);

  void build();
  void addWindowButton(GtkBox* end, const char* token);
  void addMenuButton(GtkBox* end);
  void showMaximized(bool maximized);

  GtkWindow* window_;
  WindowMenu& menu_;
  GtkBox* left_;
  GtkBox* right_;
  GtkWidget* menuButton_ = nullptr;
  /// Null pointer where the desktop wants none.
  GtkWidget* maximizeButton_ = nullptr;
  std::array<SignalConnection, 2> connections_;
};

/// The look of the controls, for all of a screen's windows as long as this lives.
class StripStyle {
 public:
  StripStyle();
  StripStyle(const StripStyle&) = delete;
  StripStyle& operator=(const StripStyle&) = delete;
  ~StripStyle();

 private:
  GObjectPtr<GtkCssProvider> provider_;
};

}  // namespace orvalle::platform::linuxos
