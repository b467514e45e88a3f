#pragma once

#include <gtk/gtk.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/factory.h"
#include "tests/contract/loop.h"
#include "tests/contract/tray_host.h"

namespace orvalle::contract {

class NativeStatusBarRig {
 public:
  NativeStatusBarRig() {
    gtk_init(nullptr, nullptr);
    bar_ = platform::linuxos::makeStatusBar(application_);
  }

  platform::StatusBar& bar() { return *bar_; }
  /// Lets everything that was begun come to its end: changes are told at the next turn of the loop, and what
  /// was told is there when the answer to a later question is.
  void settle() {
    for (int round = 0; round < 2; ++round) {
      while (g_main_context_iteration(nullptr, FALSE)) {
      }
      if (host.item()) host.property("Status");
    }
  }
  bool becomesShown(bool expected) {
    return runUntil([&] { return host.item().has_value() == expected; });
  }
  std::string title() { return host.text("Title"); }

  std::vector<SeenRow> rows() {
    std::vector<SeenRow> seen;
    for (const auto& row : host.menu()) {
      if (!row.visible) continue;
      seen.push_back(row.separator ? kSeparator
                                   : SeenRow{row.label, row.enabled, row.mark.value_or(false) ? "✓" : ""});
    }
    return seen;
  }

  void choose(const std::string& title) {
    for (const auto& row : host.menu()) {
      if (row.label == title) host.click({row.id});
    }
    settle();
  }

  TrayHost host;

 private:
  platform::memory::Journal journal_;
  platform::memory::MemoryApplication application_{journal_};
  std::unique_ptr<platform::StatusBar> bar_;
};

}  // namespace orvalle::contract
