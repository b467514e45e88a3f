#include "platform/linux/window_front.h"

#include <gdk/gdkx.h>

namespace orvalle::platform::linuxos {

bool isVisible(GtkWindow* window) {
  GdkWindow* surface = gtk_widget_get_window(GTK_WIDGET(window));
  return gtk_widget_get_mapped(GTK_WIDGET(window)) &&
         (gdk_window_get_state(surface) & GDK_WINDOW_STATE_ICONIFIED) == 0;
}

GtkWindow* frontWindow(GtkApplication* application) {
  for (GList* entry = gtk_application_get_windows(application); entry; entry = entry->next) {
    if (isVisible(GTK_WINDOW(entry->data))) return GTK_WINDOW(entry->data);
  }
  return nullptr;
}

void present(GtkWindow* window) {
  gtk_widget_show(GTK_WIDGET(window));
  gtk_window_deiconify(window);
  GdkWindow* surface = gtk_widget_get_window(GTK_WIDGET(window));
  // Window managers keep a window that cannot tell a recent time behind the one in use.
  gtk_window_present_with_time(
      window, GDK_IS_X11_WINDOW(surface) ? gdk_x11_get_server_time(surface) : gtk_get_current_event_time());
}

}  // namespace orvalle::platform::linuxos
