#pragma once

#import <AppKit/AppKit.h>

#include <memory>
#include <vector>

#import "platform/macos/look_later.h"
#include "platform/menu.h"

@class OrvalleMenuTarget;

namespace orvalle::platform::macos {

/// A native menu that shows a model and follows it: it looks once when the loop is idle and touches only the
/// rows that differ, so that an open menu stays open. What the system itself adds to the menu is left alone.
class MenuMirror {
 public:
  /// `chain` outlives the mirror.
  MenuMirror(std::shared_ptr<Menu> menu, ActionTarget& chain);
  MenuMirror(const MenuMirror&) = delete;
  MenuMirror& operator=(const MenuMirror&) = delete;
  ~MenuMirror();

  NSMenu* _Nonnull native() const { return native_; }
  /// The native menu of `menu`, which is this one or one under it; null when there is none.
  NSMenu* _Nullable nativeOf(const Menu& menu) const;

 private:
  struct Row;

  void look();
  std::unique_ptr<Row> makeRow(const std::shared_ptr<MenuItem>& item);
  bool fits(const Row& row, const MenuItem& item) const;
  void update(Row& row, const std::shared_ptr<MenuItem>& item);
  void insertRow(std::size_t index, const std::shared_ptr<MenuItem>& item);
  void removeRow(std::size_t index);

  std::shared_ptr<Menu> menu_;
  ActionTarget& chain_;
  NSMenu* _Nonnull native_;
  std::vector<std::unique_ptr<Row>> rows_;
  LookLater later_;
  base::Subscription changes_;
};

}  // namespace orvalle::platform::macos
