#pragma once

#include <gtk/gtk.h>

#include <memory>

#include "platform/linux/factory.h"
#include "platform/memory/memory_stores.h"
#include "tests/contract/window_home.h"

namespace orvalle::contract {

/// The native window with a real page in it.
class NativeWebWindowRig : public RealPageRig {
 public:
  std::unique_ptr<platform::WebWindow> makeHidden() { return windows_->make(windowSpec(), owner); }
  std::unique_ptr<platform::WebWindow> make() {
    auto made = makeHidden();
    made->makeKeyAndOrderFront();
    return made;
  }
  void press(int times) {
    for (int count = 0; count < times; ++count) pressAt(static_cast<guint32>(1000 + 100 * count), 20);
  }
  /// The user presses the primary button over the strip, at a time in milliseconds.
  void pressAt(guint32 time, double x) {
    GtkWidget* strip = find(GTK_TYPE_EVENT_BOX);
    GdkEvent* event = gdk_event_new(GDK_BUTTON_PRESS);
    event->button.window = GDK_WINDOW(g_object_ref(gtk_widget_get_window(strip)));
    event->button.button = GDK_BUTTON_PRIMARY;
    event->button.time = time;
    event->button.x_root = x;
    event->button.y_root = 20;
    gtk_widget_event(strip, event);
    gdk_event_free(event);
  }

  /// The only window of the application.
  GtkWindow* window() { return GTK_WINDOW(gtk_application_get_windows(home_.gtk())->data); }
  /// The first widget of this kind in the window; null pointer when there is none.
  GtkWidget* find(GType type) { return find(GTK_WIDGET(window()), type); }

  OneKeyMenu menu;
  platform::memory::MemoryDefaults defaults;

 private:
  static GtkWidget* find(GtkWidget* widget, GType type) {
    if (G_TYPE_CHECK_INSTANCE_TYPE(widget, type)) return widget;
    if (!GTK_IS_CONTAINER(widget)) return nullptr;
    GtkWidget* found = nullptr;
    GList* children = gtk_container_get_children(GTK_CONTAINER(widget));
    for (GList* child = children; child && !found; child = child->next)
      found = find(GTK_WIDGET(child->data), type);
    g_list_free(children);
    return found;
  }

  WindowHome home_;
  std::unique_ptr<platform::MainLoop> loop_ = platform::linuxos::makeMainLoop();
  std::unique_ptr<platform::WebWindows> windows_ =
      platform::linuxos::makeWebWindows(home_, *loop_, menu, defaults);
};

}  // namespace orvalle::contract
