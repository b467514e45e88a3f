#include "platform/screen.h"

#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include <array>
#include <memory>
#include <optional>

#include "platform/linux/factory.h"
#include "tests/contract/loop.h"

namespace orvalle::platform {
namespace {

using base::Rect;

/// A panel of the desktop along one edge.
class DesktopPanel {
 public:
  /// Reserves room at the left, right, top and bottom.
  explicit DesktopPanel(std::array<gulong, 4> struts)
      : window_(GTK_WINDOW(gtk_window_new(GTK_WINDOW_TOPLEVEL))) {
    gtk_window_set_type_hint(window_, GDK_WINDOW_TYPE_HINT_DOCK);
    gtk_window_set_accept_focus(window_, FALSE);
    gtk_widget_realize(GTK_WIDGET(window_));
    gdk_property_change(gtk_widget_get_window(GTK_WIDGET(window_)),
                        gdk_atom_intern_static_string("_NET_WM_STRUT"),
                        gdk_atom_intern_static_string("CARDINAL"), 32, GDK_PROP_MODE_REPLACE,
                        reinterpret_cast<const guchar*>(struts.data()), 4);
    gtk_widget_show(GTK_WIDGET(window_));
  }
  DesktopPanel(const DesktopPanel&) = delete;
  DesktopPanel& operator=(const DesktopPanel&) = delete;
  ~DesktopPanel() { gtk_widget_destroy(GTK_WIDGET(window_)); }

 private:
  GtkWindow* window_;
};

class LinuxScreen : public ::testing::Test {
 protected:
  LinuxScreen() {
    gtk_init(nullptr, nullptr);
    screen = linuxos::makeScreen();
    gdk_monitor_get_geometry(gdk_display_get_monitor(gdk_display_get_default(), 0), &whole);
  }

  bool becomes(const Rect& expected) {
    return contract::runUntil([&] { return screen->mainVisibleFrame() == expected; });
  }
  Rect frame(double x, double y, double width, double height) const {
    return {{x, y}, {whole.width + width, whole.height + height}};
  }

  GdkRectangle whole;
  std::unique_ptr<Screen> screen;
};

TEST_F(LinuxScreen, isAllUsableWherePanelsAreNot) {
  EXPECT_TRUE(becomes(frame(0, 0, 0, 0)));
}

TEST_F(LinuxScreen, leavesOutPanels) {
  const DesktopPanel top({0, 0, 30, 0});
  EXPECT_TRUE(becomes(frame(0, 0, 0, -30)));
  const DesktopPanel bottom({0, 0, 0, 50});
  EXPECT_TRUE(becomes(frame(0, 50, 0, -80)));
  const DesktopPanel left({70, 0, 0, 0});
  EXPECT_TRUE(becomes(frame(70, 50, -70, -80)));
}

}  // namespace
}  // namespace orvalle::platform
