#import "platform/macos/menu_mirror.h"

#include <algorithm>
#include <optional>

#import "platform/macos/text.h"
#include "platform/shown_text.h"

using orvalle::platform::ActionTarget;
using orvalle::platform::MenuItem;

/// Stands between a native row and its model: carries out the row's action, and says whether it can be
/// chosen.
@interface OrvalleMenuTarget : NSObject <NSMenuItemValidation>
- (instancetype)initWithChain:(ActionTarget*)chain;
@property(nonatomic, assign) std::shared_ptr<MenuItem> item;
@end

@implementation OrvalleMenuTarget {
  ActionTarget* _chain;
  std::shared_ptr<MenuItem> _item;
}

- (instancetype)initWithChain:(ActionTarget*)chain {
  self = [super init];
  if (self) _chain = chain;
  return self;
}

- (std::shared_ptr<MenuItem>)item {
  return _item;
}

- (void)setItem:(std::shared_ptr<MenuItem>)item {
  _item = std::move(item);
}

- (void)choose:(id)sender {
  // The action may do away with the row.
  const auto item = _item;
  if (item) item->choose(*_chain);
}

- (BOOL)validateMenuItem:(NSMenuItem*)menuItem {
  return _item && _item->usable(*_chain);
}

@end

namespace orvalle::platform::macos {

struct MenuMirror::Row {
  std::shared_ptr<MenuItem> item;
  bool enabled = true;
  NSMenuItem* native;
  /// Null for separators, labels, and actions that the system carries out.
  OrvalleMenuTarget* target;
  /// Null for items that open nothing.
  std::unique_ptr<MenuMirror> submenu;
};

namespace {

/// Whether the action travels along the system's own responder chain, which knows best who can copy now. The
/// names of our own actions have no colon.
bool isSystemAction(const MenuItem& item) {
  return !item.target() && item.action().ends_with(':');
}

bool isChosenByUs(const MenuItem& item) {
  return !item.action().empty() && !isSystemAction(item);
}

}  // namespace

MenuMirror::MenuMirror(std::shared_ptr<Menu> menu, ActionTarget& chain)
    : menu_(std::move(menu)),
      chain_(chain),
      native_([[NSMenu alloc] initWithTitle:nativeText(menu_->title())]),
      later_([this] { look(); }),
      changes_(menu_->onChange([this] { later_.ask(); })) {
  look();
}

MenuMirror::~MenuMirror() {
  // A native row may outlive its mirror in the system's hands.
  for (const auto& row : rows_) row->target.item = nullptr;
}

NSMenu* MenuMirror::nativeOf(const Menu& menu) const {
  if (&menu == menu_.get()) return native_;
  for (const auto& row : rows_) {
    if (NSMenu* found = row->submenu ? row->submenu->nativeOf(menu) : nil) return found;
  }
  return nil;
}

/// Rows at the end that show the same items stay where they are; those before are taken over one by one.
void MenuMirror::look() {
  const auto& items = menu_->items();
  std::size_t kept = 0;
  while (kept < items.size() && kept < rows_.size() &&
         rows_[rows_.size() - 1 - kept]->item == items[items.size() - 1 - kept]) {
    ++kept;
  }
  const std::size_t before = items.size() - kept;
  while (rows_.size() > items.size()) removeRow(before);
  for (std::size_t i = 0; i < before; ++i) {
    if (i < rows_.size() - kept && fits(*rows_[i], *items[i])) continue;
    if (i < rows_.size() - kept) removeRow(i);
    insertRow(i, items[i]);
  }
  bool validate = false;
  for (std::size_t i = 0; i < items.size(); ++i) {
    update(*rows_[i], items[i]);
    validate |= rows_[i]->enabled != items[i]->enabled();
    rows_[i]->enabled = items[i]->enabled();
  }
  // The system asks by itself when a menu opens, and not again while it is open.
  if (validate) [native_ update];
}

std::unique_ptr<MenuMirror::Row> MenuMirror::makeRow(const std::shared_ptr<MenuItem>& item) {
  auto row = std::make_unique<Row>();
  if (item->isSeparator()) {
    row->native = [NSMenuItem separatorItem];
    return row;
  }
  const bool ours = isChosenByUs(*item);
  SEL action = nullptr;
  if (ours) action = @selector(choose:);
  if (isSystemAction(*item)) action = NSSelectorFromString(nativeText(item->action()));
  row->native = [[NSMenuItem alloc] initWithTitle:@""
                                           action:action
                                    keyEquivalent:nativeText(item->keyEquivalent())];
  if (ours) {
    row->target = [[OrvalleMenuTarget alloc] initWithChain:&chain_];
    row->native.target = row->target;
  }
  if (item->submenu()) {
    row->submenu = std::make_unique<MenuMirror>(item->submenu(), chain_);
    row->native.submenu = row->submenu->native();
  }
  return row;
}

/// Whether the row can show the item: what a native row is made with must be the same.
bool MenuMirror::fits(const Row& row, const MenuItem& item) const {
  const MenuItem& shown = *row.item;
  return shown.isSeparator() == item.isSeparator() && shown.submenu() == item.submenu() &&
         shown.action() == item.action() && shown.keyEquivalent() == item.keyEquivalent() &&
         isChosenByUs(shown) == isChosenByUs(item);
}

void MenuMirror::update(Row& row, const std::shared_ptr<MenuItem>& item) {
  row.item = item;
  row.target.item = item;
  if (item->isSeparator()) return;
  NSString* title = nativeText(shownText(item->title()));
  if (![row.native.title isEqualToString:title]) row.native.title = title;
  const auto state = item->checked() ? NSControlStateValueOn : NSControlStateValueOff;
  if (row.native.state != state) row.native.state = state;
  if (static_cast<bool>(row.native.hidden) != item->hidden()) row.native.hidden = item->hidden();
}

void MenuMirror::insertRow(std::size_t index, const std::shared_ptr<MenuItem>& item) {
  auto row = makeRow(item);
  row->item = item;
  // The system may have put rows of its own among ours.
  NSInteger place = 0;
  if (index < rows_.size()) {
    place = [native_ indexOfItem:rows_[index]->native];
  } else if (!rows_.empty()) {
    place = [native_ indexOfItem:rows_.back()->native] + 1;
  }
  [native_ insertItem:row->native atIndex:place];
  rows_.insert(rows_.begin() + static_cast<std::ptrdiff_t>(index), std::move(row));
}

void MenuMirror::removeRow(std::size_t index) {
  rows_[index]->target.item = nullptr;
  [native_ removeItem:rows_[index]->native];
  rows_.erase(rows_.begin() + static_cast<std::ptrdiff_t>(index));
}

}  // namespace orvalle::platform::macos
