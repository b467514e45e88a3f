#include "platform/linux/window_strip.h"

#include <cmath>
#include <string>

namespace orvalle::platform::linuxos {
namespace {

constexpr char kSchema[] = "org.gnome.desktop.wm.preferences";
constexpr char kDoubleClickKey[] = "action-double-click-titlebar";

bool hasDoubleClickSetting() {
  GSettingsSchemaSource* source = g_settings_schema_source_get_default();
  GSettingsSchema* schema = source ? g_settings_schema_source_lookup(source, kSchema, TRUE) : nullptr;
  if (!schema) return false;
  const bool found = g_settings_schema_has_key(schema, kDoubleClickKey);
  g_settings_schema_unref(schema);
  return found;
}

GtkWidget* makeBox(double height) {
  GtkWidget* box = gtk_event_box_new();
  gtk_event_box_set_visible_window(GTK_EVENT_BOX(box), FALSE);
  gtk_widget_set_valign(box, GTK_ALIGN_START);
  gtk_widget_set_size_request(box, -1, static_cast<int>(height));
  gtk_widget_add_events(box, GDK_BUTTON_PRESS_MASK | GDK_BUTTON_RELEASE_MASK | GDK_BUTTON1_MOTION_MASK);
  return box;
}

}  // namespace

WindowStrip::WindowStrip(GtkWindow* window, double height, WindowMenu& menu)
    : window_(window),
      box_(makeBox(height)),
      controls_(window, GTK_CONTAINER(box_), menu),
      connections_{{{box_, "button-press-event", G_CALLBACK(pressed), this},
                    {box_, "motion-notify-event", G_CALLBACK(moved), this},
                    {box_, "button-release-event", G_CALLBACK(released), this},
                    {window, "window-state-event", G_CALLBACK(stateChanged), this}}} {
  gtk_widget_show(box_);
}

WindowStrip::~WindowStrip() = default;

void WindowStrip::performWindowDrag() {
  // Handing the pointer over to the window manager now would keep us from ever seeing the second press of a
  // double click.
  dragAwaited_ = press_.count > 0;
}

void WindowStrip::miniaturize() {
  gtk_window_iconify(window_);
}

void WindowStrip::zoom() {
  if (gtk_window_is_maximized(window_)) {
    gtk_window_unmaximize(window_);
  } else {
    gtk_window_maximize(window_);
  }
}

std::optional<std::string> WindowStrip::doubleClickAction() const {
  if (!hasDoubleClickSetting()) return {};
  const auto settings = GObjectPtr<GSettings>::adopt(g_settings_new(kSchema));
  const GlibPtr<char> action(g_settings_get_string(settings.get(), kDoubleClickKey));
  const std::string word = action.get();
  if (word == "minimize") return "Minimize";
  if (word == "none") return "None";
  return word;
}

gboolean WindowStrip::pressed(GtkWidget*, GdkEventButton* event, gpointer self) {
  auto& strip = *static_cast<WindowStrip*>(self);
  // We count the presses ourselves: the toolkit tells of double and triple ones only after the press.
  if (event->type != GDK_BUTTON_PRESS) return TRUE;
  strip.dragAwaited_ = false;
  if (event->button == GDK_BUTTON_PRIMARY) {
    strip.press_ = {event->time, event->x_root, event->y_root,
                    strip.follows(*event) ? strip.press_.count + 1 : 1};
    if (strip.onMouseDown) strip.onMouseDown(strip.press_.count);
  } else if (event->button == GDK_BUTTON_SECONDARY) {
    gdk_window_show_window_menu(gtk_widget_get_window(GTK_WIDGET(strip.window_)),
                                reinterpret_cast<GdkEvent*>(event));
  }
  return TRUE;
}

bool WindowStrip::follows(const GdkEventButton& event) const {
  int time = 0;
  int distance = 0;
  g_object_get(gtk_widget_get_settings(box_), "gtk-double-click-time", &time, "gtk-double-click-distance",
               &distance, nullptr);
  return press_.count > 0 && event.time - press_.time <= static_cast<guint32>(time) &&
         std::abs(event.x_root - press_.x) <= distance && std::abs(event.y_root - press_.y) <= distance;
}

gboolean WindowStrip::moved(GtkWidget* box, GdkEventMotion* event, gpointer self) {
  auto& strip = *static_cast<WindowStrip*>(self);
  const int x = static_cast<int>(strip.press_.x);
  const int y = static_cast<int>(strip.press_.y);
  if (strip.dragAwaited_ &&
      gtk_drag_check_threshold(box, x, y, static_cast<int>(event->x_root), static_cast<int>(event->y_root))) {
    strip.dragAwaited_ = false;
    // From where the button went down, so that the window catches up with the pointer.
    gtk_window_begin_move_drag(strip.window_, GDK_BUTTON_PRIMARY, x, y, event->time);
  }
  return TRUE;
}

gboolean WindowStrip::released(GtkWidget*, GdkEventButton*, gpointer self) {
  static_cast<WindowStrip*>(self)->dragAwaited_ = false;
  return TRUE;
}

gboolean WindowStrip::stateChanged(GtkWidget*, GdkEventWindowState* event, gpointer self) {
  // A page that fills the screen is alone there.
  gtk_widget_set_visible(static_cast<WindowStrip*>(self)->box_,
                         (event->new_window_state & GDK_WINDOW_STATE_FULLSCREEN) == 0);
  return FALSE;
}

}  // namespace orvalle::platform::linuxos
