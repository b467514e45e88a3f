#pragma once

#include <gtk/gtk.h>

#include <array>
#include <optional>
#include <string>

#include "base/point.h"
#include "platform/defaults.h"
#include "platform/linux/glib_ptr.h"

namespace orvalle::platform::linuxos {

/// Where a window stands, remembered across launches in the user's settings. What counts is the frame that
/// the window has when it is neither maximised nor minimised. Where the window system places windows by
/// itself (Wayland), only the size is taken up again.
class WindowFrame {
 public:
  /// `window` has not been shown yet. It will stand in the middle of the screen.
  WindowFrame(GtkWindow* window, base::Size contentSize, base::Size minimumSize, Defaults& defaults);
  WindowFrame(const WindowFrame&) = delete;
  WindowFrame& operator=(const WindowFrame&) = delete;
  ~WindowFrame();

  /// Into the middle of the main screen's usable part, which it fits.
  void center();
  /// Restores the frame kept under `name`, if it is one, and keeps it there from now on.
  void setAutosaveName(const std::string& name);
  /// Shows the window where it stood last, brings it to the front and gives it the keyboard.
  void open();
  /// Hides the window.
  void close();

 private:
  static gboolean changed(GtkWidget*, GdkEvent*, gpointer self);
  static gboolean settled(gpointer self);

  void place(GdkRectangle frame);
  void apply();
  void save();
  void look();
  std::string text() const;

  GtkWindow* window_;
  base::Size minimumSize_;
  Defaults& defaults_;
  /// In the window system's coordinates: from the upper left corner of all screens, y growing downwards.
  GdkRectangle frame_;
  bool placed_ = false;
  /// Whether the window was maximised when it was closed.
  bool zoomed_ = false;
  std::string key_;
  std::optional<std::string> stored_;
  guint settling_ = 0;
  std::array<SignalConnection, 2> connections_;
};

}  // namespace orvalle::platform::linuxos
