// The question and the window in which consent is seen and withdrawn, as the user finds them.

#include <gtest/gtest.h>

#include "tests/contract/accessibility_rigs.h"

namespace orvalle::platform {
namespace {

constexpr char kKey[] = "accessibilitaConsentita";

class AccessibilityWindow : public ::testing::Test {
 protected:
  void openSettings() {
    rig.accessibility().openSettings();
    ASSERT_EQ(rig.settings().size(), 1u);
  }
  static void collect(GtkWidget* widget, GType type, std::vector<GtkWidget*>& found) {
    contract::collect(widget, type, found);
  }
  GtkSwitch* consentSwitch() {
    std::vector<GtkWidget*> found;
    collect(rig.settings().at(0), GTK_TYPE_SWITCH, found);
    return GTK_SWITCH(found.at(0));
  }
  std::string settingsText() {
    std::vector<GtkWidget*> labels;
    collect(rig.settings().at(0), GTK_TYPE_LABEL, labels);
    std::string text;
    for (GtkWidget* label : labels) text += gtk_label_get_text(GTK_LABEL(label)) + std::string("\n");
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

}  // namespace
}  // namespace orvalle::platform
