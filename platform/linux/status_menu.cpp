#include "platform/linux/status_menu.h"

#include <gdk/gdk.h>

#include <algorithm>
#include <deque>
#include <map>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "platform/shown_text.h"

namespace orvalle::platform::linuxos {
namespace {

/// What a row shows.
struct RowLook {
  std::string label;
  std::string key;
  bool separator = false;
  bool opensMenu = false;
  bool enabled = false;
  bool visible = false;
  bool checkable = false;
  bool checked = false;
  bool operator==(const RowLook&) const = default;
};

/// Hosts take "_" for the mark of an access key.
std::string withoutAccessKey(const std::string& text) {
  std::string label;
  for (const char c : text) label.append(c == '_' ? 2 : 1, c);
  return label;
}

RowLook lookOf(const MenuItem& item, const ActionTarget& chain) {
  RowLook look;
  look.label = withoutAccessKey(shownText(item.title()));
  look.key = item.keyEquivalent();
  look.separator = item.isSeparator();
  look.opensMenu = item.submenu() != nullptr;
  look.enabled = item.usable(chain);
  look.visible = !item.hidden();
  look.checkable = item.checkable();
  look.checked = item.checked();
  return look;
}

/// The key equivalent as the protocol has it: a list of key presses, each a list of modifiers and a key name.
GVariant* shortcut(const std::string& keyEquivalent) {
  const gunichar character = g_utf8_get_char(keyEquivalent.c_str());
  const char* key = gdk_keyval_name(gdk_unicode_to_keyval(g_unichar_tolower(character)));
  GVariantBuilder press;
  g_variant_builder_init(&press, G_VARIANT_TYPE_STRING_ARRAY);
  g_variant_builder_add(&press, "s", DBUSMENU_MENUITEM_SHORTCUT_CONTROL);
  if (g_unichar_isupper(character)) g_variant_builder_add(&press, "s", DBUSMENU_MENUITEM_SHORTCUT_SHIFT);
  g_variant_builder_add(&press, "s", key ? key : "");
  GVariant* presses[] = {g_variant_builder_end(&press)};
  return g_variant_new_array(G_VARIANT_TYPE_STRING_ARRAY, presses, 1);
}

/// The library itself tells only those properties whose value is another one.
void tell(DbusmenuMenuitem* item, const RowLook& look) {
  if (look.separator) {
    dbusmenu_menuitem_property_set(item, DBUSMENU_MENUITEM_PROP_TYPE, "separator");
  } else {
    dbusmenu_menuitem_property_set(item, DBUSMENU_MENUITEM_PROP_LABEL, look.label.c_str());
    dbusmenu_menuitem_property_set_bool(item, DBUSMENU_MENUITEM_PROP_ENABLED, look.enabled);
  }
  dbusmenu_menuitem_property_set_bool(item, DBUSMENU_MENUITEM_PROP_VISIBLE, look.visible);
  if (look.checkable) {
    dbusmenu_menuitem_property_set(item, DBUSMENU_MENUITEM_PROP_TOGGLE_TYPE, DBUSMENU_MENUITEM_TOGGLE_CHECK);
    dbusmenu_menuitem_property_set_int(
        item, DBUSMENU_MENUITEM_PROP_TOGGLE_STATE,
        look.checked ? DBUSMENU_MENUITEM_TOGGLE_STATE_CHECKED : DBUSMENU_MENUITEM_TOGGLE_STATE_UNCHECKED);
  }
  if (!look.key.empty()) {
    dbusmenu_menuitem_property_set_variant(item, DBUSMENU_MENUITEM_PROP_SHORTCUT, shortcut(look.key));
  }
  if (look.opensMenu) {
    dbusmenu_menuitem_property_set(item, DBUSMENU_MENUITEM_PROP_CHILD_DISPLAY,
                                   DBUSMENU_MENUITEM_CHILD_DISPLAY_SUBMENU);
  }
}

/// What makes a row the same row from one look to the next. Items that stand for something are made anew
/// whenever the model is rendered: they go by what they do, and to what. Others go by themselves.
using RowKey = std::tuple<const MenuItem*, std::string_view, std::string_view>;

RowKey keyOf(const MenuItem& item) {
  if (item.representedObject() && !item.submenu()) return {nullptr, item.action(), *item.representedObject()};
  return {&item, {}, {}};
}

}  // namespace

/// One menu and its rows; a row that opens a menu has a level of its own.
class StatusMenu::Level {
 public:
  Level(const Menu& menu, ActionTarget& chain, const std::function<void()>& lookWanted,
        GObjectPtr<DbusmenuMenuitem> parent)
      : menu_(menu), chain_(chain), lookWanted_(lookWanted), parent_(std::move(parent)) {}

  void look() {
    const auto& items = menu_.items();
    if (!std::equal(rows_.begin(), rows_.end(), items.begin(), items.end(),
                    [](const auto& row, const auto& item) { return keyOf(*row->model) == keyOf(*item); })) {
      arrange();
    }
    for (std::size_t index = 0; index < rows_.size(); ++index) update(*rows_[index], items[index]);
  }

 private:
  struct Row {
    explicit Row(Level& level)
        : item(GObjectPtr<DbusmenuMenuitem>::adopt(dbusmenu_menuitem_new())),
          activated(
              item.get(), DBUSMENU_MENUITEM_SIGNAL_ITEM_ACTIVATED,
              G_CALLBACK(+[](DbusmenuMenuitem* clicked, guint, Level* self) { self->activate(clicked); }),
              &level) {}

