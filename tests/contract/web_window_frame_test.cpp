#include <gtest/gtest.h>

#include "tests/contract/seen_linux.h"
#include "tests/contract/web_window_rigs.h"

/// The native window as such: where it stands, how it comes and goes, its strip and keys.
namespace orvalle::contract {
namespace {

using std::chrono::milliseconds;

constexpr char kName[] = "prova";
constexpr char kKey[] = "NSWindow Frame prova";

struct Frame {
  int x = 0, y = 0, width = 0, height = 0;
  bool operator==(const Frame&) const = default;
};

constexpr Frame kElsewhere = {100, 60, 900, 700};

void PrintTo(const Frame& frame, std::ostream* stream) {
  *stream << frame.x << ' ' << frame.y << ' ' << frame.width << ' ' << frame.height;
}

class WebWindowFrame : public ::testing::Test {
 protected:
  /// Makes the window anew, with the frame that is stored, and shows it.
  void open() {
    window.reset();
    window = rig.makeHidden();
    window->setFrameAutosaveName(kName);
    if (!rig.defaults.text(kKey)) window->center();
    window->makeKeyAndOrderFront();
    ASSERT_TRUE(rig.wait([&] { return gtk_window_is_active(rig.window()); }));
    runFor(kSettled);
  }

  Frame frame() {
    Frame found;
    gtk_window_get_position(rig.window(), &found.x, &found.y);
    gtk_window_get_size(rig.window(), &found.width, &found.height);
    return found;
  }

  /// Puts the window elsewhere and waits until it stands there and that is stored.
  void put(const Frame& wanted) {
    const auto before = rig.defaults.text(kKey);
    gtk_window_move(rig.window(), wanted.x, wanted.y);
    gtk_window_resize(rig.window(), wanted.width, wanted.height);
    ASSERT_TRUE(rig.wait([&] { return frame() == wanted && rig.defaults.text(kKey) != before; }));
  }

  GtkWidget* strip() { return rig.find(GTK_TYPE_EVENT_BOX); }

  bool visible() { return gtk_widget_get_mapped(GTK_WIDGET(rig.window())); }

  /// Longer than the window waits before it writes its frame.
  static constexpr milliseconds kSettled{700};

  NativeWebWindowRig rig;
  std::unique_ptr<platform::WebWindow> window;
};

TEST_F(WebWindowFrame, firstTimeStandsInTheMiddleInItsOwnSize) {
  open();
  GdkRectangle area;
  gdk_monitor_get_workarea(gdk_display_get_monitor(gdk_display_get_default(), 0), &area);
  const auto found = frame();
  EXPECT_EQ(found.width, 1180);
  EXPECT_EQ(found.height, 820);
  EXPECT_EQ(found.x, area.x + (area.width - 1180) / 2);
  EXPECT_EQ(found.y, area.y + (area.height - 820) / 2);
}

TEST_F(WebWindowFrame, isRememberedAcrossWindows) {
  open();
  put(kElsewhere);
  open();
  EXPECT_EQ(frame(), kElsewhere);
}

TEST_F(WebWindowFrame, isStoredFromTheLowerLeftCorner) {
  open();
  put(kElsewhere);
  GdkRectangle screen;
  gdk_monitor_get_geometry(gdk_display_get_monitor(gdk_display_get_default(), 0), &screen);
  const auto beginning = "100 " + std::to_string(screen.height - 60 - 700) + " 900 700 ";
  EXPECT_EQ(rig.defaults.text(kKey).value_or("").substr(0, beginning.size()), beginning);
}

TEST_F(WebWindowFrame, idleWindowWritesNothing) {
  open();
  const int writes = rig.defaults.writes;
  gtk_widget_queue_resize(GTK_WIDGET(rig.window()));
  window->makeKeyAndOrderFront();
  runFor(kSettled);
  EXPECT_EQ(rig.defaults.writes, writes);
  open();
  EXPECT_EQ(rig.defaults.writes, writes);
}

TEST_F(WebWindowFrame, maximisedWindowKeepsTheFrameOfBefore) {
  open();
  put(kElsewhere);
  const auto stored = rig.defaults.text(kKey);
  window->strip().zoom();
  ASSERT_TRUE(rig.wait([&] { return gtk_window_is_maximized(rig.window()); }));
  runFor(kSettled);
  EXPECT_EQ(rig.defaults.text(kKey), stored);
  gtk_window_close(rig.window());
  ASSERT_TRUE(rig.wait([&] { return !visible() && !gtk_window_is_maximized(rig.window()); }));
  window->makeKeyAndOrderFront();
  ASSERT_TRUE(rig.wait([&] { return visible() && gtk_window_is_maximized(rig.window()); }));
  runFor(kSettled);
  window->strip().zoom();
  ASSERT_TRUE(rig.wait([&] { return !gtk_window_is_maximized(rig.window()) && frame() == kElsewhere; }));
  runFor(kSettled);
  EXPECT_EQ(rig.defaults.text(kKey), stored);
}

TEST_F(WebWindowFrame, nonsenseIsIgnored) {
  for (const auto* text : {"", "sciocchezze", "1 2 3", "1 2 3 4 5 6 7", "nan 0 900 700 0 0 9 9",
                           "0 0 -900 700 0 0 9 9", "100 60 900 700 0 0 9 9 x"}) {
    rig.defaults.set(kKey, std::string(text));
    open();
    EXPECT_EQ(frame().width, 1180) << text;
    EXPECT_EQ(frame().height, 820) << text;
  }
}

TEST_F(WebWindowFrame, comesBackOntoTheScreen) {
  GdkRectangle area;
  gdk_monitor_get_workarea(gdk_display_get_monitor(gdk_display_get_default(), 0), &area);
  for (const auto* text : {"9000 -9000 900 700 0 0 9 9", "-9000 9000 900 700 0 0 9 9",
                           "1e300 -1e300 1e300 1e300 0 0 9 9", "100 60 1 1 0 0 9 9"}) {
    rig.defaults.set(kKey, std::string(text));
    open();
    const auto found = frame();
    EXPECT_GE(found.x, area.x) << text;
    EXPECT_GE(found.y, area.y) << text;
    EXPECT_LE(found.x + found.width, area.x + area.width) << text;
    EXPECT_LE(found.y + found.height, area.y + area.height) << text;
    EXPECT_GE(found.width, 720) << text;
    EXPECT_GE(found.height, 560) << text;
  }
}

TEST_F(WebWindowFrame, closingHidesAndKeepsThePage) {
  open();
  window->load(rig.goodUrl());
  ASSERT_TRUE(rig.wait([&] { return window->hasPage(); }));
  const auto before = frame();
  gtk_window_close(rig.window());
  ASSERT_TRUE(rig.wait([&] { return !visible(); }));
  EXPECT_TRUE(window->hasPage());
  rig.owner.events.clear();
  rig.post(*window, "1");
  window->makeKeyAndOrderFront();
  ASSERT_TRUE(rig.wait([&] { return visible() && gtk_window_is_active(rig.window()); }));
  runFor(kSettled);
  EXPECT_EQ(frame(), before);
  EXPECT_EQ(rig.owner.events, std::vector<std::string>{"message orvalle 1"});
}

TEST_F(WebWindowFrame, openingBringsAMinimisedWindowBack) {
  open();
  window->strip().miniaturize();
  ASSERT_TRUE(rig.wait([&] { return !gtk_window_is_active(rig.window()); }));
  window->makeKeyAndOrderFront();
  EXPECT_TRUE(rig.wait([&] { return gtk_window_is_active(rig.window()); }));
}

TEST_F(WebWindowFrame, pressesFarApartCountAnew) {
  open();
  std::vector<int> counts;
  window->strip().onMouseDown = [&](int count) { counts.push_back(count); };
  rig.press(2);
  rig.pressAt(5000, 20);
  rig.pressAt(5100, 200);
  rig.pressAt(5200, 200);
  EXPECT_EQ(counts, (std::vector<int>{1, 2, 1, 1, 2}));
}

/// Which buttons a title bar has, and at which end, is the desktop's setting.
class WebWindowStrip : public WebWindowFrame {
 protected:
  WebWindowStrip() {
    g_object_get(gtk_settings_get_default(), kSetting, &before_, nullptr);
    open();
  }
  ~WebWindowStrip() override {
    setLayout(before_);
    g_free(before_);
  }
  void setLayout(const char* layout) {
    g_object_set(gtk_settings_get_default(), kSetting, layout, nullptr);
    runFor(milliseconds(100));
  }

