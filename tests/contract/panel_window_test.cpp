#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "tests/contract/panel_rigs.h"
#include "tests/contract/seen_linux.h"

// Last: its macros have the names of other people's types.
#include <gdk/gdkx.h>

namespace orvalle::contract {
namespace {

using platform::TextColour;
using ::testing::ElementsAre;

/// A property of a window that holds 32-bit numbers; GDK's own numbers for atoms.
std::vector<gulong> numbers(GdkWindow* window, const char* name) {
  GdkAtom type = nullptr;
  int format = 0, length = 0;
  guchar* data = nullptr;
  if (!gdk_property_get(window, gdk_atom_intern(name, FALSE), GDK_NONE, 0, 4096, FALSE, &type, &format,
                        &length, &data)) {
    return {};
  }
  const auto* first = reinterpret_cast<const gulong*>(data);
  std::vector<gulong> values(first, first + static_cast<std::size_t>(length) / sizeof(gulong));
  // What has 32 bits is given in wider ones, with its sign.
  if (type == gdk_atom_intern_static_string("CARDINAL")) {
    for (auto& value : values) value &= 0xFFFFFFFF;
  }
  g_free(data);
  return values;
}

gulong atom(const char* name) {
  return reinterpret_cast<gulong>(gdk_atom_intern(name, FALSE));
}

bool contains(const std::vector<gulong>& values, gulong value) {
  return std::find(values.begin(), values.end(), value) != values.end();
}

/// The panel as X11, the window manager and other windows have it.
class PanelWindow : public ::testing::Test {
 protected:
  PanelWindow() : panel(rig.panels().make(panelSpec())) { panel->setFrameOrigin({300, 300}); }

  /// Shows the panel and waits until the window manager has put it there, in GDK's coordinates.
  void showAt(int x, int y) {
    panel->orderFrontRegardless();
    ASSERT_TRUE(runUntil([&] { return rig.visible() && rig.corner().x == x && rig.corner().y == y; }))
        << "stands at " << rig.corner().x << ", " << rig.corner().y;
    rig.settle();
  }
  void show() { showAt(300, below(300)); }
  /// The upper edge of a panel whose lower edge is so far above the bottom of the screen.
  static int below(int y) {
    GdkRectangle screen;
    gdk_monitor_get_geometry(gdk_display_get_monitor(gdk_display_get_default(), 0), &screen);
    return screen.y + screen.height - y - 38;
  }
  std::vector<gulong> property(const char* name) { return numbers(rig.nativeWindow(), name); }

