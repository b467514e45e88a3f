#pragma once

#include <gtk/gtk.h>

namespace orvalle::platform::linuxos {

/// Whether the window is on the screen for the user to see: neither closed nor minimised.
bool isVisible(GtkWindow* window);

/// The application's most recently used visible window; null pointer when there is none.
GtkWindow* frontWindow(GtkApplication* application);

/// Shows the window if it is hidden or minimised, brings it to the front and gives it the keyboard.
void present(GtkWindow* window);

}  // namespace orvalle::platform::linuxos
