#include "platform/linux/panel_place.h"

#include <gdk/gdkwayland.h>
#include <gdk/gdkx.h>
#include <gtk-layer-shell.h>

#include <utility>

#include "platform/linux/glib_ptr.h"
#include "platform/linux/screen_space.h"

namespace orvalle::platform::linuxos {
namespace {

GdkPoint operator+(GdkPoint a, GdkPoint b) {
  return {a.x + b.x, a.y + b.y};
}

GdkPoint operator-(GdkPoint a, GdkPoint b) {
  return {a.x - b.x, a.y - b.y};
}

bool equal(GdkPoint a, GdkPoint b) {
  return a.x == b.x && a.y == b.y;
}

/// Remembers the place, and follows the pointer while the primary button holds the panel. Not left to the
/// window manager: that would change the cursor, and some managers do not move windows of the panel's kind.
class DraggedPlace : public PanelPlace {
 public:
  DraggedPlace(GtkWindow* window, base::Size size)
      : window_(window),
        size_(size),
        pressed_(window, "button-press-event", G_CALLBACK(pressed), this),
        moved_(window, "motion-notify-event", G_CALLBACK(moved), this),
        released_(window, "button-release-event", G_CALLBACK(released), this) {
    gtk_widget_add_events(GTK_WIDGET(window),
                          GDK_BUTTON_PRESS_MASK | GDK_BUTTON_RELEASE_MASK | GDK_BUTTON1_MOTION_MASK);
  }

  void setOrigin(base::Point origin) override {
    const bool moved = origin_ != origin;
    origin_ = origin;
    corner_ = toGdk(origin, size_.height);
    // Also to where the panel stands in name only: a window that was never placed is put anywhere.
    moveTo(corner_);
    if (moved) tellMoved();
  }
  base::Point origin() const override { return origin_; }
  void show() override { gtk_widget_show(GTK_WIDGET(window_)); }
  void hide() override {
    letGo();
    gtk_widget_hide(GTK_WIDGET(window_));
  }

 protected:
  virtual void moveTo(GdkPoint corner) = 0;
  virtual void press(const GdkEventButton& event) {
    grip_ = pointer(reinterpret_cast<const GdkEvent&>(event));
    dragged_ = corner_;
    dragging_ = true;
  }
  /// The button is up again.
  virtual void release() { letGo(); }
  /// Where the pointer is; the panel's corner moves by the differences.
  virtual GdkPoint pointer(const GdkEvent& event) const = 0;
  /// Whether the panel can move while the button is down.
  virtual bool movesAlong() const { return true; }

  /// The panel stands there now.
  void note(GdkPoint corner) {
    if (equal(corner, corner_)) return;
    corner_ = corner;
    const auto width = static_cast<int>(size_.width), height = static_cast<int>(size_.height);
    origin_ = fromGdk({corner.x, corner.y, width, height}).origin;
    tellMoved();
  }

  GtkWindow* window() const { return window_; }
  /// Where the panel was put or last seen.
  GdkPoint corner() const { return corner_; }
  bool dragging() const { return dragging_; }

 private:
  static gboolean pressed(GtkWidget*, GdkEventButton* event, DraggedPlace* self) {
    if (event->type == GDK_BUTTON_PRESS && event->button == GDK_BUTTON_PRIMARY) self->press(*event);
    return TRUE;
  }
  static gboolean moved(GtkWidget*, GdkEvent* event, DraggedPlace* self) {
    if (!self->dragging_) return TRUE;
    self->dragged_ = self->corner_ + (self->pointer(*event) - self->grip_);
    if (self->movesAlong()) self->moveTo(self->dragged_);
    return TRUE;
  }
  static gboolean released(GtkWidget*, GdkEventButton* event, DraggedPlace* self) {
    if (event->button == GDK_BUTTON_PRIMARY) self->release();
    return TRUE;
  }

  void letGo() {
    if (!std::exchange(dragging_, false)) return;
    if (!movesAlong()) moveTo(dragged_);
    note(dragged_);
  }
  void tellMoved() {
    if (onDidMove) onDidMove();
  }

  GtkWindow* window_;
  base::Size size_;
  base::Point origin_;
  GdkPoint corner_{0, 0};
  GdkPoint grip_{0, 0};
  GdkPoint dragged_{0, 0};
  bool dragging_ = false;
  SignalConnection pressed_, moved_, released_;
};

/// On X11 the place is where the window manager leaves the window.
class X11Place final : public DraggedPlace {
 public:
  X11Place(GtkWindow* window, base::Size size)
      : DraggedPlace(window, size), configured_(window, "configure-event", G_CALLBACK(configured), this) {
    // Docks are what a floating panel is to window managers: above other windows, on every desktop, left out
    // of lists, and left where they are, even when no part of them is on the screen; other kinds of windows
    // are pulled back. This one reserves no room.
    gtk_window_set_type_hint(window, GDK_WINDOW_TYPE_HINT_DOCK);
    gtk_window_set_keep_above(window, TRUE);
    gtk_window_set_skip_taskbar_hint(window, TRUE);
    gtk_window_set_skip_pager_hint(window, TRUE);
    gtk_window_set_accept_focus(window, FALSE);
    gtk_window_set_focus_on_map(window, FALSE);
    moveTo({0, 0});
  }
  ~X11Place() override {
    if (settling_ != 0) g_source_remove(settling_);
  }

  void show() override {
    moveTo(corner());
    DraggedPlace::show();
    askForStanding();
    lookSoon();
  }