  NativePanelRig rig;
  std::unique_ptr<platform::Panel> panel;
};

TEST_F(PanelWindow, standsOnTheDisplayWithYGrowingUpwards) {
  show();
  EXPECT_EQ(rig.corner().x, 300);
  GdkRectangle screen;
  gdk_monitor_get_geometry(gdk_display_get_monitor(gdk_display_get_default(), 0), &screen);
  EXPECT_EQ(rig.corner().y + 38, screen.height - 300);
  EXPECT_EQ(gdk_window_get_width(rig.nativeWindow()), 190);
  EXPECT_EQ(gdk_window_get_height(rig.nativeWindow()), 38);
}

TEST_F(PanelWindow, standsOffTheScreenWhenToldTo) {
  panel->setFrameOrigin({3000, 2000});
  showAt(3000, below(2000));
}

TEST_F(PanelWindow, staysWithinWhatAScreenCanHave) {
  panel->setFrameOrigin({1e300, -1e300});
  showAt(8192, 8192);
  EXPECT_EQ(panel->frameOrigin(), (base::Point{1e300, -1e300}));
}

TEST_F(PanelWindow, isOnEveryDesktopAboveAllEachTimeItIsShown) {
  for (int time = 0; time < 3; ++time) {
    show();
    EXPECT_TRUE(runUntil([&] { return property("_NET_WM_DESKTOP") == std::vector<gulong>{0xFFFFFFFF}; }));
    EXPECT_TRUE(runUntil([&] { return contains(property("_NET_WM_STATE"), atom("_NET_WM_STATE_ABOVE")); }));
    EXPECT_TRUE(
        runUntil([&] { return contains(property("_NET_WM_STATE"), atom("_NET_WM_STATE_SKIP_TASKBAR")); }));
    panel->orderOut();
  }
}

TEST_F(PanelWindow, isOneWindowForAllItsLife) {
  const auto before = gdk_x11_window_get_xid(rig.nativeWindow());
  EXPECT_THAT(property("_NET_WM_PID"), ElementsAre(static_cast<gulong>(getpid())));
  show();
  panel->orderOut();
  ASSERT_TRUE(runUntil([&] { return !rig.visible(); }));
  show();
  EXPECT_EQ(gdk_x11_window_get_xid(rig.nativeWindow()), before);
}

TEST_F(PanelWindow, leavesTheFocusWhereItIs) {
  auto* other = GTK_WINDOW(gtk_window_new(GTK_WINDOW_TOPLEVEL));
  gtk_window_set_default_size(other, 500, 400);
  gtk_widget_show(GTK_WIDGET(other));
  gtk_window_present_with_time(other, GDK_CURRENT_TIME);
  ASSERT_TRUE(runUntil([&] { return gtk_window_is_active(other); }));
  show();
  EXPECT_TRUE(gtk_window_is_active(other));
  EXPECT_FALSE(gtk_window_is_active(rig.window()));
  rig.xdotool("mousemove " + std::to_string(rig.corner().x + 90) + " " + std::to_string(rig.corner().y + 20) +
              " click 1 click 1 click 3");
  rig.settle();
  EXPECT_TRUE(gtk_window_is_active(other));
  gtk_widget_destroy(GTK_WIDGET(other));
}

TEST_F(PanelWindow, tellsWhenOthersMoveIt) {
  std::vector<base::Point> moves;
  show();
  panel->onDidMove = [&] { moves.push_back(panel->frameOrigin()); };
  rig.xdotool("windowmove " + std::to_string(gdk_x11_window_get_xid(rig.nativeWindow())) + " 40 60");
  EXPECT_TRUE(runUntil([&] { return !moves.empty(); }));
  rig.settle();
  EXPECT_THAT(moves, ElementsAre(base::Point{40, static_cast<double>(below(60))}));
}

TEST_F(PanelWindow, isDraggedWithThePrimaryButtonOnly) {
  show();
  const auto before = rig.corner();
  const auto x = std::to_string(before.x + 90), y = std::to_string(before.y + 20);
  rig.xdotool("mousemove " + x + " " + y + " mousedown 3 mousemove_relative 50 50 sleep 0.1 mouseup 3");
  rig.settle();
  EXPECT_EQ(rig.corner().x, before.x);
  EXPECT_EQ(rig.corner().y, before.y);
}

TEST_F(PanelWindow, cannotBeClosed) {
  show();
  GdkEvent* close = gdk_event_new(GDK_DELETE);
  close->any.window = GDK_WINDOW(g_object_ref(rig.nativeWindow()));
  gtk_main_do_event(close);
  gdk_event_free(close);
  rig.settle();
  EXPECT_TRUE(rig.visible());
}

TEST_F(PanelWindow, keepsItsSizeWhateverItShows) {
  std::string title;
  while (title.size() < 1'000'000) title += "\xE0\xBD\xA7\xE0\xBE\xB2\xE0\xBE\xB2 🎯\n";
  panel->setLabel(title, TextColour::White);
  show();
  EXPECT_EQ(gdk_window_get_width(rig.nativeWindow()), 190);
  EXPECT_EQ(gdk_window_get_height(rig.nativeWindow()), 38);
  GtkAllocation label;
  gtk_widget_get_allocation(GTK_WIDGET(rig.label()), &label);
  EXPECT_EQ(label.width, 166);
  EXPECT_EQ(label.height, 20);
  int x = 0, y = 0;
  gtk_widget_translate_coordinates(GTK_WIDGET(rig.label()), GTK_WIDGET(rig.window()), 0, 0, &x, &y);
  EXPECT_EQ(x, 12);
  EXPECT_EQ(y, 9);
}

TEST_F(PanelWindow, isReadOut) {
  panel->setLabel("20:00  •  Tesi", TextColour::White);
  show();
  EXPECT_STREQ(atk_object_get_name(gtk_widget_get_accessible(GTK_WIDGET(rig.window()))),
               g_get_application_name());
  EXPECT_THAT(readOut(rig.window()), ElementsAre("label 20:00  •  Tesi"));
}

TEST_F(PanelWindow, canBeReadWhateverIsBeneath) {
  show();
  const auto expectReadable = [&] {
    for (const auto colour : {TextColour::White, TextColour::SystemRed}) {
      panel->setLabel("20:00  •  Tesi", colour);
      rig.settle();
      PangoAttrIterator* runs = pango_attr_list_get_iterator(gtk_label_get_attributes(rig.label()));
      const auto& text =
          reinterpret_cast<PangoAttrColor*>(pango_attr_iterator_get(runs, PANGO_ATTR_FOREGROUND))->color;
      const GdkRGBA ink{text.red / 65535.0, text.green / 65535.0, text.blue / 65535.0, 1};
      pango_attr_iterator_destroy(runs);
      for (const auto& beneath : {kWhite, kBlack}) {
        const auto ground = groundOf(GTK_WIDGET(rig.label()), GTK_WIDGET(rig.window()), beneath);
        EXPECT_GE(contrast(ink, ground), kTextContrast) << static_cast<int>(colour) << beneath.red;
      }
    }
  };
  expectReadable();
  // Who owns this is the compositor.
  GtkWidget* compositor = gtk_invisible_new();
  const auto sign = gdk_atom_intern_static_string("_NET_WM_CM_S0");
  ASSERT_TRUE(gtk_selection_owner_set(compositor, sign, GDK_CURRENT_TIME));
  EXPECT_TRUE(runUntil([] { return gdk_screen_is_composited(gdk_screen_get_default()); }));
  const auto white = groundOf(GTK_WIDGET(rig.label()), GTK_WIDGET(rig.window()), kWhite);
  const auto black = groundOf(GTK_WIDGET(rig.label()), GTK_WIDGET(rig.window()), kBlack);
  EXPECT_GT(white.green, black.green) << "nothing shines through";
  expectReadable();
  gtk_widget_destroy(compositor);
  EXPECT_TRUE(runUntil([] { return !gdk_screen_is_composited(gdk_screen_get_default()); }));
}

}  // namespace
}  // namespace orvalle::contract
