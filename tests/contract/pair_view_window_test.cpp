#include <gtest/gtest.h>

#include <ctime>

#include "tests/contract/pair_view_rigs.h"
#include "tests/contract/seen_linux.h"

/// The native pairing window as a user meets it.
namespace orvalle::contract {
namespace {

using platform::MessageColour;
using platform::linuxos::GObjectPtr;

class PairViewWindow : public ::testing::Test {
 protected:
  void SetUp() override {
    view->onButton = [this](std::size_t button) { pressed.push_back(button); };
    view->present();
    ASSERT_TRUE(runUntil([&] { return gtk_window_is_active(rig.window()); }));
  }

  GtkWidget* field(std::size_t index) { return rig.all(GTK_TYPE_ENTRY).at(index); }
  GtkWidget* button(std::size_t index) { return rig.all(GTK_TYPE_BUTTON).at(index); }
  GtkWidget* label(std::size_t index) { return rig.all(GTK_TYPE_LABEL).at(index); }
  GtkWidget* focus() { return gtk_window_get_focus(rig.window()); }

  void press(guint key, guint modifiers = 0) { pressKey(rig.window(), key, modifiers); }

  /// The buttons that a key presses, for which GTK takes its time: they are seen to go down.
  std::vector<std::size_t> pressedBy(guint key) {
    pressed.clear();
    press(key);
    runUntil([&] { return !pressed.empty(); });
    runFor(std::chrono::milliseconds(50));
    return pressed;
  }

