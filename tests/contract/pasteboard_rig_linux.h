#pragma once

#include <gtk/gtk.h>

#include <memory>
#include <stdexcept>
#include <string>

#include "platform/linux/factory.h"

namespace orvalle::contract {

/// Bytes on the clipboard, as another program may put them there.
class NativeBoard {
 public:
  NativeBoard() {
    if (!gtk_init_check(nullptr, nullptr)) throw std::runtime_error("no display");
    board_ = platform::linuxos::makePasteboard();
    empty();
  }
  platform::Pasteboard& board() { return *board_; }
  void copy(const std::string& text, std::string form = "UTF8_STRING") {
    const GtkTargetEntry target = {form.data(), 0, 0};
    gtk_clipboard_set_with_data(clipboard(), &target, 1, give, forget, new std::string(text));
  }
  void empty() { gtk_clipboard_clear(clipboard()); }

 private:
  static void give(GtkClipboard*, GtkSelectionData* selection, guint, gpointer text) {
    const auto& bytes = *static_cast<std::string*>(text);
    gtk_selection_data_set(selection, gtk_selection_data_get_target(selection), 8,
                           reinterpret_cast<const guchar*>(bytes.data()), static_cast<int>(bytes.size()));
  }
  static void forget(GtkClipboard*, gpointer text) { delete static_cast<std::string*>(text); }
  static GtkClipboard* clipboard() { return gtk_clipboard_get(GDK_SELECTION_CLIPBOARD); }
  std::unique_ptr<platform::Pasteboard> board_;
};

}  // namespace orvalle::contract
