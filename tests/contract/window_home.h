#pragma once

#include <gtk/gtk.h>

#include <stdexcept>

#include "platform/linux/factory.h"
#include "platform/linux/glib_ptr.h"

namespace orvalle::contract {

/// An application that only lends its windows a home. GTK registers one in a process, so all homes are the
/// same.
class WindowHome : public platform::linuxos::NativeApplication, private platform::ActionTarget {
 public:
  WindowHome() {
    if (!gtk_init_check(nullptr, nullptr)) throw std::runtime_error("no display");
    if (!g_application_register(G_APPLICATION(gtk()), nullptr, nullptr))
      throw std::runtime_error("no application");
  }
  int run(platform::ApplicationDelegate&) override { return 0; }
  void activate() override {}
  void terminate() override {}
  platform::ActionTarget& responderChain() override { return *this; }
  GtkApplication* gtk() override {
    static const auto application = platform::linuxos::GObjectPtr<GtkApplication>::adopt(
        gtk_application_new("test.Home", G_APPLICATION_NON_UNIQUE));
    return application.get();
  }

 private:
  bool responds(std::string_view) const override { return false; }
  void perform(std::string_view, platform::MenuItem&) override {}
};

/// A menu bar that takes one key.
class OneKeyMenu : public platform::linuxos::WindowMenu {
 public:
  GtkWidget* makePopup() override { return gtk_menu_new(); }
  bool handleKey(GdkEventKey* event) override {
    if (event->keyval != key || !(event->state & GDK_CONTROL_MASK)) return false;
    ++timesPressed;
    return true;
  }
  guint key = GDK_KEY_o;
  int timesPressed = 0;
};

/// Presses a key in the window, as the window system would tell of it.
inline void pressKey(GtkWindow* window, guint key, guint modifiers = 0) {
  GdkWindow* surface = gtk_widget_get_window(GTK_WIDGET(window));
  GdkDisplay* display = gdk_window_get_display(surface);
  GdkEvent* event = gdk_event_new(GDK_KEY_PRESS);
  event->key.window = GDK_WINDOW(g_object_ref(surface));
  event->key.keyval = key;
  event->key.state = modifiers;
  GdkKeymapKey* codes = nullptr;
  int count = 0;
  if (gdk_keymap_get_entries_for_keyval(gdk_keymap_get_for_display(display), key, &codes, &count))
    event->key.hardware_keycode = static_cast<guint16>(codes[0].keycode);
  g_free(codes);
  gdk_event_set_device(event, gdk_seat_get_keyboard(gdk_display_get_default_seat(display)));
  gtk_main_do_event(event);
  gdk_event_free(event);
}

}  // namespace orvalle::contract
