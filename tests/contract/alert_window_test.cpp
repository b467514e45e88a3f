#include <gtest/gtest.h>

#include "tests/contract/dialog_rigs.h"
#include "tests/contract/seen_linux.h"

/// The native alert as a user meets it.
namespace orvalle::contract {
namespace {

class AlertWindow : public ::testing::Test {
 protected:
  GtkDialog* show(const platform::Alert& alert) {
    rig.alerts().show(alert, [this](std::size_t button) { answers.push_back(button); });
    auto* dialog = onlyDialog();
    EXPECT_TRUE(runUntil([&] { return gtk_window_is_active(GTK_WINDOW(dialog)); }));
    return dialog;
  }

  static std::string text(GtkWidget* label) { return gtk_label_get_text(GTK_LABEL(label)); }

  NativeAlertsRig rig;
  std::vector<std::size_t> answers;
};

TEST_F(AlertWindow, showsTextsAndTitlesAsTheyAre) {
  auto* dialog = show({"50% di <b>Tesi</b> & _altro_", "&amp; <i>x</i>\nfine", {"Va_bene", "<b>No"}});
  EXPECT_STREQ(gtk_window_get_title(GTK_WINDOW(dialog)), g_get_application_name());
  const auto labels = all(dialog, GTK_TYPE_LABEL);
  ASSERT_EQ(labels.size(), 2U);
  EXPECT_EQ(text(labels[0]), "50% di <b>Tesi</b> & _altro_");
  EXPECT_EQ(text(labels[1]), "&amp; <i>x</i>\nfine");
  for (auto* label : labels) EXPECT_TRUE(gtk_label_get_selectable(GTK_LABEL(label)));
  const auto buttons = all(dialog, GTK_TYPE_BUTTON);
  ASSERT_EQ(buttons.size(), 2U);
  EXPECT_STREQ(gtk_button_get_label(GTK_BUTTON(buttons[0])), "Va_bene");
  EXPECT_STREQ(atk_object_get_name(gtk_widget_get_accessible(buttons[0])), "Va_bene");
  EXPECT_STREQ(gtk_button_get_label(GTK_BUTTON(buttons[1])), "<b>No");
}

TEST_F(AlertWindow, returnIsTheFirstButtonAndEscapeTheLast) {
  const auto answerTo = [&](auto act) {
    answers.clear();
    act(GTK_WINDOW(show({"Prova", "", {"Uno", "Due", "Tre"}})));
    // A button pressed by key goes down and up again.
    EXPECT_TRUE(runUntil([&] { return !answers.empty(); }));
    return answers;
  };
  EXPECT_EQ(answerTo([](GtkWindow* window) { pressKey(window, GDK_KEY_Return); }),
            std::vector<std::size_t>{0});
  EXPECT_EQ(answerTo([](GtkWindow* window) { pressKey(window, GDK_KEY_Escape); }),
            std::vector<std::size_t>{2});
  EXPECT_EQ(answerTo([](GtkWindow* window) { gtk_window_close(window); }), std::vector<std::size_t>{2});
}

TEST_F(AlertWindow, closingIsTheButtonThatItStandsFor) {
  platform::Alert alert{"Prova", "", {"Uno", "Due", "Tre"}};
  alert.closing = 1;
  pressKey(GTK_WINDOW(show(alert)), GDK_KEY_Escape);
  EXPECT_TRUE(runUntil([&] { return !answers.empty(); }));
  EXPECT_EQ(answers, std::vector<std::size_t>{1});
}

TEST_F(AlertWindow, aProgressAlertHasABarThatMoves) {
  const auto progress =
      rig.alerts().showProgress({"Scarico", "Un momento.", {"Annulla"}}, [](std::size_t) {});
  const auto bars = all(onlyDialog(), GTK_TYPE_PROGRESS_BAR);
  ASSERT_EQ(bars.size(), 1U);
  int width = 0;
  int height = 0;
  gtk_widget_get_size_request(bars[0], &width, &height);
  EXPECT_EQ(width, 260);
  EXPECT_EQ(height, 20);
  int drawn = 0;
  g_signal_connect_swapped(bars[0], "draw", G_CALLBACK(+[](int* count) -> gboolean {
                             ++*count;
                             return FALSE;
                           }),
                           &drawn);
  EXPECT_TRUE(runUntil([&] { return drawn > 3; }));
}

TEST_F(AlertWindow, textsBeginAtTheSamePlace) {
  auto* dialog = show({"Breve", "Una riga che è molto più lunga di quella che le sta sopra.", {"Va bene"}});
  const auto labels = all(dialog, GTK_TYPE_LABEL);
  ASSERT_EQ(labels.size(), 2U);
  const auto begin = [](GtkWidget* label) {
    int x = 0;
    gtk_label_get_layout_offsets(GTK_LABEL(label), &x, nullptr);
    return x;
  };
  EXPECT_EQ(begin(labels[0]), begin(labels[1]));
}

TEST_F(AlertWindow, staysOnTheScreenWhateverItSays) {
  std::string lines;
  for (int line = 0; line < 300; ++line) lines += "riga " + std::to_string(line) + "\n";
  const std::string word(1 << 16, 'm');
  std::string words;
  for (int count = 0; count < 2'000; ++count) words += "parola ";
  GdkRectangle area;
  gdk_monitor_get_workarea(gdk_display_get_monitor(gdk_display_get_default(), 0), &area);
  for (const auto& texts : {std::pair(lines, lines), {word, word}, {words, words}, {lines, std::string()}}) {
    auto* dialog = show({texts.first, texts.second, {"Va bene", "Annulla"}});
    int width = 0;
    int height = 0;
    gtk_window_get_size(GTK_WINDOW(dialog), &width, &height);
    EXPECT_LE(width, area.width);
    EXPECT_LE(height, area.height * 2 / 3);
    for (auto* button : all(dialog, GTK_TYPE_BUTTON)) {
      GtkAllocation place;
      gtk_widget_get_allocation(button, &place);
      EXPECT_LE(place.y + place.height, height);
    }
    rig.press(1);
  }
}

TEST_F(AlertWindow, textThatIsNoUtf8IsShownAllTheSame) {
  auto* dialog = show({"Perch\xe9", std::string("a\0b", 3), {"Va bene"}});
  EXPECT_EQ(text(all(dialog, GTK_TYPE_LABEL)[0]), "Perch\uFFFD");
  EXPECT_EQ(text(all(dialog, GTK_TYPE_LABEL)[1]),
            "a\uFFFD"
            "b");
}

const platform::Alert kQuestion{"La pagina non risponde", "Puoi aspettare.", {"Aspetta", "Ricarica"}};

TEST_F(AlertWindow, isReadOutInTheOrderInWhichItIsSeen) {
  auto* dialog = show(kQuestion);
  AtkObject* accessible = gtk_widget_get_accessible(GTK_WIDGET(dialog));
  EXPECT_EQ(atk_object_get_role(accessible), ATK_ROLE_ALERT);
  EXPECT_STREQ(atk_object_get_name(accessible), g_get_application_name());
  EXPECT_EQ(readOut(dialog),
            (std::vector<std::string>{"label La pagina non risponde", "label Puoi aspettare.",
                                      "push button Aspetta", "push button Ricarica"}));
}

TEST_F(AlertWindow, goesRoundWithTabInTheOrderInWhichItIsSeen) {
  auto* dialog = show(kQuestion);
  const auto labels = all(dialog, GTK_TYPE_LABEL);
  const auto buttons = all(dialog, GTK_TYPE_BUTTON);
  EXPECT_EQ(tabRound(dialog), (std::vector<GtkWidget*>{buttons[0], buttons[1], labels[0], labels[1]}));
  const auto left = [](GtkWidget* button) {
    GtkAllocation place;
    gtk_widget_get_allocation(button, &place);
    return place.x;
  };
  EXPECT_LT(left(buttons[0]), left(buttons[1]));
}

TEST_F(AlertWindow, canBeReadInEveryTheme) {
  auto* dialog = show(kQuestion);
  for (const auto& look : Theme::kAll) {
    const Theme theme(look);
    for (auto* label : all(dialog, GTK_TYPE_LABEL))
      EXPECT_GE(contrastOf(label), kTextContrast) << look.name << look.dark << text(label);
    for (auto* button : all(dialog, GTK_TYPE_BUTTON))
      EXPECT_GE(contrastOf(gtk_bin_get_child(GTK_BIN(button))), kTextContrast) << look.name << look.dark;
  }
}

}  // namespace
}  // namespace orvalle::contract
