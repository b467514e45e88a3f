// The question and the window in which consent is seen and withdrawn, as the user finds them.

#include <gtest/gtest.h>

#include "tests/contract/accessibility_rigs.h"
#include "tests/contract/seen_linux.h"

namespace orvalle::platform {
namespace {

constexpr char kKey[] = "accessibilitaConsentita";

class AccessibilityWindow : public ::testing::Test {
 protected:
  void openSettings() {
    rig.accessibility().openSettings();
    ASSERT_EQ(rig.settings().size(), 1u);
  }
  std::vector<GtkWidget*> all(GType type) { return contract::all(rig.settings().at(0), type); }
  GtkSwitch* consentSwitch() { return GTK_SWITCH(all(GTK_TYPE_SWITCH).at(0)); }
  std::string settingsText() {
    std::string text;
    for (GtkWidget* label : all(GTK_TYPE_LABEL))
      text += gtk_label_get_text(GTK_LABEL(label)) + std::string("\n");
    return text;
  }

  contract::NativeAccessibilityRig rig;
};

TEST_F(AccessibilityWindow, keepsTheAnswerAmongTheSettings) {
  rig.accessibility().prompt();
  rig.answer(true);
  EXPECT_EQ(rig.defaults().boolean(kKey), true);
}

TEST_F(AccessibilityWindow, takesNothingButABooleanForConsent) {
  rig.defaults().set(kKey, std::string("true"));
  EXPECT_FALSE(rig.accessibility().trusted());
  rig.defaults().set(kKey, std::int64_t{1});
  EXPECT_FALSE(rig.accessibility().trusted());
}

TEST_F(AccessibilityWindow, saysWhatIsReadAndWhereItStays) {
  rig.accessibility().prompt();
  std::string text;
  for (GtkWidget* label : contract::all(contract::onlyDialog(), GTK_TYPE_LABEL))
    text += gtk_label_get_text(GTK_LABEL(label));
  EXPECT_NE(text.find("titolo della finestra"), std::string::npos) << text;
  EXPECT_NE(text.find("/casa/.local/share/Orvalle/attivita"), std::string::npos) << text;
  rig.answer(false);
}

TEST_F(AccessibilityWindow, takesAReturnForARefusal) {
  rig.accessibility().prompt();
  auto* dialog = contract::onlyDialog();
  contract::runUntil([&] { return gtk_window_is_active(GTK_WINDOW(dialog)); });
  contract::pressKey(GTK_WINDOW(dialog), GDK_KEY_Return);
  EXPECT_TRUE(contract::runUntil([] { return contract::dialogs().empty(); }));
  EXPECT_EQ(rig.defaults().boolean(kKey), false);
}

TEST_F(AccessibilityWindow, takesAClosedDialogForARefusal) {
  rig.accessibility().prompt();
  gtk_window_close(GTK_WINDOW(contract::onlyDialog()));
  EXPECT_TRUE(contract::runUntil([] { return contract::dialogs().empty(); }));
  EXPECT_FALSE(rig.accessibility().trusted());
}

TEST_F(AccessibilityWindow, showsWhetherThereIsConsent) {
  openSettings();
  EXPECT_FALSE(gtk_switch_get_active(consentSwitch()));
  EXPECT_NE(settingsText().find("Non consentito"), std::string::npos);
  rig.accessibility().prompt();
  rig.answer(true);
  EXPECT_TRUE(gtk_switch_get_active(consentSwitch()));
  EXPECT_NE(settingsText().find("\nConsentito"), std::string::npos);
}

TEST_F(AccessibilityWindow, withdrawsConsentAtOnce) {
  rig.defaults().set(kKey, true);
  openSettings();
  EXPECT_TRUE(gtk_switch_get_active(consentSwitch()));
  gtk_switch_set_active(consentSwitch(), FALSE);
  EXPECT_FALSE(rig.accessibility().trusted());
  EXPECT_EQ(rig.defaults().boolean(kKey), false);
  EXPECT_NE(settingsText().find("Non consentito"), std::string::npos);
  gtk_switch_set_active(consentSwitch(), TRUE);
  EXPECT_TRUE(rig.accessibility().trusted());
}

TEST_F(AccessibilityWindow, writesNothingByBeingShown) {
  rig.defaults().set(kKey, true);
  const int writes = rig.defaults().writes;
  openSettings();
  EXPECT_EQ(rig.defaults().writes, writes);
}

TEST_F(AccessibilityWindow, isOnlyOneHoweverOftenItIsOpened) {
  openSettings();
  openSettings();
}

TEST_F(AccessibilityWindow, isClosedWithItsButtonAndWithEscapeAndOpensAgain) {
  openSettings();
  gtk_window_close(GTK_WINDOW(rig.settings()[0]));
  EXPECT_TRUE(contract::runUntil([] { return contract::NativeAccessibilityRig::settings().empty(); }));
  openSettings();
  contract::pressKey(GTK_WINDOW(rig.settings()[0]), GDK_KEY_Escape);
  EXPECT_TRUE(contract::NativeAccessibilityRig::settings().empty());
  openSettings();
}

TEST_F(AccessibilityWindow, isReadOutInTheOrderInWhichItIsSeen) {
  openSettings();
  GtkWidget* window = rig.settings()[0];
  EXPECT_STREQ(atk_object_get_name(gtk_widget_get_accessible(window)), "Permessi di Orvalle");
  std::vector<std::string> expected;
  for (GtkWidget* label : all(GTK_TYPE_LABEL))
    expected.push_back(std::string("label ") + gtk_label_get_text(GTK_LABEL(label)));
  ASSERT_EQ(expected.size(), 4u);
  EXPECT_EQ(expected.front(), "label Titoli delle finestre");
  EXPECT_EQ(expected.back(), "label Non consentito");
  expected.emplace_back("toggle button Titoli delle finestre");
  EXPECT_EQ(contract::readOut(window), expected);
}

TEST_F(AccessibilityWindow, startsAtTheSwitchWhichSpaceTurns) {
  openSettings();
  auto* window = GTK_WINDOW(rig.settings()[0]);
  ASSERT_TRUE(contract::runUntil([&] { return gtk_window_is_active(window); }));
  EXPECT_EQ(contract::tabRound(window), std::vector<GtkWidget*>{GTK_WIDGET(consentSwitch())});
  contract::pressKey(window, GDK_KEY_space);
  EXPECT_TRUE(contract::runUntil([&] { return rig.accessibility().trusted(); }));
}

TEST_F(AccessibilityWindow, canBeReadInEveryTheme) {
  openSettings();
  auto* window = GTK_WINDOW(rig.settings()[0]);
  ASSERT_TRUE(contract::runUntil([&] { return gtk_window_is_active(window); }));
  for (const auto& look : contract::Theme::kAll) {
    const contract::Theme theme(look);
    for (GtkWidget* label : all(GTK_TYPE_LABEL))
      EXPECT_GE(contract::contrastOf(label), contract::kTextContrast)
          << look.name << look.dark << gtk_label_get_text(GTK_LABEL(label));
  }
}

}  // namespace
}  // namespace orvalle::platform
