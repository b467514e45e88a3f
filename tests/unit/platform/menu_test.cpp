#include "platform/menu.h"

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace orvalle::platform {
namespace {

/// Knows some actions and keeps what it was asked.
class Target : public ActionTarget {
 public:
  explicit Target(std::set<std::string, std::less<>> known) : known_(std::move(known)) {}
  bool responds(std::string_view action) const override { return known_.contains(action); }
  void perform(std::string_view action, MenuItem& sender) override {
    performed.emplace_back(action);
    senders.push_back(&sender);
  }
  std::vector<std::string> performed;
  std::vector<MenuItem*> senders;

 private:
  std::set<std::string, std::less<>> known_;
};

class MenuTest : public ::testing::Test {
 protected:
  static std::shared_ptr<MenuItem> item(std::string title, std::string action = "act", std::string key = "") {
    return std::make_shared<MenuItem>(std::move(title), std::move(action), std::move(key));
  }
  static std::string titles(const Menu& menu) {
    std::string all;
    for (const auto& row : menu.items()) all += row->title();
    return all;
  }

  Target chain{{"act", "chained"}};
  Target target{{"targeted"}};
};

TEST_F(MenuTest, makesItemsAsPlainData) {
  const MenuItem plain("Apri", "open", "o");
  EXPECT_EQ(plain.title(), "Apri");
  EXPECT_EQ(plain.action(), "open");
  EXPECT_EQ(plain.keyEquivalent(), "o");
  EXPECT_EQ(plain.target(), nullptr);
  EXPECT_FALSE(plain.checked());
  EXPECT_FALSE(plain.checkable());
  EXPECT_TRUE(plain.enabled());
  EXPECT_FALSE(plain.hidden());
  EXPECT_FALSE(plain.isSeparator());
  EXPECT_EQ(plain.representedObject(), std::nullopt);
  EXPECT_EQ(plain.submenu(), nullptr);
  EXPECT_TRUE(MenuItem::separator()->isSeparator());

  const auto menu = std::make_shared<Menu>("Vai");
  const auto opener = MenuItem::opening("Apre", menu);
  EXPECT_EQ(opener->title(), "Apre");
  EXPECT_EQ(opener->submenu(), menu);
  EXPECT_EQ(menu->title(), "Vai");
}

TEST_F(MenuTest, keepsItemsInTheOrderTheyWereAdded) {
  Menu menu;
  for (const auto title : {"a", "b", "c"}) menu.add(item(title));
  EXPECT_EQ(titles(menu), "abc");
}

TEST_F(MenuTest, replacesARangeOfItems) {
  struct Row {
    std::size_t index, count;
    std::vector<std::string> with;
    std::string result;
  };
  for (const auto& row : {
           Row{0, 0, {"x"}, "xabcd"},
           Row{4, 0, {"x", "y"}, "abcdxy"},
           Row{2, 0, {"x", "y", "z"}, "abxyzcd"},
           Row{1, 2, {}, "ad"},
           Row{1, 2, {"x"}, "axd"},
           Row{1, 1, {"x", "y"}, "axycd"},
           Row{0, 4, {}, ""},
           Row{0, 4, {"x"}, "x"},
           Row{3, 1, {"x"}, "abcx"},
           Row{2, 0, {}, "abcd"},
       }) {
    Menu menu;
    for (const auto title : {"a", "b", "c", "d"}) menu.add(item(title));
    std::vector<std::shared_ptr<MenuItem>> items;
    for (const auto& title : row.with) items.push_back(item(title));
    menu.replace(row.index, row.count, items);
    EXPECT_EQ(titles(menu), row.result);
  }
}

TEST_F(MenuTest, findsThePlaceOfItsOwnItemsOnly) {
  Menu menu;
  Menu other;
  const auto a = item("a");
  const auto b = item("b");
  const auto stranger = item("c");
  menu.add(a);
  menu.add(b);
  other.add(stranger);
  EXPECT_EQ(menu.indexOf(*a), 0u);
  EXPECT_EQ(menu.indexOf(*b), 1u);
  EXPECT_EQ(menu.indexOf(*stranger), std::nullopt);
  EXPECT_EQ(menu.indexOf(*item("a")), std::nullopt);
  menu.replace(0, 1, {});
  EXPECT_EQ(menu.indexOf(*a), std::nullopt);
  EXPECT_EQ(menu.indexOf(*b), 0u);
}

TEST_F(MenuTest, letsARemovedItemIntoAnotherMenu) {
  Menu menu;
  Menu other;
  const auto a = item("a");
  menu.add(a);
  menu.replace(0, 1, {});
  other.add(a);
  EXPECT_EQ(other.indexOf(*a), 0u);
}

TEST_F(MenuTest, letsItemsOutliveTheirMenuAndTakesThemBackInAnother) {
  const auto a = item("a");
  {
    Menu menu;
    menu.add(a);
  }
  a->setTitle("changed");
  Menu other;
  other.add(a);
  EXPECT_EQ(titles(other), "changed");
}

TEST_F(MenuTest, offersAnItemWhenItsTargetRespondsOrWithoutOneTheChain) {
  struct Row {
    std::string action;
    bool targeted;
    bool usable;
  };
  for (const auto& row : {
           Row{"targeted", true, true},
           Row{"targeted", false, false},
           Row{"chained", false, true},
           // An explicit target is the only one asked.
           Row{"chained", true, false},
           Row{"unknown", false, false},
           Row{"", false, false},
           Row{"", true, false},
       }) {
    MenuItem row_item("x", row.action);
    row_item.setTarget(row.targeted ? &target : nullptr);
    EXPECT_EQ(row_item.usable(chain), row.usable) << row.action << row.targeted;
    row_item.setEnabled(false);
    EXPECT_FALSE(row_item.usable(chain));
  }
}

TEST_F(MenuTest, neverAsksALabelsTarget) {
  // Even one that claims to know the empty action.
  Target eager{{""}};
  MenuItem label("label", "");
  label.setTarget(&eager);
  EXPECT_FALSE(label.usable(chain));
  label.choose(chain);
  EXPECT_TRUE(eager.performed.empty());
}

TEST_F(MenuTest, offersOpenersAndNeverSeparators) {
  const auto opener = MenuItem::opening("Vai", std::make_shared<Menu>());
  EXPECT_TRUE(opener->usable(chain));
  opener->setEnabled(false);
  EXPECT_FALSE(opener->usable(chain));
  Target eager{{""}};
  EXPECT_FALSE(MenuItem::separator()->usable(eager));
}

TEST_F(MenuTest, carriesOutAChosenItem) {
  MenuItem targeted("x", "targeted");
  targeted.setTarget(&target);
  targeted.choose(chain);
  EXPECT_EQ(target.performed, std::vector<std::string>{"targeted"});
  EXPECT_EQ(target.senders, std::vector<MenuItem*>{&targeted});
  EXPECT_TRUE(chain.performed.empty());

  MenuItem chained("x", "chained");
  chained.choose(chain);
  EXPECT_EQ(chain.performed, std::vector<std::string>{"chained"});
  EXPECT_EQ(chain.senders, std::vector<MenuItem*>{&chained});
}

TEST_F(MenuTest, doesNothingForAChosenItemThatIsNotUsable) {
  MenuItem disabled("x", "chained");
  disabled.setEnabled(false);
  disabled.choose(chain);
  MenuItem inert("x", "chained");
  inert.setTarget(&target);
  inert.choose(chain);
  MenuItem::separator()->choose(chain);
  MenuItem::opening("Vai", std::make_shared<Menu>())->choose(chain);
  EXPECT_TRUE(chain.performed.empty());
  EXPECT_TRUE(target.performed.empty());
}

class MenuKeyTest : public MenuTest {};

TEST_F(MenuKeyTest, findsTheFirstUsableItemInReadingOrder) {
  Menu bar;
  const auto first = std::make_shared<Menu>();
  const auto second = std::make_shared<Menu>();
  const auto deep = std::make_shared<Menu>();
  const auto disabled = item("a", "act", "k");
  disabled->setEnabled(false);
  const auto inert = item("b", "unknown", "k");
  const auto inDeep = item("c", "act", "k");
  const auto later = item("d", "act", "k");
  const auto last = item("e", "act", "k");
  first->add(disabled);
  first->add(inert);
  deep->add(inDeep);
  first->add(MenuItem::opening("deep", deep));
  first->add(later);
  second->add(last);
  bar.add(MenuItem::opening("first", first));
  bar.add(MenuItem::opening("second", second));

  EXPECT_EQ(itemForKey(bar, "k", chain), inDeep);
  inDeep->setEnabled(false);
  EXPECT_EQ(itemForKey(bar, "k", chain), later);
  later->setEnabled(false);
  EXPECT_EQ(itemForKey(bar, "k", chain), last);
  last->setEnabled(false);
  EXPECT_EQ(itemForKey(bar, "k", chain), nullptr);
}

TEST_F(MenuKeyTest, tellsUpperCaseFromLower) {
  Menu menu;
  const auto lower = item("a", "act", "n");
  const auto upper = item("b", "act", "N");
  menu.add(upper);
  menu.add(lower);
  EXPECT_EQ(itemForKey(menu, "n", chain), lower);
  EXPECT_EQ(itemForKey(menu, "N", chain), upper);
  EXPECT_EQ(itemForKey(menu, "x", chain), nullptr);
}

TEST_F(MenuKeyTest, findsNothingForNoKey) {
  Menu menu;
  menu.add(item("a", "act", ""));
  EXPECT_EQ(itemForKey(menu, "", chain), nullptr);
}

}  // namespace
}  // namespace orvalle::platform