  NativePairRig rig;
  std::unique_ptr<platform::PairView> view = rig.make();
  std::vector<std::size_t> pressed;
};

TEST_F(PairViewWindow, isLaidOutAsGiven) {
  int width = 0;
  int height = 0;
  gtk_window_get_size(rig.window(), &width, &height);
  EXPECT_EQ(width, 460);
  EXPECT_EQ(height, 265);
  const auto spec = link::pairWindowSpec();
  const auto expectFrame = [&](GtkWidget* widget, const base::Rect& frame) {
    GtkAllocation place;
    gtk_widget_get_allocation(widget, &place);
    int x = 0;
    int y = 0;
    gtk_widget_translate_coordinates(widget, GTK_WIDGET(gtk_bin_get_child(GTK_BIN(rig.window()))), 0, 0, &x,
                                     &y);
    EXPECT_EQ(x, frame.origin.x);
    EXPECT_EQ(265 - y - place.height, frame.origin.y);
    EXPECT_EQ(place.width, frame.size.width);
    EXPECT_EQ(place.height, frame.size.height);
  };
  for (std::size_t i = 0; i < 3; ++i) {
    expectFrame(field(i), spec.fields[i].frame);
    expectFrame(label(i), spec.labels[i].frame);
    EXPECT_EQ(gtk_label_get_text(GTK_LABEL(label(i))), spec.labels[i].text);
    EXPECT_EQ(gtk_entry_get_placeholder_text(GTK_ENTRY(field(i))), spec.fields[i].placeholder);
  }
  expectFrame(label(3), spec.messageFrame);
  for (std::size_t i = 0; i < 2; ++i) {
    expectFrame(button(i), spec.buttons[i].frame);
    EXPECT_EQ(gtk_button_get_label(GTK_BUTTON(button(i))), spec.buttons[i].title);
  }
}

TEST_F(PairViewWindow, cutsNoTextOff) {
  for (const char* text : {"Trovati tutti e tre. Controlla e salva.",
                           "Non ho trovato: indirizzo, chiave anon, chiave del canale"}) {
    view->setMessage(text, MessageColour::SystemGreen);
    runFor(std::chrono::milliseconds(50));
    EXPECT_FALSE(pango_layout_is_ellipsized(gtk_label_get_layout(GTK_LABEL(label(3))))) << text;
  }
  for (GtkWidget* widget : rig.all(GTK_TYPE_LABEL)) {
    int height = 0;
    pango_layout_get_pixel_size(gtk_label_get_layout(GTK_LABEL(widget)), nullptr, &height);
    EXPECT_LE(height, 16);
  }
  for (GtkWidget* widget : rig.all(GTK_TYPE_ENTRY)) {
    int height = 0;
    pango_layout_get_pixel_size(gtk_entry_get_layout(GTK_ENTRY(widget)), nullptr, &height);
    EXPECT_LE(height, 20);
  }
}

TEST_F(PairViewWindow, usesTheGivenFonts) {
  const auto font = [](GtkWidget* widget) {
    PangoFontDescription* description = nullptr;
    GtkStyleContext* style = gtk_widget_get_style_context(widget);
    gtk_style_context_get(style, gtk_style_context_get_state(style), GTK_STYLE_PROPERTY_FONT, &description,
                          nullptr);
    return std::unique_ptr<PangoFontDescription, decltype(&pango_font_description_free)>(
        description, pango_font_description_free);
  };
  // A point of ours is a pixel; GTK has it in points of print.
  const auto points = [](const auto& description) {
    const double size = pango_font_description_get_size(description.get()) / double{PANGO_SCALE};
    return size * gdk_screen_get_resolution(gdk_screen_get_default()) / 72;
  };
  for (std::size_t i = 0; i < 3; ++i) {
    const auto name = font(label(i));
    EXPECT_EQ(points(name), 11);
    EXPECT_EQ(pango_font_description_get_weight(name.get()), PANGO_WEIGHT_SEMIBOLD);
    const auto text = font(field(i));
    EXPECT_EQ(points(text), 11);
    EXPECT_STREQ(pango_font_description_get_family(text.get()), "monospace");
  }
  EXPECT_EQ(points(font(label(3))), 11);
}

TEST_F(PairViewWindow, canBeReadInEveryTheme) {
  for (const auto& look : Theme::kAll) {
    const Theme theme(look);
    for (const auto colour :
         {MessageColour::SystemGreen, MessageColour::SystemOrange, MessageColour::Label}) {
      view->setMessage("Trovati tutti e tre. Controlla e salva.", colour);
      runFor(std::chrono::milliseconds(400));
      EXPECT_GE(contrastOf(label(3)), kTextContrast) << look.name << look.dark << static_cast<int>(colour);
    }
    EXPECT_GE(contrastOf(label(0)), kTextContrast) << look.name << look.dark;
    EXPECT_LT(contrastOf(label(0)), contrastOf(label(3))) << look.name << look.dark;
    for (std::size_t i = 0; i < 2; ++i)
      EXPECT_GE(contrastOf(gtk_bin_get_child(GTK_BIN(button(i)))), kTextContrast)
          << look.name << look.dark << i;
  }
}

TEST_F(PairViewWindow, coloursTheMessage) {
  const auto colourOf = [&](MessageColour colour) {
    view->setMessage("text", colour);
    runFor(std::chrono::milliseconds(400));
    GdkRGBA rgba;
    GtkStyleContext* style = gtk_widget_get_style_context(label(3));
    gtk_style_context_get_color(style, gtk_style_context_get_state(style), &rgba);
    return rgba;
  };
  const auto green = colourOf(MessageColour::SystemGreen);
  EXPECT_GT(green.green, green.red);
  EXPECT_GT(green.green, green.blue);
  const auto orange = colourOf(MessageColour::SystemOrange);
  EXPECT_GT(orange.red, orange.green);
  EXPECT_GT(orange.green, orange.blue);
  const auto plain = colourOf(MessageColour::Label);
  GdkRGBA text;
  gtk_style_context_lookup_color(gtk_widget_get_style_context(label(3)), "theme_fg_color", &text);
  EXPECT_TRUE(gdk_rgba_equal(&plain, &text));
}

TEST_F(PairViewWindow, startsInTheFirstFieldWithItsTextSelected) {
  view->setFieldText(0, "https://a.example");
  gtk_widget_grab_focus(button(1));
  view->present();
  EXPECT_EQ(focus(), field(0));
  int begin = 0;
  int end = 0;
  EXPECT_TRUE(gtk_editable_get_selection_bounds(GTK_EDITABLE(field(0)), &begin, &end));
  EXPECT_EQ(begin, 0);
  EXPECT_EQ(end, 17);
}

TEST_F(PairViewWindow, goesRoundWithTab) {
  const std::vector<GtkWidget*> round = {field(0), field(1), field(2), button(0), button(1), field(0)};
  for (std::size_t i = 0; i + 1 < round.size(); ++i) {
    ASSERT_EQ(focus(), round[i]) << i;
    press(GDK_KEY_Tab);
  }
  EXPECT_EQ(focus(), round.back());
}

TEST_F(PairViewWindow, pressesTheDefaultButtonOnReturnFromAnywhere) {
  for (GtkWidget* widget : {field(0), field(2), button(0), button(1)}) {
    gtk_widget_grab_focus(widget);
    EXPECT_EQ(pressedBy(GDK_KEY_Return), std::vector<std::size_t>{1}) << gtk_widget_get_name(widget);
    EXPECT_EQ(pressedBy(GDK_KEY_KP_Enter), std::vector<std::size_t>{1}) << gtk_widget_get_name(widget);
  }
  gtk_window_set_focus(rig.window(), nullptr);
  EXPECT_EQ(pressedBy(GDK_KEY_Return), std::vector<std::size_t>{1});
}

TEST_F(PairViewWindow, pressesTheFocusedButtonOnSpace) {
  gtk_widget_grab_focus(button(0));
  EXPECT_EQ(pressedBy(GDK_KEY_space), std::vector<std::size_t>{0});
}

TEST_F(PairViewWindow, hidesOnEscapeFromAnywhere) {
  for (GtkWidget* widget : {field(1), button(0)}) {
    gtk_widget_grab_focus(widget);
    press(GDK_KEY_Escape);
    EXPECT_FALSE(rig.visible());
    EXPECT_TRUE(rig.hasWindow());
    view->present();
  }
  press(GDK_KEY_Escape, GDK_SHIFT_MASK);
  EXPECT_TRUE(rig.visible());
  EXPECT_TRUE(pressed.empty());
}

TEST_F(PairViewWindow, hidesWhenClosed) {
  view->setFieldText(2, "kept");
  gtk_window_close(rig.window());
  EXPECT_TRUE(runUntil([&] { return !rig.visible(); }));
  EXPECT_TRUE(rig.hasWindow());
  EXPECT_EQ(view->fieldText(2), "kept");
  view->present();
  EXPECT_TRUE(rig.visible());
}

TEST_F(PairViewWindow, leavesTheMenusKeysToTheMenu) {
  press(GDK_KEY_o, GDK_CONTROL_MASK);
  EXPECT_EQ(rig.menu().timesPressed, 1);
  view->setFieldText(0, "abc");
  gtk_widget_grab_focus(field(0));
  press(GDK_KEY_x, GDK_CONTROL_MASK);
  EXPECT_EQ(view->fieldText(0), "");
  press(GDK_KEY_v, GDK_CONTROL_MASK);
  EXPECT_TRUE(runUntil([&] { return view->fieldText(0) == "abc"; }));
}

TEST_F(PairViewWindow, isCentredEachTimeItIsPresented) {
  const auto middle = [&] {
    GdkRectangle frame;
    gdk_window_get_frame_extents(gtk_widget_get_window(GTK_WIDGET(rig.window())), &frame);
    return std::pair(frame.x + frame.width / 2, frame.y + frame.height / 2);
  };
  GdkRectangle area;
  gdk_monitor_get_workarea(gdk_display_get_monitor(gdk_display_get_default(), 0), &area);
  const auto isCentred = [&] {
    const auto [x, y] = middle();
    // The title bar is the window manager's, and comes on top.
    return std::abs(x - area.x - area.width / 2) <= 2 && std::abs(y - area.y - area.height / 2) <= 24;
  };
  EXPECT_TRUE(runUntil(isCentred));
  gdk_window_move(gtk_widget_get_window(GTK_WIDGET(rig.window())), 10, 20);
  ASSERT_TRUE(runUntil([&] { return !isCentred(); }));
  view->present();
  EXPECT_TRUE(runUntil(isCentred));
  gdk_window_move(gtk_widget_get_window(GTK_WIDGET(rig.window())), 10, 20);
  ASSERT_TRUE(runUntil([&] { return !isCentred(); }));
  view->orderOut();
  runFor(std::chrono::milliseconds(100));
  view->present();
  EXPECT_TRUE(runUntil(isCentred));
}

TEST_F(PairViewWindow, canNeitherBeResizedNorMaximized) {
  EXPECT_FALSE(gtk_window_get_resizable(rig.window()));
  gtk_window_maximize(rig.window());
  runFor(std::chrono::milliseconds(200));
  int width = 0;
  int height = 0;
  gtk_window_get_size(rig.window(), &width, &height);
  EXPECT_EQ(width, 460);
  EXPECT_EQ(height, 265);
}

TEST_F(PairViewWindow, tellsAScreenReaderWhatIsWhat) {
  EXPECT_STREQ(atk_object_get_name(gtk_widget_get_accessible(GTK_WIDGET(rig.window()))), "Abbina Orvalle");
  for (std::size_t i = 0; i < 3; ++i) {
    AtkObject* accessible = gtk_widget_get_accessible(field(i));
    EXPECT_EQ(atk_object_get_name(accessible), link::pairWindowSpec().labels[i].text);
    EXPECT_EQ(atk_object_get_role(accessible), ATK_ROLE_TEXT);
    const auto relations = GObjectPtr<AtkRelationSet>::adopt(atk_object_ref_relation_set(accessible));
    AtkRelation* relation = atk_relation_set_get_relation_by_type(relations.get(), ATK_RELATION_LABELLED_BY);
    ASSERT_TRUE(relation);
    GPtrArray* targets = atk_relation_get_target(relation);
    ASSERT_EQ(targets->len, 1u);
    EXPECT_EQ(targets->pdata[0], gtk_widget_get_accessible(label(i)));
  }
  for (std::size_t i = 0; i < 2; ++i)
    EXPECT_EQ(atk_object_get_name(gtk_widget_get_accessible(button(i))),
              link::pairWindowSpec().buttons[i].title);
}

TEST_F(PairViewWindow, announcesTheMessage) {
  std::vector<std::string> announced;
  g_signal_connect(gtk_widget_get_accessible(label(3)), "announcement",
                   G_CALLBACK(+[](AtkObject*, const char* text, gpointer data) {
                     static_cast<std::vector<std::string>*>(data)->push_back(text);
                   }),
                   &announced);
  view->setMessage("Trovati tutti e tre. Controlla e salva.", MessageColour::SystemGreen);
  view->setMessage("", MessageColour::Label);
  EXPECT_EQ(announced, std::vector<std::string>{"Trovati tutti e tre. Controlla e salva."});
}

TEST_F(PairViewWindow, scrollsLongTexts) {
  const std::string key(2000, 'x');
  view->setFieldText(1, key);
  gtk_widget_grab_focus(field(1));
  runFor(std::chrono::milliseconds(50));
  EXPECT_EQ(view->fieldText(1), key);
  EXPECT_EQ(gtk_widget_get_allocated_width(field(1)), 420);
  press(GDK_KEY_End);
  int offset = 0;
  g_object_get(field(1), "scroll-offset", &offset, nullptr);
  EXPECT_GT(offset, 1000);
}

TEST_F(PairViewWindow, staysResponsiveWithAnAbsurdText) {
  testing::internal::CaptureStderr();
  // Of the processor: what other programs take is not ours.
  const std::clock_t start = std::clock();
  view->setFieldText(0, "https://" + std::string(10'000'000, 'x'));
  runFor(std::chrono::milliseconds(50));
  EXPECT_LT(std::clock() - start, 3 * CLOCKS_PER_SEC);
  EXPECT_EQ(view->fieldText(0).substr(0, 9), "https://x");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

}  // namespace
}  // namespace orvalle::contract
