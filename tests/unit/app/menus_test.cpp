#include "app/menus.h"

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "app/controller.h"
#include "link/config.h"
#include "platform/memory/memory_platform.h"
#include "tests/unit/web/memory_services.h"

namespace orvalle::app {
namespace {

class NobodysTarget : public platform::ActionTarget {
 public:
  bool responds(std::string_view) const override { return false; }
  void perform(std::string_view, platform::MenuItem&) override {}
};

/// "title | action | key", or "---" for a separator.
std::string described(const platform::MenuItem& item) {
  if (item.isSeparator()) return "---";
  return item.title() + " | " + item.action() + " | " + item.keyEquivalent();
}

class MenusTest : public ::testing::Test {
 protected:
  using Lines = std::vector<std::string>;
  const platform::Menu& menu(std::size_t index) { return *menus.bar->items().at(index)->submenu(); }
  Lines lines(std::size_t index) {
    Lines all;
    for (const auto& item : menu(index).items()) all.push_back(described(*item));
    return all;
  }

  NobodysTarget controller;
  MainMenus menus = buildMainMenus(controller, true);
};

TEST_F(MenusTest, openFromTheBarInTheirOrder) {
  Lines titles;
  for (const auto& item : menus.bar->items()) {
    ASSERT_TRUE(item->submenu());
    EXPECT_EQ(item->title(), item->submenu()->title());
    EXPECT_EQ(item->action(), "");
    EXPECT_EQ(item->keyEquivalent(), "");
    titles.push_back(item->title());
  }
  EXPECT_EQ(titles, (Lines{"", "Sessione", "Vai", "Modifica", "Finestra", "Aiuto"}));
}

TEST_F(MenusTest, beginWithTheApplications) {
  EXPECT_EQ(lines(0), (Lines{"Impostazioni… | vaiImpostazioni | ,", "Scorciatoie | vaiScorciatoie | /", "---",
                             "Cerca aggiornamenti… | cercaAggiornamenti | ", "---",
                             "Nascondi Orvalle | hide: | h", "Esci da Orvalle | terminate: | q"}));
}

TEST_F(MenusTest, holdTheSession) {
  EXPECT_EQ(lines(1), (Lines{"Sessione da 25 minuti | sessioneVeloce | n", "Nuova sessione… | vaiFocus | N",
                             "Ferma la sessione | stop | .", "---", "Allunga di 5 minuti | plus5 | ]",
                             "Accorcia di 5 minuti | minus5 | [", "---",
                             "Tienila sopra le altre app | toggleOverlay | t"}));
}

TEST_F(MenusTest, leadToTheScreens) {
  EXPECT_EQ(lines(2),
            (Lines{"Focus | vaiFocus | 1", "Sprint | vaiSprint | 2", "Calendario | vaiCalendario | 3",
                   "Mappa | vaiMappa | 4", "Brain | vaiBrain | 5", "Progetti | vaiProgetti | 6",
                   "Obiettivi | vaiObiettivi | 7", "Inbox | vaiInbox | 8", "Oggi | vaiOggi | 9", "---",
                   "Review | vaiReview | ", "Reset della domenica | vaiReset | ", "Sfida | vaiSfida | ",
                   "Organizzazione | vaiOrganizzazione | "}));
}

TEST_F(MenusTest, editText) {
  EXPECT_EQ(lines(3),
            (Lines{"Annulla | undo: | z", "Ripeti | redo: | Z", "Taglia | cut: | x", "Copia | copy: | c",
                   "Incolla | paste: | v", "Seleziona tutto | selectAll: | a"}));
}

TEST_F(MenusTest, manageTheWindowAndHelp) {
  EXPECT_EQ(lines(4), (Lines{"Apri Orvalle | openApp | o", "Riduci a icona | performMiniaturize: | m"}));
  EXPECT_EQ(lines(5),
            (Lines{"Scorciatoie da tastiera | vaiScorciatoie | /", "Abbina con il browser… | showPair | "}));
}

TEST_F(MenusTest, nameTheOnesThatSystemsTreatInTheirOwnWay) {
  EXPECT_EQ(menus.windows, menus.bar->items().at(4)->submenu());
  EXPECT_EQ(menus.help, menus.bar->items().at(5)->submenu());
}

TEST_F(MenusTest, haveTheControllerAsTargetEverywhereButInEditing) {
  for (std::size_t index = 0; index < menus.bar->items().size(); ++index) {
    for (const auto& item : menu(index).items()) {
      if (item->isSeparator()) continue;
      EXPECT_EQ(item->target(), index == 3 ? nullptr : &controller) << item->title();
    }
  }
}

TEST_F(MenusTest, showNoMarkAndStandForNothing) {
  for (const auto& opener : menus.bar->items()) {
    for (const auto& item : opener->submenu()->items()) {
      EXPECT_FALSE(item->checked()) << item->title();
      EXPECT_FALSE(item->hidden()) << item->title();
      EXPECT_TRUE(item->enabled()) << item->title();
      EXPECT_FALSE(item->representedObject()) << item->title();
    }
  }
}

/// The menus with a real controller that has all its neighbours.
class MenusInUseTest : public ::testing::Test {
 protected:
  class NoPairing : public link::Pairing {
    void show() override {}
  };
  MenusInUseTest() {
    Neighbours neighbours;
    neighbours.makePairing = [] { return std::make_unique<NoPairing>(); };
    neighbours.controllaAggiornamenti = [] {};
    controller = std::make_unique<Controller>(platform, address, config, services, neighbours);
    menus = buildMainMenus(*controller, true);
  }