 private:
  static constexpr char kSetting[] = "gtk-decoration-layout";
  char* before_ = nullptr;
};

TEST_F(WebWindowStrip, isReadOutFromLeftToRight) {
  const std::pair<const char*, std::vector<std::string>> layouts[] = {
      {"menu:minimize,maximize,close",
       {"toggle button Menu", "push button Riduci a icona", "push button Ingrandisci", "push button Chiudi"}},
      {"close,minimize:", {"push button Chiudi", "push button Riduci a icona", "toggle button Menu"}},
      {"close:maximize", {"push button Chiudi", "toggle button Menu", "push button Ingrandisci"}}};
  for (const auto& [layout, names] : layouts) {
    setLayout(layout);
    EXPECT_EQ(readOut(strip()), names) << layout;
    std::vector<int> places;
    for (GtkWidget* button : all(strip(), GTK_TYPE_BUTTON)) {
      int x = 0;
      gtk_widget_translate_coordinates(button, strip(), 0, 0, &x, nullptr);
      places.push_back(x);
    }
    EXPECT_EQ(places.size(), names.size()) << layout;
    EXPECT_TRUE(std::is_sorted(places.begin(), places.end())) << layout;
  }
}

TEST_F(WebWindowStrip, leavesTheKeyboardToThePage) {
  for (GtkWidget* button : all(strip(), GTK_TYPE_BUTTON)) EXPECT_FALSE(gtk_widget_get_can_focus(button));
}

TEST_F(WebWindowStrip, isSeenInEveryThemeWhateverThePageShows) {
  setLayout("menu:minimize,maximize,close");
  for (const auto& look : Theme::kAll) {
    const Theme theme(look);
    for (const bool inFront : {true, false}) {
      if (inFront) {
        gtk_widget_unset_state_flags(GTK_WIDGET(rig.window()), GTK_STATE_FLAG_BACKDROP);
      } else {
        gtk_widget_set_state_flags(GTK_WIDGET(rig.window()), GTK_STATE_FLAG_BACKDROP, FALSE);
      }
      runFor(milliseconds(400));
      const auto buttons = all(strip(), GTK_TYPE_BUTTON);
      ASSERT_EQ(buttons.size(), 4U);
      for (const auto& page : {kWhite, kBlack}) {
        for (GtkWidget* button : buttons) {
          EXPECT_GE(contrastOf(button, gtk_widget_get_parent(button), page), kPictureContrast)
              << look.name << look.dark << inFront << page.red;
        }
      }
    }
  }
}

}  // namespace
}  // namespace orvalle::contract
