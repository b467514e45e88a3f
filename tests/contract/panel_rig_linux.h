#pragma once

#include <gtk/gtk.h>

#include <memory>
#include <string>
#include <vector>

#include "platform/linux/factory.h"
#include "tests/contract/loop.h"
#include "tests/contract/toplevels_linux.h"

namespace orvalle::contract {

class NativePanelRig {
 public:
  NativePanelRig() {
    gtk_init(nullptr, nullptr);
    panels_ = platform::linuxos::makePanels();
  }

  platform::Panels& panels() { return *panels_; }

  /// A window comes to rest after some messages between it, the server and the window manager. Long enough
  /// for what must not happen; what must happen is to be waited for.
  void settle() { runFor(std::chrono::milliseconds(400)); }

  GtkWindow* window() const {
    for (GtkWindow* window : toplevels()) {
      if (g_strcmp0(gtk_window_get_role(window), "overlay") == 0) return window;
    }
    return nullptr;
  }
  GdkWindow* nativeWindow() const { return gtk_widget_get_window(GTK_WIDGET(window())); }

  GtkLabel* label() const {
    GtkWidget* found = nullptr;
    const auto visit = [](GtkWidget* widget, gpointer data) {
      if (GTK_IS_LABEL(widget)) *static_cast<GtkWidget**>(data) = widget;
    };
    gtk_container_foreach(GTK_CONTAINER(gtk_bin_get_child(GTK_BIN(window()))), visit, &found);
    return GTK_LABEL(found);
  }

  bool visible() { return gdk_window_is_viewable(nativeWindow()); }
  std::string text() { return gtk_label_get_text(label()); }
  bool red() {
    PangoAttrIterator* runs = pango_attr_list_get_iterator(gtk_label_get_attributes(label()));
    const auto* colour =
        reinterpret_cast<PangoAttrColor*>(pango_attr_iterator_get(runs, PANGO_ATTR_FOREGROUND));
    const bool red =
        colour->color.red > 0xE000 && colour->color.green < 0x9000 && colour->color.blue < 0x9000;
    pango_attr_iterator_destroy(runs);
    return red;
  }

  /// The upper left corner of the window on the display.
  GdkPoint corner() const {
    GdkPoint corner;
    gdk_window_get_origin(nativeWindow(), &corner.x, &corner.y);
    return corner;
  }

  void drag(base::Point by) {
    const auto from = corner();
    const int x = from.x + 150, y = from.y + 10;
    const auto point = [](int px, int py) { return std::to_string(px) + " " + std::to_string(py); };
    // In steps, as a hand does.
    const int halfX = x + static_cast<int>(by.x) / 2, halfY = y - static_cast<int>(by.y) / 2;
    xdotool("mousemove " + point(x, y) + " mousedown 1 mousemove " + point(halfX, halfY) +
            " sleep 0.1 mousemove " + point(x + static_cast<int>(by.x), y - static_cast<int>(by.y)) +
            " sleep 0.1 mouseup 1");
    settle();
  }

  /// Runs the tool while the loop turns.
  void xdotool(const std::string& arguments) {
    char** words = g_strsplit(("xdotool " + arguments).c_str(), " ", -1);
    GPid process = 0;
    const auto flags = static_cast<GSpawnFlags>(G_SPAWN_SEARCH_PATH | G_SPAWN_DO_NOT_REAP_CHILD);
    ASSERT_TRUE(g_spawn_async(nullptr, words, nullptr, flags, nullptr, nullptr, &process, nullptr));
    g_strfreev(words);
    bool ended = false;
    g_child_watch_add(
        process, [](GPid, int, gpointer data) { *static_cast<bool*>(data) = true; }, &ended);
    ASSERT_TRUE(runUntil([&] { return ended; }));
  }

 private:
  std::unique_ptr<platform::Panels> panels_;
};

}  // namespace orvalle::contract
