#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "tests/contract/status_item_rigs.h"
#include "tests/contract/toplevels_linux.h"

namespace orvalle::contract {
namespace {

using platform::Menu;
using platform::MenuItem;
using platform::StatusFace;
using platform::linuxos::GlibPtr;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;
using ::testing::SizeIs;

using Signals = std::map<std::string, int>;

/// What the bus sees of a status item that is rendered again and again.
class StatusItemOnTheBus : public ::testing::Test {
 protected:
  StatusItemOnTheBus() {
    face.image.size = {16, 16};
    face.image.ovals = {{{{6, 6}, {4, 4}}, 1}};
    face.image.isTemplate = true;
    face.title = " 24:13 • Focus";
    header->setEnabled(false);
    menu->replace(0, 0, {line, header, target.item("last")});
    makeItem();
  }

  void makeItem() {
    item = rig.bar().makeItem();
    item->setFace(face);
    item->setMenu(menu);
    ASSERT_TRUE(rig.becomesShown(true));
    rig.settle();
    // Hosts that have not looked yet are told nothing.
    host.menu();
    host.takeSignals();
  }

  /// Puts these rows below the header, in place of those of the last time.
  void render(std::vector<std::shared_ptr<MenuItem>> rows) {
    const auto count = menu->items().size() - 3;
    menu->replace(2, count, std::move(rows));
    item->setFace(face);
  }

  Signals signalsAfter(const std::function<void()>& change) {
    change();
    rig.settle();
    return host.takeSignals();
  }

  /// Calls the item as a host does; whether it answered.
  bool call(const char* method, GVariant* parameters) {
    return host.call(host.item().value().c_str(), "/StatusNotifierItem", "org.kde.StatusNotifierItem", method,
                     parameters) != nullptr;
  }

  std::optional<TrayHost::Row> row(const std::string& label) {
    for (const auto& candidate : host.menu()) {
      if (candidate.label == label) return candidate;
    }
    return {};
  }

