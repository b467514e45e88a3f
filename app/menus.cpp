#include "app/menus.h"

#include <initializer_list>
#include <string>
#include <utility>

namespace orvalle::app {
namespace {

using platform::Menu;
using platform::MenuItem;

/// A row as the tables below write it; one without a title is a separator.
struct Row {
  std::string title;
  std::string_view action;
  const char* key = "";
};

const Row kSeparator{};

std::shared_ptr<Menu> addMenu(Menu& bar, const char* title, platform::ActionTarget* target,
                              std::initializer_list<Row> rows) {
  auto menu = std::make_shared<Menu>(title);
  for (const auto& row : rows) {
    if (row.action.empty()) {
      menu->add(MenuItem::separator());
    } else {
      auto item = std::make_shared<MenuItem>(row.title, std::string(row.action), row.key);
      item->setTarget(target);
      menu->add(std::move(item));
    }
  }
  bar.add(MenuItem::opening(title, menu));
  return menu;
}

}  // namespace

std::string overlayTitle(bool canFloat) {
  const std::string title = "Tienila sopra le altre app";
  return canFloat ? title : title + " (qui non è possibile)";
}

MainMenus buildMainMenus(platform::ActionTarget& controller, bool canFloat) {
  MainMenus menus;
  menus.bar = std::make_shared<Menu>();
  auto& bar = *menus.bar;
  addMenu(bar, "", &controller,
          {{"Impostazioni…", "vaiImpostazioni", ","},
           {"Scorciatoie", "vaiScorciatoie", "/"},
           kSeparator,
           {"Cerca aggiornamenti…", "cercaAggiornamenti"},
           kSeparator,
           {"Nascondi Orvalle", platform::kActionHide, "h"},
           {"Esci da Orvalle", platform::kActionTerminate, "q"}});
  addMenu(bar, "Sessione", &controller,
          {{"Sessione da 25 minuti", "sessioneVeloce", "n"},
           {"Nuova sessione…", "vaiFocus", "N"},
           {"Ferma la sessione", "stop", "."},
           kSeparator,
           {"Allunga di 5 minuti", "plus5", "]"},
           {"Accorcia di 5 minuti", "minus5", "["},
           kSeparator,
           {overlayTitle(canFloat), "toggleOverlay", "t"}});
  addMenu(bar, "Vai", &controller,
          {{"Focus", "vaiFocus", "1"},
           {"Sprint", "vaiSprint", "2"},
           {"Calendario", "vaiCalendario", "3"},
           {"Mappa", "vaiMappa", "4"},
           {"Brain", "vaiBrain", "5"},
           {"Progetti", "vaiProgetti", "6"},
           {"Obiettivi", "vaiObiettivi", "7"},
           {"Inbox", "vaiInbox", "8"},
           {"Oggi", "vaiOggi", "9"},
           kSeparator,
           {"Review", "vaiReview"},
           {"Reset della domenica", "vaiReset"},
           {"Sfida", "vaiSfida"},
           {"Organizzazione", "vaiOrganizzazione"}});
  addMenu(bar, "Modifica", nullptr,
          {{"Annulla", platform::kActionUndo, "z"},
           {"Ripeti", platform::kActionRedo, "Z"},
           {"Taglia", platform::kActionCut, "x"},
           {"Copia", platform::kActionCopy, "c"},
           {"Incolla", platform::kActionPaste, "v"},
           {"Seleziona tutto", platform::kActionSelectAll, "a"}});
  menus.windows =
      addMenu(bar, "Finestra", &controller,
              {{"Apri Orvalle", "openApp", "o"}, {"Riduci a icona", platform::kActionMiniaturize, "m"}});
  menus.help =
      addMenu(bar, "Aiuto", &controller,
              {{"Scorciatoie da tastiera", "vaiScorciatoie", "/"}, {"Abbina con il browser…", "showPair"}});
  return menus;
}

}  // namespace orvalle::app
