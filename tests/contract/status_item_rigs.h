#pragma once

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "platform/memory/memory_desktop.h"

namespace orvalle::contract {

/// What the user can see of a row of a status item's menu.
struct SeenRow {
  std::string title;
  bool enabled = true;
  /// "✓" for a mark, blank for none.
  std::string mark = {};
  bool operator==(const SeenRow&) const = default;
};

inline void PrintTo(const SeenRow& row, std::ostream* stream) {
  *stream << "'" << row.title << "'" << (row.enabled ? "" : " disabled") << row.mark;
}

/// What stands for a separator among the rows.
inline const SeenRow kSeparator{"---", false};

class MemoryStatusBarRig {
 public:
  platform::StatusBar& bar() { return bar_; }
  void settle() {}
  bool becomesShown(bool expected) { return bar_.state.itemShown == expected; }
  std::string title() const { return bar_.state.face.title; }

  std::vector<SeenRow> rows() {
    std::vector<SeenRow> seen;
    for (const auto& item : bar_.state.menu->items()) {
      if (item->hidden()) continue;
      seen.push_back(item->isSeparator() ? kSeparator
                                         : SeenRow{item->title(), item->usable(application_.responderChain()),
                                                   item->checked() ? "✓" : ""});
    }
    return seen;
  }

  /// Chooses the row, whether or not a host would let the user do so.
  void choose(const std::string& title) {
    for (const auto& item : bar_.state.menu->items()) {
      if (item->title() == title) return item->choose(application_.responderChain());
    }
  }

 private:
  platform::memory::Journal journal_;
  platform::memory::MemoryApplication application_{journal_};
  platform::memory::MemoryStatusBar bar_{journal_};
};

/// Keeps what it was asked to carry out: the action, and what the item stands for.
class RecordingTarget : public platform::ActionTarget {
 public:
  bool responds(std::string_view action) const override { return action != "unknown"; }
  void perform(std::string_view action, platform::MenuItem& sender) override {
    performed.push_back(std::string(action) + " " + sender.representedObject().value_or("-"));
    senders.push_back(&sender);
  }

  std::shared_ptr<platform::MenuItem> item(const std::string& title, const std::string& action = "act") {
    auto made = std::make_shared<platform::MenuItem>(title, action);
    made->setTarget(this);
    return made;
  }
  /// An item made anew at each rendering.
  std::shared_ptr<platform::MenuItem> task(const std::string& id, const std::string& title,
                                           bool done = false) {
    auto made = item(title, "toggleTask");
    made->setRepresentedObject(id);
    made->setChecked(done);
    return made;
  }

  std::vector<std::string> performed;
  std::vector<platform::MenuItem*> senders;
};

}  // namespace orvalle::contract

#ifdef __APPLE__
#import "tests/contract/status_item_rig_macos.h"
#else
#include "tests/contract/status_item_rig_linux.h"
#endif