  NativeStatusBarRig rig;
  TrayHost& host = rig.host;
  RecordingTarget target;
  StatusFace face;
  std::shared_ptr<MenuItem> line = std::make_shared<MenuItem>("Focus · 24′ al traguardo", "");
  std::shared_ptr<MenuItem> header = std::make_shared<MenuItem>("Task", "");
  std::shared_ptr<Menu> menu = std::make_shared<Menu>();
  std::unique_ptr<platform::StatusItem> item;
};

TEST_F(StatusItemOnTheBus, tellsWhatItIs) {
  EXPECT_EQ(host.text("Id"), "orvalle");
  EXPECT_EQ(host.text("Category"), "ApplicationStatus");
  EXPECT_EQ(host.text("Status"), "Active");
  EXPECT_EQ(host.text("IconName"), "");
  EXPECT_EQ(host.text("Title"), " 24:13 • Focus");
  EXPECT_EQ(host.text("XAyatanaLabel"), " 24:13 • Focus");
  EXPECT_EQ(host.text("XAyatanaLabelGuide"), " 88:88 • Focus");
  EXPECT_EQ(host.toolTip(), "Focus · 24′ al traguardo");
  EXPECT_TRUE(g_variant_get_boolean(host.property("ItemIsMenu").get()));
  EXPECT_EQ(g_variant_get_int32(host.property("WindowId").get()), 0);
}

TEST_F(StatusItemOnTheBus, announcesItselfOnceToEachWatcher) {
  const auto announcements = [&](std::size_t count) {
    const bool reached = runUntil([&] { return host.announced().size() >= count; });
    rig.settle();
    return reached && host.announced() == std::vector(count, host.item().value());
  };
  EXPECT_TRUE(announcements(0));
  host.startWatching();
  EXPECT_TRUE(announcements(1));
  host.stopWatching();
  EXPECT_TRUE(announcements(1));
  host.startWatching();
  EXPECT_TRUE(announcements(2));
  host.stopWatching();
}

TEST_F(StatusItemOnTheBus, isShownWhileSomebodyWatches) {
  EXPECT_FALSE(item->isShown());
  host.startWatching();
  EXPECT_TRUE(runUntil([&] { return item->isShown(); }));
  host.stopWatching();
  EXPECT_TRUE(runUntil([&] { return !item->isShown(); }));
}

TEST_F(StatusItemOnTheBus, isNotShownByAWatcherWithoutAHost) {
  host.tellHosted(false);
  host.startWatching();
  ASSERT_TRUE(runUntil([&] { return host.askedForHosts() > 0; }));
  rig.settle();
  EXPECT_FALSE(item->isShown());
  host.tellHosted(true);
  EXPECT_TRUE(runUntil([&] { return item->isShown(); }));
  host.tellHosted(false);
  EXPECT_TRUE(runUntil([&] { return !item->isShown(); }));
  host.stopWatching();
}

TEST_F(StatusItemOnTheBus, isShownAgainByTheWatcherThatComesAfterOneWithoutAHost) {
  host.tellHosted(false);
  host.startWatching();
  ASSERT_TRUE(runUntil([&] { return host.askedForHosts() > 0; }));
  host.stopWatching();
  // Said while nobody watches, and so heard by nobody.
  host.tellHosted(true);
  host.startWatching();
  EXPECT_TRUE(runUntil([&] { return item->isShown(); }));
  host.stopWatching();
}

TEST_F(StatusItemOnTheBus, announcesItselfToAWatcherThatIsThereAlready) {
  item.reset();
  ASSERT_TRUE(rig.becomesShown(false));
  host.startWatching();
  makeItem();
  EXPECT_TRUE(runUntil([&] { return !host.announced().empty(); }));
  EXPECT_THAT(host.announced(), ElementsAre(host.item().value()));
  host.stopWatching();
}

TEST_F(StatusItemOnTheBus, saysNothingWhenNothingDiffers) {
  render({target.task("1", "one"), target.task("2", "two", true)});
  rig.settle();
  host.menu();
  host.takeSignals();
  const auto before = host.menu();
  EXPECT_EQ(signalsAfter([&] {
              render({target.task("1", "one"), target.task("2", "two", true)});
            }),
            Signals{});
  EXPECT_EQ(host.menu(), before);
}

TEST_F(StatusItemOnTheBus, tellsOnlyTheLabelOfATick) {
  EXPECT_EQ(signalsAfter([&] {
              face.title = " 24:12 • Focus";
              render({});
              face.title = " 24:11 • Focus";
              render({});
            }),
            (Signals{{"XAyatanaNewLabel", 1}, {"NewTitle", 1}}));
}

TEST_F(StatusItemOnTheBus, tellsTheStatusLineAsToolTipAndRow) {
  EXPECT_EQ(signalsAfter([&] { line->setTitle("Focus · 23′ al traguardo"); }),
            (Signals{{"NewToolTip", 1}, {"ItemsPropertiesUpdated", 1}}));
  EXPECT_EQ(host.toolTip(), "Focus · 23′ al traguardo");
}

TEST_F(StatusItemOnTheBus, tellsAnotherPictureAsIcon) {
  EXPECT_EQ(signalsAfter([&] {
              face.image.ovals.clear();
              render({});
            }),
            (Signals{{"NewIcon", 1}}));
  EXPECT_EQ(signalsAfter([&] {
              face.alpha = 0.55;
              render({});
            }),
            (Signals{{"NewIcon", 1}}));
}

TEST_F(StatusItemOnTheBus, keepsTheLayoutWhileTheSameRowsChange) {
  render({target.task("1", "one"), target.task("2", "two")});
  rig.settle();
  const auto before = row("one");
  host.takeSignals();
  EXPECT_EQ(signalsAfter([&] {
              render({target.task("1", "uno"), target.task("2", "two", true)});
            }),
            (Signals{{"ItemsPropertiesUpdated", 1}}));
  EXPECT_EQ(row("uno").value().id, before.value().id);
  EXPECT_EQ(row("two").value().mark, true);
  EXPECT_EQ(signalsAfter([&] { render({target.task("2", "two", true)}); }), (Signals{{"LayoutUpdated", 1}}));
}

TEST_F(StatusItemOnTheBus, keepsHiddenRowsInTheTree) {
  header->setHidden(true);
  rig.settle();
  EXPECT_EQ(row("Task").value().visible, false);
}

TEST_F(StatusItemOnTheBus, hasAPlaceForMarksThatAreOff) {
  render({target.task("1", "one")});
  rig.settle();
  EXPECT_EQ(row("one").value().mark, false);
  EXPECT_EQ(row("last").value().mark, std::nullopt);
}

TEST_F(StatusItemOnTheBus, takesAClickForTheRowThatWasSeen) {
  render({target.task("1", "one"), target.task("2", "two")});
  rig.settle();
  const int one = row("one").value().id, two = row("two").value().id;
  const auto rendered = target.task("2", "two");
  render({rendered});
  host.click({one});
  host.click({two});
  rig.settle();
  EXPECT_THAT(target.performed, ElementsAre("toggleTask 2"));
  EXPECT_THAT(target.senders, ElementsAre(rendered.get()));
}

TEST_F(StatusItemOnTheBus, takesTwoClicksOfOneMomentInTheirOrder) {
  const auto first = target.task("1", "one"), second = target.task("2", "two"),
             secondAnew = target.task("2", "two");
  render({first, second});
  rig.settle();
  struct Rendering : platform::ActionTarget {
    bool responds(std::string_view) const override { return true; }
    void perform(std::string_view, MenuItem&) override { render(); }
    std::function<void()> render;
  } rendering;
  rendering.render = [&] { render({secondAnew}); };
  first->setTarget(&rendering);
  rig.settle();
  host.click({row("one").value().id, row("two").value().id});
  rig.settle();
  EXPECT_THAT(target.senders, ElementsAre(secondAnew.get()));
}

TEST_F(StatusItemOnTheBus, tellsItsMarkOnceMoreAfterAClick) {
  render({target.task("1", "one")});
  rig.settle();
  const int one = row("one").value().id;
  host.takeSignals();
  // A host may have ticked the row on its own account.
  EXPECT_EQ(signalsAfter([&] { host.click({one}); })["ItemsPropertiesUpdated"], 1);
  EXPECT_EQ(row("one").value().mark, false);
}

TEST_F(StatusItemOnTheBus, tellsTitlesLiterally) {
  render({target.task("1", "<b>a</b> & b_c_ &amp; 🎯"), target.task("2", "due\r\nrighe\xE2\x80\xA8tre"),
          target.task("3", std::string("nul\0l", 5)),
          target.task("4",
                      "\xE2\x80\xAE"
                      "bidi"),
          target.task("5", "rotto\xFF")});
  rig.settle();
  std::vector<std::string> labels;
  for (const auto& seen : host.menu()) labels.push_back(seen.label);
  EXPECT_THAT(labels, ElementsAre("Focus · 24′ al traguardo", "Task", "<b>a</b> & b__c__ &amp; 🎯",
                                  "due righe tre", "null",
                                  "\xE2\x80\xAE"
                                  "bidi",
                                  "rotto\xEF\xBF\xBD", "last"));
}

TEST_F(StatusItemOnTheBus, cutsTitlesThatNobodyCouldRead) {
  std::string title;
  while (title.size() < 1'000'000) title += "è";
  std::string shown;
  for (int character = 1; character < 200; ++character) shown += "è";
  shown += "…";
  line->setTitle(title);
  face.title = title;
  render({target.task("1", title)});
  rig.settle();
  EXPECT_EQ(host.toolTip(), shown);
  EXPECT_EQ(host.text("Title"), shown);
  EXPECT_EQ(host.text("XAyatanaLabel"), shown);
  EXPECT_EQ(host.menu()[2].label, shown);
}

TEST_F(StatusItemOnTheBus, namesKeys) {
  const auto key = [](const char* title, const char* keyEquivalent) {
    return std::make_shared<MenuItem>(title, std::string(platform::kActionTerminate), keyEquivalent);
  };
  render({key("lower", "o"), key("upper", "N"), key("sign", ","), key("none", "")});
  rig.settle();
  EXPECT_EQ(row("lower").value().shortcut, "Control+o");
  EXPECT_EQ(row("upper").value().shortcut, "Control+Shift+n");
  EXPECT_EQ(row("sign").value().shortcut, "Control+comma");
  EXPECT_EQ(row("none").value().shortcut, "");
}

TEST_F(StatusItemOnTheBus, mirrorsSubmenus) {
  const auto submenu = std::make_shared<Menu>();
  const auto inner = target.item("inner");
  submenu->add(inner);
  render({MenuItem::opening("outer", submenu)});
  rig.settle();
  inner->setTitle("within");
  rig.settle();
  const auto rows = row("outer").value().submenu;
  ASSERT_THAT(rows, SizeIs(1));
  EXPECT_EQ(rows[0].label, "within");
  host.click({rows[0].id});
  rig.settle();
  EXPECT_THAT(target.senders, ElementsAre(inner.get()));
}

/// The menus of our own that are open.
std::vector<GtkMenuShell*> openMenus() {
  std::vector<GtkMenuShell*> found;
  for (GtkWindow* window : toplevels()) {
    GtkWidget* child = gtk_bin_get_child(GTK_BIN(window));
    if (child && GTK_IS_MENU(child) && gtk_widget_get_mapped(child)) found.push_back(GTK_MENU_SHELL(child));
  }
  return found;
}

TEST_F(StatusItemOnTheBus, opensItsMenuForAHostThatOnlyTellsOfTheClick) {
  const auto chosen = target.item("chosen");
  render({chosen});
  ASSERT_TRUE(call("Activate", g_variant_new("(ii)", 5, 5)));
  ASSERT_TRUE(runUntil([] { return !openMenus().empty(); }));
  ASSERT_THAT(openMenus(), SizeIs(1));

  GtkMenuShell* shell = openMenus().front();
  std::vector<std::string> titles;
  GList* rows = gtk_container_get_children(GTK_CONTAINER(shell));
  for (GList* each = rows; each; each = each->next) {
    titles.emplace_back(gtk_menu_item_get_label(GTK_MENU_ITEM(each->data)));
  }
  EXPECT_THAT(titles, ElementsAre("Focus · 24′ al traguardo", "Task", "chosen", "last"));
  gtk_menu_shell_activate_item(shell, GTK_WIDGET(g_list_nth_data(rows, 2)), TRUE);
  g_list_free(rows);
  rig.settle();
  EXPECT_THAT(target.senders, ElementsAre(chosen.get()));
  EXPECT_THAT(openMenus(), IsEmpty());

  ASSERT_TRUE(call("Activate", g_variant_new("(ii)", 5, 5)));
  EXPECT_TRUE(runUntil([] { return !openMenus().empty(); }));
  item.reset();
  EXPECT_THAT(openMenus(), IsEmpty());
}

TEST_F(StatusItemOnTheBus, answersWhateverHostsCall) {
  EXPECT_TRUE(call("Activate", g_variant_new("(ii)", 5, 5)));
  EXPECT_TRUE(call("SecondaryActivate", g_variant_new("(ii)", 5, 5)));
  EXPECT_TRUE(call("XAyatanaSecondaryActivate", g_variant_new("(u)", 5)));
  EXPECT_TRUE(call("ContextMenu", g_variant_new("(ii)", 5, 5)));
  EXPECT_TRUE(call("Scroll", g_variant_new("(is)", 120, "vertical")));
  EXPECT_FALSE(call("Explode", nullptr));
  EXPECT_THAT(target.performed, IsEmpty());
}

struct Pixmap {
  int width = 0;
  int height = 0;
  std::string pixels;
  /// The channel of a pixel: 0 alpha, 1 red, 2 green, 3 blue.
  int at(int x, int y, int channel) const {
    return static_cast<unsigned char>(pixels[static_cast<std::size_t>(4 * (y * width + x) + channel)]);
  }
};

std::vector<Pixmap> pixmaps(GVariant* value) {
  std::vector<Pixmap> read;
  for (gsize index = 0; index < g_variant_n_children(value); ++index) {
    const GlibPtr<GVariant> child(g_variant_get_child_value(value, index));
    Pixmap pixmap;
    GVariant* bytes = nullptr;
    g_variant_get(child.get(), "(ii@ay)", &pixmap.width, &pixmap.height, &bytes);
    const GlibPtr<GVariant> owned(bytes);
    gsize length = 0;
    const auto* data = static_cast<const char*>(g_variant_get_fixed_array(bytes, &length, 1));
    pixmap.pixels.assign(data, length);
    read.push_back(std::move(pixmap));
  }
  return read;
}

TEST_F(StatusItemOnTheBus, drawsItsPictureInManySizes) {
  // A dot in the upper left quarter.
  face.image.ovals = {{{{0, 8}, {8, 8}}, 1}};
  face.alpha = 0.5;
  render({});
  rig.settle();
  std::vector<int> sides;
  for (const auto& pixmap : pixmaps(host.property("IconPixmap").get())) {
    EXPECT_EQ(pixmap.width, pixmap.height);
    ASSERT_EQ(pixmap.pixels.size(), static_cast<std::size_t>(4 * pixmap.width * pixmap.height));
    sides.push_back(pixmap.width);
    const int quarter = pixmap.width / 4, end = pixmap.width - 1;
    EXPECT_NEAR(pixmap.at(quarter, quarter, 0), 128, 1) << pixmap.width;
    EXPECT_EQ(pixmap.at(quarter, end - quarter, 0), 0) << pixmap.width;
    EXPECT_EQ(pixmap.at(end - quarter, quarter, 0), 0) << pixmap.width;
    EXPECT_EQ(pixmap.at(end, end, 0), 0) << pixmap.width;
  }
  EXPECT_THAT(sides, ElementsAre(16, 22, 24, 32, 48));
}

TEST_F(StatusItemOnTheBus, drawsInInkThatTheThemeCanRead) {
  const auto ink = [&] {
    const auto pixmap = pixmaps(host.property("IconPixmap").get()).front();
    return pixmap.at(8, 8, 1) + pixmap.at(8, 8, 2) + pixmap.at(8, 8, 3);
  };
  auto* settings = gtk_settings_get_default();
  g_object_set(settings, "gtk-theme-name", "Adwaita", "gtk-application-prefer-dark-theme", FALSE, nullptr);
  rig.settle();
  EXPECT_LT(ink(), 3 * 80);
  host.takeSignals();
  EXPECT_EQ(signalsAfter([&] { g_object_set(settings, "gtk-application-prefer-dark-theme", TRUE, nullptr); }),
            (Signals{{"NewIcon", 1}}));
  EXPECT_GT(ink(), 3 * 200);
  g_object_set(settings, "gtk-application-prefer-dark-theme", FALSE, nullptr);
}

}  // namespace
}  // namespace orvalle::contract
