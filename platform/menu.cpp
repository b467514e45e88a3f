#include "platform/menu.h"

#include <algorithm>
#include <cassert>
#include <iterator>
#include <map>
#include <utility>

namespace orvalle::platform {

MenuItem::MenuItem(std::string title, std::string action, std::string keyEquivalent)
    : title_(std::move(title)), action_(std::move(action)), keyEquivalent_(std::move(keyEquivalent)) {}

std::shared_ptr<MenuItem> MenuItem::separator() {
  auto item = std::make_shared<MenuItem>("", "");
  item->separator_ = true;
  return item;
}

std::shared_ptr<MenuItem> MenuItem::opening(std::string title, std::shared_ptr<Menu> submenu) {
  auto item = std::make_shared<MenuItem>(std::move(title), "");
  submenu->opener_ = item.get();
  item->submenu_ = std::move(submenu);
  return item;
}

MenuItem::~MenuItem() {
  if (submenu_) submenu_->opener_ = nullptr;
}

void MenuItem::changed() {
  if (menu_) menu_->changed();
}

void MenuItem::setTitle(std::string title) {
  if (title_ == title) return;
  title_ = std::move(title);
  changed();
}

void MenuItem::setTarget(ActionTarget* target) {
  if (target_ == target) return;
  target_ = target;
  changed();
}

void MenuItem::setChecked(bool checked) {
  if (checkable_ && checked_ == checked) return;
  checkable_ = true;
  checked_ = checked;
  changed();
}

void MenuItem::setEnabled(bool enabled) {
  if (enabled_ == enabled) return;
  enabled_ = enabled;
  changed();
}

void MenuItem::setHidden(bool hidden) {
  if (hidden_ == hidden) return;
  hidden_ = hidden;
  changed();
}

void MenuItem::setRepresentedObject(std::optional<std::string> object) {
  if (representedObject_ == object) return;
  representedObject_ = std::move(object);
  changed();
}

bool MenuItem::usable(const ActionTarget& chain) const {
  if (!enabled_ || separator_) return false;
  if (submenu_) return true;
  return !action_.empty() && (target_ ? *target_ : chain).responds(action_);
}

void MenuItem::choose(ActionTarget& chain) {
  if (usable(chain) && !submenu_) receiver(chain).perform(action_, *this);
}

struct Menu::Listeners {
  std::map<int, std::function<void()>> all;
  int next = 0;
};

Menu::~Menu() {
  for (const auto& item : items_) item->menu_ = nullptr;
}

void Menu::replace(std::size_t index, std::size_t count, std::vector<std::shared_ptr<MenuItem>> items) {
  assert(index <= items_.size() && count <= items_.size() - index);
  if (count == 0 && items.empty()) return;
  const auto first = items_.begin() + static_cast<std::ptrdiff_t>(index);
  const auto last = first + static_cast<std::ptrdiff_t>(count);
  for (auto item = first; item != last; ++item) (*item)->menu_ = nullptr;
  for (const auto& item : items) {
    assert(!item->menu_);
    item->menu_ = this;
  }
  const auto rest = items_.erase(first, last);
  items_.insert(rest, std::make_move_iterator(items.begin()), std::make_move_iterator(items.end()));
  changed();
}

std::optional<std::size_t> Menu::indexOf(const MenuItem& item) const {
  if (item.menu_ != this) return {};
  const auto found = std::find_if(items_.begin(), items_.end(),
                                  [&](const auto& candidate) { return candidate.get() == &item; });
  return static_cast<std::size_t>(found - items_.begin());
}

base::Subscription Menu::onChange(std::function<void()> listener) {
  if (!listeners_) listeners_ = std::make_shared<Listeners>();
  const int id = listeners_->next++;
  listeners_->all.emplace(id, std::move(listener));
  return base::Subscription([weak = std::weak_ptr(listeners_), id] {
    if (const auto listeners = weak.lock()) listeners->all.erase(id);
  });
}

void Menu::changed() {
  if (listeners_) {
    // A listener may go away, or take others with it, while it is being told.
    const auto told = listeners_->all;
    for (const auto& [id, listener] : told) {
      if (listeners_->all.contains(id)) listener();
    }
  }
  if (opener_) opener_->changed();
}

std::shared_ptr<MenuItem> itemForKey(const Menu& menu, std::string_view keyEquivalent,
                                     const ActionTarget& chain) {
  for (const auto& item : menu.items()) {
    if (item->submenu()) {
      if (auto found = itemForKey(*item->submenu(), keyEquivalent, chain)) return found;
    } else if (!keyEquivalent.empty() && item->keyEquivalent() == keyEquivalent && item->usable(chain)) {
      return item;
    }
  }
  return nullptr;
}

}  // namespace orvalle::platform