  platform::memory::MemoryPlatform system;
  platform::Platform platform = system.platform();
  link::WebAddress address{system.environment, system.defaults, "https://default.example/"};
  link::Config config{system.defaults};
  web::MemoryServices services{platform};
  std::unique_ptr<Controller> controller;
  MainMenus menus;
};

TEST_F(MenusInUseTest, offerEverythingButTheThreeInertItems) {
  const std::set<std::string> inert = {"Nascondi Orvalle", "Esci da Orvalle", "Riduci a icona"};
  // A chain that would carry out anything: it is not asked, the three have the controller as their target.
  class Eager : public platform::ActionTarget {
   public:
    bool responds(std::string_view) const override { return true; }
    void perform(std::string_view action, platform::MenuItem&) override { performed.emplace_back(action); }
    std::vector<std::string> performed;
  } chain;
  std::size_t found = 0;
  for (const auto& opener : menus.bar->items()) {
    for (const auto& item : opener->submenu()->items()) {
      if (item->isSeparator()) continue;
      const bool isInert = inert.contains(item->title());
      found += isInert;
      EXPECT_EQ(item->usable(chain), !isInert) << item->title();
      if (isInert) item->choose(chain);
    }
  }
  EXPECT_EQ(found, inert.size());
  EXPECT_TRUE(chain.performed.empty());
}

TEST_F(MenusInUseTest, answerEveryKeyButTheInertOnes) {
  auto& chain = system.application.responderChain();
  struct Row {
    std::string key;
    std::string title;
  };
  for (const auto& row : {
           Row{",", "Impostazioni…"},
           Row{"/", "Scorciatoie"},
           Row{"n", "Sessione da 25 minuti"},
           Row{"N", "Nuova sessione…"},
           Row{".", "Ferma la sessione"},
           Row{"]", "Allunga di 5 minuti"},
           Row{"[", "Accorcia di 5 minuti"},
           Row{"t", "Tienila sopra le altre app"},
           Row{"1", "Focus"},
           Row{"2", "Sprint"},
           Row{"3", "Calendario"},
           Row{"4", "Mappa"},
           Row{"5", "Brain"},
           Row{"6", "Progetti"},
           Row{"7", "Obiettivi"},
           Row{"8", "Inbox"},
           Row{"9", "Oggi"},
           Row{"o", "Apri Orvalle"},
           Row{"h", ""},
           Row{"q", ""},
           Row{"m", ""},
           Row{"w", ""},
           Row{"", ""},
       }) {
    const auto item = itemForKey(*menus.bar, row.key, chain);
    EXPECT_EQ(item ? item->title() : "", row.title) << row.key;
  }
}

}  // namespace
}  // namespace orvalle::app
