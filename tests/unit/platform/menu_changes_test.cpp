#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/menu.h"

namespace orvalle::platform {
namespace {

class NoTarget : public ActionTarget {
 public:
  bool responds(std::string_view) const override { return false; }
  void perform(std::string_view, MenuItem&) override {}
};

class MenuChangesTest : public ::testing::Test {
 protected:
  MenuChangesTest() {
    menu->add(item);
    listening = menu->onChange([this] { ++changes; });
  }
  static std::shared_ptr<MenuItem> makeItem(std::string title = "x") {
    return std::make_shared<MenuItem>(std::move(title), "act");
  }

  NoTarget target;
  std::shared_ptr<Menu> menu = std::make_shared<Menu>();
  std::shared_ptr<MenuItem> item = makeItem("item");
  int changes = 0;
  base::Subscription listening;
};

TEST_F(MenuChangesTest, areToldOnceEachAndOnlyWhenSomethingDiffers) {
  struct Row {
    std::string what;
    std::function<void()> change;
  };
  const std::vector<Row> rows = {
      {"title", [&] { item->setTitle("other"); }},
      {"target", [&] { item->setTarget(&target); }},
      {"checked", [&] { item->setChecked(true); }},
      {"enabled", [&] { item->setEnabled(false); }},
      {"hidden", [&] { item->setHidden(true); }},
      {"represented object", [&] { item->setRepresentedObject("id"); }},
      {"empty represented object", [&] { item->setRepresentedObject(""); }},
      {"no represented object", [&] { item->setRepresentedObject({}); }},
      {"no target", [&] { item->setTarget(nullptr); }},
      {"unchecked", [&] { item->setChecked(false); }},
      {"enabled again", [&] { item->setEnabled(true); }},
      {"shown again", [&] { item->setHidden(false); }},
  };
  int expected = 0;
  for (const auto& row : rows) {
    row.change();
    EXPECT_EQ(changes, ++expected) << row.what;
    row.change();
    EXPECT_EQ(changes, expected) << row.what << ", for the second time";
  }
  EXPECT_EQ(item->title(), "other");
}

TEST_F(MenuChangesTest, areToldWhenAnItemComesToCarryAMarkEvenOneThatIsOff) {
  item->setChecked(false);
  EXPECT_EQ(changes, 1);
  EXPECT_TRUE(item->checkable());
  EXPECT_FALSE(item->checked());
  item->setChecked(false);
  EXPECT_EQ(changes, 1);
  item->setChecked(true);
  EXPECT_TRUE(item->checkable());
}

TEST_F(MenuChangesTest, setWhatTheyTell) {
  item->setTitle("other");
  item->setTarget(&target);
  item->setChecked(true);
  item->setEnabled(false);
  item->setHidden(true);
  item->setRepresentedObject("id");
  EXPECT_EQ(item->title(), "other");
  EXPECT_EQ(item->target(), &target);
  EXPECT_TRUE(item->checked());
  EXPECT_FALSE(item->enabled());
  EXPECT_TRUE(item->hidden());
  EXPECT_EQ(item->representedObject(), "id");
}

TEST_F(MenuChangesTest, areMadeBeforeTheyAreTold) {
  std::string seen;
  const auto reading = menu->onChange([&] { seen = item->title(); });
  item->setTitle("new");
  EXPECT_EQ(seen, "new");
}

TEST_F(MenuChangesTest, areToldOnceForAnAdditionAndForAReplacement) {
  menu->add(makeItem());
  EXPECT_EQ(changes, 1);
  menu->replace(0, 2, {makeItem(), makeItem(), makeItem()});
  EXPECT_EQ(changes, 2);
  menu->replace(1, 2, {});
  EXPECT_EQ(changes, 3);
}

TEST_F(MenuChangesTest, areNotToldWhenNothingIsReplacedByNothing) {
  menu->replace(0, 0, {});
  menu->replace(1, 0, {});
  EXPECT_EQ(changes, 0);
}

TEST_F(MenuChangesTest, areNoLongerToldOfAnItemThatWasTakenOut) {
  menu->replace(0, 1, {});
  EXPECT_EQ(changes, 1);
  item->setTitle("elsewhere");
  EXPECT_EQ(changes, 1);
  menu->add(item);
  item->setTitle("back");
  EXPECT_EQ(changes, 3);
}

TEST_F(MenuChangesTest, ofSubmenusReachTheMenusAbove) {
  const auto sub = std::make_shared<Menu>();
  const auto subsub = std::make_shared<Menu>();
  const auto deep = makeItem();
  subsub->add(deep);
  const auto opener = MenuItem::opening("deeper", subsub);
  sub->add(opener);
  menu->add(MenuItem::opening("deep", sub));
  changes = 0;
  int subChanges = 0;
  const auto listeningToSub = sub->onChange([&] { ++subChanges; });

  deep->setChecked(true);
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(subChanges, 1);
  subsub->add(makeItem());
  EXPECT_EQ(changes, 2);
  opener->setTitle("renamed");
  EXPECT_EQ(changes, 3);
  item->setTitle("above");
  EXPECT_EQ(changes, 4);
  EXPECT_EQ(subChanges, 3);
}

TEST_F(MenuChangesTest, ofASubmenuThatOutlivesItsOpenerStayInIt) {
  const auto sub = std::make_shared<Menu>();
  const auto deep = makeItem();
  sub->add(deep);
  menu->add(MenuItem::opening("deep", sub));
  menu->replace(1, 1, {});
  changes = 0;
  deep->setChecked(true);
  EXPECT_EQ(changes, 0);
  EXPECT_TRUE(deep->checked());
}

TEST_F(MenuChangesTest, areNotToldToWhoStoppedListening) {
  listening.reset();
  item->setTitle("new");
  EXPECT_EQ(changes, 0);
}

TEST_F(MenuChangesTest, areToldToEveryListener) {
  int others = 0;
  const auto second = menu->onChange([&] { ++others; });
  item->setTitle("new");
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(others, 1);
}

TEST_F(MenuChangesTest, mayMakeAListenerLeave) {
  base::Subscription once;
  int calls = 0;
  once = menu->onChange([&] {
    ++calls;
    once.reset();
  });
  item->setTitle("a");
  item->setTitle("b");
  EXPECT_EQ(calls, 1);
  EXPECT_EQ(changes, 2);
}

TEST_F(MenuChangesTest, areNotToldToAListenerThatAnEarlierOneRemoved) {
  base::Subscription later;
  int laterCalls = 0;
  const auto remover = menu->onChange([&] { later.reset(); });
  later = menu->onChange([&] { ++laterCalls; });
  item->setTitle("a");
  EXPECT_EQ(laterCalls, 0);
}

TEST_F(MenuChangesTest, areToldToAListenerThatJoinsMeanwhileFromTheNextOneOn) {
  base::Subscription joined;
  int calls = 0;
  const auto joiner = menu->onChange([&] {
    if (!joined) joined = menu->onChange([&] { ++calls; });
  });
  item->setTitle("a");
  EXPECT_EQ(calls, 0);
  item->setTitle("b");
  EXPECT_EQ(calls, 1);
}

TEST_F(MenuChangesTest, letAListenerOutliveTheMenu) {
  item.reset();
  menu.reset();
  listening.reset();
  EXPECT_EQ(changes, 0);
}

}  // namespace
}  // namespace orvalle::platform
