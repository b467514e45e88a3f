#pragma once

#include <gtk/gtk.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "platform/linux/factory.h"
#include "platform/memory/memory_diary.h"
#include "platform/memory/memory_stores.h"
#include "tests/contract/dialog_rigs.h"
#include "tests/contract/loop.h"
#include "tests/contract/toplevels_linux.h"
#include "tests/contract/window_home.h"

namespace orvalle::contract {

class MemoryAccessibilityRig {
 public:
  platform::Accessibility& accessibility() { return accessibility_; }
  bool asking() { return accessibility_.asking; }
  void answer(bool yes) { accessibility_.answer(yes); }
  int settingsShown() { return accessibility_.settingsOpened > 0 ? 1 : 0; }

 private:
  platform::memory::MemoryAccessibility accessibility_;
};

/// Folders that are only named.
class NamedFolders : public platform::UserFolders {
 public:
  std::filesystem::path documents() const override { return "/casa/Documenti"; }
  std::filesystem::path applicationSupport() const override { return "/casa/.local/share"; }
  std::filesystem::path temporary() const override { return "/casa/tmp"; }
};

class NativeAccessibilityRig {
 public:
  platform::Accessibility& accessibility() { return *accessibility_; }
  platform::memory::MemoryDefaults& defaults() { return defaults_; }
  bool asking() {
    return runUntil([] { return dialogs().size() == 1; }, std::chrono::milliseconds(300));
  }
  /// By the buttons' words.
  void answer(bool yes) {
    for (GtkWidget* button : all(onlyDialog(), GTK_TYPE_BUTTON)) {
      if (std::string(gtk_button_get_label(GTK_BUTTON(button))) == (yes ? "Consenti" : "Non consentire"))
        return gtk_button_clicked(GTK_BUTTON(button));
    }
    throw std::runtime_error("no such button");
  }
  int settingsShown() { return static_cast<int>(settings().size()); }

  /// The windows "Permessi di Orvalle" that are on the screen.
  static std::vector<GtkWidget*> settings() {
    std::vector<GtkWidget*> found;
    for (GtkWindow* window : toplevels()) {
      if (g_strcmp0(gtk_window_get_title(window), "Permessi di Orvalle") == 0 &&
          gtk_widget_get_mapped(GTK_WIDGET(window)))
        found.push_back(GTK_WIDGET(window));
    }
    return found;
  }

 private:
  WindowHome home_;
  NamedFolders folders_;
  platform::memory::MemoryDefaults defaults_;
  std::unique_ptr<platform::Alerts> alerts_ = platform::linuxos::makeAlerts(home_);
  std::unique_ptr<platform::Accessibility> accessibility_ =
      platform::linuxos::makeAccessibility(home_, defaults_, *alerts_, folders_);
};

}  // namespace orvalle::contract