 private:
  /// Above all windows, on every desktop, in no list. Asked for again when the window is there: a manager
  /// that is still busy with the hiding of it takes away what was said before, and some read the desktop only
  /// from a request.
  void askForStanding() {
    auto* native = gtk_widget_get_window(GTK_WIDGET(window()));
    gdk_window_set_keep_above(native, TRUE);
    gdk_window_stick(native);
    gdk_window_set_skip_taskbar_hint(native, TRUE);
    gdk_window_set_skip_pager_hint(native, TRUE);
  }

  void moveTo(GdkPoint corner) final {
    gtk_window_move(window(), corner.x, corner.y);
    patience_ = g_get_monotonic_time() + kPatience;
  }

  GdkPoint pointer(const GdkEvent& event) const override {
    double x = 0, y = 0;
    gdk_event_get_root_coords(&event, &x, &y);
    return {static_cast<int>(x), static_cast<int>(y)};
  }

  static gboolean configured(GtkWidget*, GdkEvent*, X11Place* self) {
    self->lookSoon();
    return FALSE;
  }

  /// A manager that takes up a window puts it into a frame and the frame to its place, in several steps: only
  /// where the window has come to rest counts. And as long as a manager may be on the way to what was asked
  /// of it, another place is not taken for its answer.
  void lookSoon() {
    if (settling_ != 0) g_source_remove(settling_);
    settling_ = g_timeout_add(
        kSettled,
        [](gpointer self) -> gboolean {
          static_cast<X11Place*>(self)->settling_ = 0;
          static_cast<X11Place*>(self)->look();
          return G_SOURCE_REMOVE;
        },
        this);
  }

  void look() {
    auto* widget = GTK_WIDGET(window());
    if (dragging() || !gtk_widget_get_mapped(widget)) return;
    if (g_get_monotonic_time() < patience_) askForStanding();
    GdkPoint now;
    gdk_window_get_origin(gtk_widget_get_window(widget), &now.x, &now.y);
    if (equal(now, corner())) {
      patience_ = 0;
    } else if (g_get_monotonic_time() < patience_) {
      lookSoon();
    } else {
      note(now);
    }
  }

  static constexpr guint kSettled = 150;
  static constexpr gint64 kPatience = 2 * G_USEC_PER_SEC;

  gint64 patience_ = 0;
  guint settling_ = 0;
  SignalConnection configured_;
};

/// On compositors with the layer-shell protocol the place is a distance from two edges of the main screen.
class LayerPlace final : public DraggedPlace {
 public:
  LayerPlace(GtkWindow* window, base::Size size) : DraggedPlace(window, size) {
    gtk_layer_init_for_window(window);
    gtk_layer_set_namespace(window, "orvalle-overlay");
    gtk_layer_set_layer(window, GTK_LAYER_SHELL_LAYER_OVERLAY);
    gtk_layer_set_anchor(window, GTK_LAYER_SHELL_EDGE_LEFT, TRUE);
    gtk_layer_set_anchor(window, GTK_LAYER_SHELL_EDGE_TOP, TRUE);
    // Counted from the edges themselves, also where a panel stands there.
    gtk_layer_set_exclusive_zone(window, -1);
    if (auto* monitor = mainMonitor()) gtk_layer_set_monitor(window, monitor);
    moveTo({0, 0});
  }

 private:
  void moveTo(GdkPoint corner) final {
    GdkRectangle screen{0, 0, 0, 0};
    if (auto* monitor = mainMonitor()) gdk_monitor_get_geometry(monitor, &screen);
    gtk_layer_set_margin(window(), GTK_LAYER_SHELL_EDGE_LEFT, corner.x - screen.x);
    gtk_layer_set_margin(window(), GTK_LAYER_SHELL_EDGE_TOP, corner.y - screen.y);
  }

  void release() override {
    DraggedPlace::release();
    // KDE's compositor has made the panel the active window, keys or no keys; only by going away it gives
    // that back.
    gtk_widget_hide(GTK_WIDGET(window()));
    gtk_widget_show(GTK_WIDGET(window()));
  }
  GdkPoint pointer(const GdkEvent& event) const override {
    double x = 0, y = 0;
    gdk_event_get_coords(&event, &x, &y);
    return {static_cast<int>(x), static_cast<int>(y)};
  }
  /// Compositors tell the pointer from the panel's own corner, and while a button is down some mean the
  /// corner where it was and some where it is by now. Only as long as it stays are they all right.
  bool movesAlong() const override { return false; }
};

/// On other Wayland compositors the panel stands where it is put and the user can drag it, but nobody tells
/// where that is: the remembered place stays for a session in which it counts.
class UnknownPlace final : public DraggedPlace {
 public:
  using DraggedPlace::DraggedPlace;

 private:
  void moveTo(GdkPoint) override {}
  void press(const GdkEventButton& event) override {
    gtk_window_begin_move_drag(window(), static_cast<int>(event.button), static_cast<int>(event.x_root),
                               static_cast<int>(event.y_root), event.time);
  }
  GdkPoint pointer(const GdkEvent&) const override { return {0, 0}; }
};

}  // namespace

bool hasPanelPlaces() {
  auto* display = gdk_display_get_default();
  return GDK_IS_X11_DISPLAY(display) || (GDK_IS_WAYLAND_DISPLAY(display) && gtk_layer_is_supported());
}

std::unique_ptr<PanelPlace> makePanelPlace(GtkWindow* window, base::Size size) {
  if (!hasPanelPlaces()) return std::make_unique<UnknownPlace>(window, size);
  if (GDK_IS_X11_DISPLAY(gtk_widget_get_display(GTK_WIDGET(window))))
    return std::make_unique<X11Place>(window, size);
  return std::make_unique<LayerPlace>(window, size);
}

}  // namespace orvalle::platform::linuxos