    GObjectPtr<DbusmenuMenuitem> item;
    SignalConnection activated;
    std::shared_ptr<MenuItem> model;
    RowLook told;
    /// A host may have changed the mark on its own account.
    bool markInDoubt = false;
    std::unique_ptr<Level> submenu;
  };

  std::unique_ptr<Row> makeRow(const std::shared_ptr<MenuItem>& model);
  void update(Row& row, const std::shared_ptr<MenuItem>& model);
  void arrange();
  void activate(DbusmenuMenuitem* item);

  const Menu& menu_;
  ActionTarget& chain_;
  const std::function<void()>& lookWanted_;
  GObjectPtr<DbusmenuMenuitem> parent_;
  std::vector<std::unique_ptr<Row>> rows_;
};

std::unique_ptr<StatusMenu::Level::Row> StatusMenu::Level::makeRow(const std::shared_ptr<MenuItem>& model) {
  auto row = std::make_unique<Row>(*this);
  row->model = model;
  row->told = lookOf(*model, chain_);
  tell(row->item.get(), row->told);
  if (model->submenu())
    row->submenu = std::make_unique<Level>(*model->submenu(), chain_, lookWanted_, row->item);
  return row;
}

void StatusMenu::Level::update(Row& row, const std::shared_ptr<MenuItem>& model) {
  row.model = model;
  if (row.submenu) row.submenu->look();
  auto look = lookOf(*model, chain_);
  if (std::exchange(row.markInDoubt, false)) {
    // Taken away and given back in one turn, a property is told once more, whatever it was.
    dbusmenu_menuitem_property_remove(row.item.get(), DBUSMENU_MENUITEM_PROP_TOGGLE_STATE);
  } else if (row.told == look) {
    return;
  }
  tell(row.item.get(), look);
  row.told = std::move(look);
}

/// Brings the rows into the model's order, leaving alone what stays where it is.
void StatusMenu::Level::arrange() {
  constexpr auto kNew = static_cast<std::size_t>(-1);
  std::map<RowKey, std::deque<std::size_t>> known;
  for (std::size_t index = 0; index < rows_.size(); ++index) {
    known[keyOf(*rows_[index]->model)].push_back(index);
  }
  std::vector<std::unique_ptr<Row>> arranged;
  std::vector<std::size_t> formerPlaces;
  for (const auto& model : menu_.items()) {
    const auto same = known.find(keyOf(*model));
    if (same == known.end() || same->second.empty()) {
      arranged.push_back(makeRow(model));
      formerPlaces.push_back(kNew);
    } else {
      formerPlaces.push_back(same->second.front());
      arranged.push_back(std::move(rows_[same->second.front()]));
      same->second.pop_front();
    }
  }
  // The places in `rows_` of what stands before the rows that are in order already, as it stands.
  std::vector<std::size_t> standing;
  for (std::size_t index = 0; index < rows_.size(); ++index) {
    if (rows_[index]) {
      dbusmenu_menuitem_child_delete(parent_.get(), rows_[index]->item.get());
    } else {
      standing.push_back(index);
    }
  }
  // From the end: the library counts places from the beginning of a linked list, and long runs of new rows
  // come after few old ones.
  for (auto index = arranged.size(); index-- > 0;) {
    auto* item = arranged[index]->item.get();
    if (formerPlaces[index] == kNew) {
      dbusmenu_menuitem_child_add_position(parent_.get(), item, static_cast<guint>(standing.size()));
    } else if (standing.back() == formerPlaces[index]) {
      standing.pop_back();
    } else {
      standing.erase(std::find(standing.begin(), standing.end(), formerPlaces[index]));
      dbusmenu_menuitem_child_reorder(parent_.get(), item, static_cast<guint>(standing.size()));
    }
  }
  rows_ = std::move(arranged);
}

void StatusMenu::Level::activate(DbusmenuMenuitem* item) {
  // The click is for the row that the user saw; the model may have been rendered since.
  look();
  const auto row = std::find_if(rows_.begin(), rows_.end(),
                                [&](const auto& candidate) { return candidate->item.get() == item; });
  if (row == rows_.end()) return;
  const auto model = (*row)->model;
  (*row)->markInDoubt = model->checkable();
  lookWanted_();
  model->choose(chain_);
}

StatusMenu::StatusMenu(std::shared_ptr<Menu> menu, ActionTarget& chain, std::function<void()> lookWanted)
    : menu_(std::move(menu)),
      lookWanted_(std::move(lookWanted)),
      item_(GObjectPtr<DbusmenuMenuitem>::adopt(dbusmenu_menuitem_new())),
      root_(std::make_unique<Level>(*menu_, chain, lookWanted_, item_)),
      aboutToShow_(item_.get(), DBUSMENU_MENUITEM_SIGNAL_ABOUT_TO_SHOW,
                   G_CALLBACK(+[](DbusmenuMenuitem*, StatusMenu* self) -> gboolean {
                     // Whether an item can be used may hang on more than the menu's model.
                     self->look();
                     return FALSE;
                   }),
                   this) {
  dbusmenu_menuitem_set_root(item_.get(), TRUE);
  look();
}

StatusMenu::~StatusMenu() = default;

void StatusMenu::look() {
  root_->look();
}

void StatusMenu::publish(const char* path) {
  server_ = GObjectPtr<DbusmenuServer>::adopt(dbusmenu_server_new(path));
  dbusmenu_server_set_root(server_.get(), item_.get());
}

}  // namespace orvalle::platform::linuxos
