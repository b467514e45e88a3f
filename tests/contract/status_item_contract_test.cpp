#include "platform/status_item.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "tests/contract/status_item_rigs.h"

namespace orvalle::contract {
namespace {

using platform::Menu;
using platform::MenuItem;
using platform::StatusFace;
using ::testing::ElementsAre;

template <typename Rig>
class StatusItemContract : public ::testing::Test {
 protected:
  void makeItem() {
    item = rig.bar().makeItem();
    item->setFace(StatusFace{.image = {}, .title = " Orvalle"});
    item->setMenu(menu);
    ASSERT_TRUE(rig.becomesShown(true));
    rig.settle();
  }

  Rig rig;
  RecordingTarget target;
  std::shared_ptr<Menu> menu = std::make_shared<Menu>();
  std::unique_ptr<platform::StatusItem> item;
};

using Rigs = ::testing::Types<MemoryStatusBarRig, NativeStatusBarRig>;
TYPED_TEST_SUITE(StatusItemContract, Rigs);

TYPED_TEST(StatusItemContract, isInTheBarAsLongAsItLives) {
  EXPECT_TRUE(this->rig.becomesShown(false));
  this->makeItem();
  EXPECT_TRUE(this->item->hasButton());
  this->item.reset();
  EXPECT_TRUE(this->rig.becomesShown(false));
}

TYPED_TEST(StatusItemContract, canBeMadeAgain) {
  this->makeItem();
  this->item.reset();
  this->menu->add(this->target.item("row"));
  this->makeItem();
  EXPECT_THAT(this->rig.rows(), ElementsAre(SeenRow{"row"}));
}

TYPED_TEST(StatusItemContract, showsTheLastTitle) {
  this->makeItem();
  EXPECT_EQ(this->rig.title(), " Orvalle");
  this->item->setFace(StatusFace{.image = {}, .title = " 24:13 • Focus"});
  this->item->setFace(StatusFace{.image = {}, .title = " 24:12 • <b>R&D</b> 🎯"});
  this->rig.settle();
  EXPECT_EQ(this->rig.title(), " 24:12 • <b>R&D</b> 🎯");
}

TYPED_TEST(StatusItemContract, mirrorsItsMenu) {
  const auto line = std::make_shared<MenuItem>("line", "");
  const auto off = this->target.item("off");
  off->setEnabled(false);
  const auto marked = this->target.item("marked");
  marked->setChecked(true);
  const auto unmarked = this->target.item("unmarked");
  unmarked->setChecked(false);
  const auto hidden = this->target.item("hidden");
  hidden->setHidden(true);
  const auto ofTheChain = std::make_shared<MenuItem>("chain", std::string(platform::kActionTerminate));
  const auto ofNobody = std::make_shared<MenuItem>("nobody", "nobody");
  this->menu->replace(0, 0,
                      {line, MenuItem::separator(), this->target.item("on"), off, marked, unmarked, hidden,
                       this->target.item("unknown", "unknown"), ofTheChain, ofNobody});
  this->makeItem();
  EXPECT_THAT(this->rig.rows(),
              ElementsAre(SeenRow{"line", false}, kSeparator, SeenRow{"on"}, SeenRow{"off", false},
                          SeenRow{"marked", true, "✓"}, SeenRow{"unmarked"}, SeenRow{"unknown", false},
                          SeenRow{"chain"}, SeenRow{"nobody", false}));
}

TYPED_TEST(StatusItemContract, followsWhatBecomesOfItsRows) {
  const auto row = this->target.item("row");
  this->menu->add(row);
  this->makeItem();
  row->setTitle("other");
  row->setEnabled(false);
  row->setChecked(true);
  this->rig.settle();
  EXPECT_THAT(this->rig.rows(), ElementsAre(SeenRow{"other", false, "✓"}));
  row->setChecked(false);
  row->setHidden(true);
  this->rig.settle();
  EXPECT_THAT(this->rig.rows(), ElementsAre());
  row->setHidden(false);
  row->setEnabled(true);
  row->setTarget(nullptr);
  this->rig.settle();
  EXPECT_THAT(this->rig.rows(), ElementsAre(SeenRow{"other", false}));
}

TYPED_TEST(StatusItemContract, followsItsListOfRows) {
  const auto a = this->target.item("a"), b = this->target.item("b"), c = this->target.item("c"),
             d = this->target.item("d"), e = this->target.item("e");
  this->makeItem();
  struct Step {
    const char* what;
    std::vector<std::shared_ptr<MenuItem>> items;
  };
  const Step steps[] = {{"filled", {b, c}},
                        {"at both ends", {a, b, c, d}},
                        {"turned round", {d, c, b, a}},
                        {"two taken out", {d, a}},
                        {"mixed", {b, a, e, d, c}},
                        {"moved to the front", {c, b, a, e, d}},
                        {"some new, some moved", {e, c, b}},
                        {"emptied", {}},
                        {"filled again", {a, b, c, d, e}}};
  for (const auto& step : steps) {
    this->menu->replace(0, this->menu->items().size(), step.items);
    this->rig.settle();
    std::vector<SeenRow> expected;
    for (const auto& row : step.items) expected.push_back({row->title()});
    EXPECT_EQ(this->rig.rows(), expected) << step.what;
  }
}

TYPED_TEST(StatusItemContract, followsRowsThatAreMadeAnew) {
  auto& tasks = this->target;
  this->makeItem();
  this->menu->replace(0, 0, {tasks.task("1", "one"), tasks.task("2", "two"), tasks.task("2", "two again")});
  this->rig.settle();
  this->menu->replace(0, 3,
                      {tasks.task("2", "two", true), tasks.task("3", "three"), tasks.task("1", "first"),
                       tasks.task("2", "two again")});
  this->rig.settle();
  EXPECT_THAT(this->rig.rows(), ElementsAre(SeenRow{"two", true, "✓"}, SeenRow{"three"}, SeenRow{"first"},
                                            SeenRow{"two again"}));
}

TYPED_TEST(StatusItemContract, carriesOutWhatIsChosen) {
  const auto row = this->target.item("row"), other = this->target.item("other", "otherAct");
  row->setRepresentedObject("thing");
  this->menu->replace(0, 0, {row, other});
  this->makeItem();
  this->rig.choose("other");
  this->rig.choose("row");
  EXPECT_THAT(this->target.performed, ElementsAre("otherAct -", "act thing"));
  EXPECT_THAT(this->target.senders, ElementsAre(other.get(), row.get()));
}

TYPED_TEST(StatusItemContract, carriesOutNothingOfARowThatCannotBeUsed) {
  const auto off = this->target.item("off");
  off->setEnabled(false);
  this->menu->replace(0, 0, {off, this->target.item("unknown", "unknown"), this->target.item("label", "")});
  this->makeItem();
  this->rig.choose("off");
  this->rig.choose("unknown");
  this->rig.choose("label");
  EXPECT_THAT(this->target.performed, ElementsAre());
}

TYPED_TEST(StatusItemContract, letsAnActionChangeTheMenu) {
  const auto row = this->target.item("row");
  this->menu->add(row);
  this->makeItem();
  struct Clearing : platform::ActionTarget {
    explicit Clearing(Menu& emptied) : menu(emptied) {}
    bool responds(std::string_view) const override { return true; }
    void perform(std::string_view, MenuItem&) override { menu.replace(0, menu.items().size(), {}); }
    Menu& menu;
  } clearing(*this->menu);
  row->setTarget(&clearing);
  this->rig.choose("row");
  this->rig.settle();
  EXPECT_THAT(this->rig.rows(), ElementsAre());
}

TYPED_TEST(StatusItemContract, takesAnotherMenu) {
  this->menu->add(this->target.item("old"));
  this->makeItem();
  const auto other = std::make_shared<Menu>();
  other->add(this->target.item("new"));
  this->item->setMenu(other);
  this->rig.settle();
  EXPECT_THAT(this->rig.rows(), ElementsAre(SeenRow{"new"}));
}

}  // namespace
}  // namespace orvalle::contract
