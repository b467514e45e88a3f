#pragma once

#include <gtk/gtk.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/linux/factory.h"
#include "tests/contract/loop.h"
#include "tests/contract/seen_linux.h"
#include "tests/contract/toplevels_linux.h"
#include "tests/contract/window_home.h"

namespace orvalle::contract {

/// The dialogs on the screen.
inline std::vector<GtkDialog*> dialogs() {
  std::vector<GtkDialog*> found;
  for (GtkWindow* window : toplevels()) {
    if (GTK_IS_DIALOG(window) && gtk_widget_get_mapped(GTK_WIDGET(window)))
      found.push_back(GTK_DIALOG(window));
  }
  return found;
}

/// The only dialog on the screen, once it is there.
inline GtkDialog* onlyDialog() {
  if (!runUntil([] { return dialogs().size() == 1; })) throw std::runtime_error("not exactly one dialog");
  return dialogs()[0];
}

class NativeAlertsRig {
 public:
  platform::Alerts& alerts() { return *alerts_; }
  std::string message() { return gtk_label_get_text(GTK_LABEL(all(onlyDialog(), GTK_TYPE_LABEL)[0])); }
  void press(std::size_t button) {
    gtk_button_clicked(GTK_BUTTON(all(onlyDialog(), GTK_TYPE_BUTTON).at(button)));
  }
  bool open() { return !dialogs().empty(); }

 private:
  WindowHome home_;
  std::unique_ptr<platform::Alerts> alerts_ = platform::linuxos::makeAlerts(home_);
};

class NativeOpenPanelRig {
 public:
  static constexpr bool kChooses = true;
  platform::OpenPanel& panel() { return *panel_; }
  void choose(const std::string& path) {
    auto* dialog = onlyDialog();
    gtk_file_chooser_set_filename(GTK_FILE_CHOOSER(dialog), path.c_str());
    runUntil([&] {
      const platform::linuxos::GlibPtr<char> name(gtk_file_chooser_get_filename(GTK_FILE_CHOOSER(dialog)));
      return name && path == name.get();
    });
    gtk_dialog_response(dialog, GTK_RESPONSE_ACCEPT);
  }
  void cancel() { gtk_dialog_response(onlyDialog(), GTK_RESPONSE_CANCEL); }
  void settle() { runFor(std::chrono::milliseconds(100)); }

 private:
  WindowHome home_;
  std::unique_ptr<platform::OpenPanel> panel_ = platform::linuxos::makeOpenPanel(home_);
};

}  // namespace orvalle::contract
