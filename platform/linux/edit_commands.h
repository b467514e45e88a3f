#pragma once

#include <gtk/gtk.h>

#include <string_view>

namespace orvalle::platform::linuxos {

/// Whether the widget, which may be null, knows the editing action: a web view knows them all, a field of
/// text all but undo and redo.
bool canEdit(GtkWidget* widget, std::string_view action);

/// Carries out an editing action that the widget knows.
void edit(GtkWidget* widget, std::string_view action);

}  // namespace orvalle::platform::linuxos
