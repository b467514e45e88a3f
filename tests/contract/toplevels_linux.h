#pragma once

#include <gtk/gtk.h>

#include <vector>

namespace orvalle::contract {

/// The windows of this process, on the screen or not.
inline std::vector<GtkWindow*> toplevels() {
  std::vector<GtkWindow*> found;
  GList* all = gtk_window_list_toplevels();
  for (GList* each = all; each; each = each->next) found.push_back(GTK_WINDOW(each->data));
  g_list_free(all);
  return found;
}

}  // namespace orvalle::contract
