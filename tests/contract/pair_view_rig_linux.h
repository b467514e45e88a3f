#pragma once

#include <gtk/gtk.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "link/pair_window.h"
#include "platform/linux/factory.h"
#include "tests/contract/loop.h"
#include "tests/contract/window_home.h"

namespace orvalle::contract {

/// The native window and the user in front of it.
class NativePairRig {
 public:
  std::unique_ptr<platform::PairView> make() { return views_->make(link::pairWindowSpec()); }
  void settle() { runFor(std::chrono::milliseconds(100)); }
  bool visible() { return gtk_widget_get_mapped(GTK_WIDGET(window())); }
  std::string message() { return gtk_label_get_text(GTK_LABEL(all(GTK_TYPE_LABEL).at(3))); }
  void press(std::size_t button) { gtk_button_clicked(GTK_BUTTON(all(GTK_TYPE_BUTTON).at(button))); }
  void type(std::size_t field, const std::string& text) {
    gtk_entry_set_text(GTK_ENTRY(all(GTK_TYPE_ENTRY).at(field)), text.c_str());
  }

  /// The only window of the application.
  GtkWindow* window() {
    GList* windows = gtk_application_get_windows(home_.gtk());
    if (g_list_length(windows) != 1) throw std::runtime_error("not exactly one window");
    return GTK_WINDOW(windows->data);
  }
  /// What the window holds of this kind, in the order in which it was put there.
  std::vector<GtkWidget*> all(GType type) {
    std::vector<GtkWidget*> found;
    GList* children = gtk_container_get_children(GTK_CONTAINER(gtk_bin_get_child(GTK_BIN(window()))));
    for (GList* child = children; child; child = child->next) {
      if (G_TYPE_CHECK_INSTANCE_TYPE(child->data, type)) found.push_back(GTK_WIDGET(child->data));
    }
    g_list_free(children);
    return found;
  }
  bool hasWindow() { return gtk_application_get_windows(home_.gtk()) != nullptr; }
  OneKeyMenu& menu() { return menu_; }

 private:
  WindowHome home_;
  OneKeyMenu menu_;
  std::unique_ptr<platform::PairViews> views_ = platform::linuxos::makePairViews(home_, menu_);
};

}  // namespace orvalle::contract
