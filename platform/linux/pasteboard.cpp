#include "platform/pasteboard.h"

#include <memory>
#include <utility>

#include "platform/linux/factory.h"
#include "platform/linux/glib_ptr.h"

namespace orvalle::platform::linuxos {
namespace {

using Done = std::function<void(const std::string&)>;

void finish(const char* text, gpointer data) {
  const std::unique_ptr<Done> done(static_cast<Done*>(data));
  (*done)(text ? text : "");
}

void receivedAnyText(GtkClipboard*, const gchar* text, gpointer data) {
  finish(text, data);
}

void received(GtkClipboard* clipboard, GtkSelectionData* selection, gpointer data) {
  const GlibPtr<char> text(reinterpret_cast<char*>(gtk_selection_data_get_text(selection)));
  if (text) return finish(text.get(), data);
  gtk_clipboard_request_text(clipboard, receivedAnyText, data);
}

class GtkPasteboard final : public Pasteboard {
 public:
  void readText(Done done) override {
    // The one form in which GTK leaves line ends alone comes first. It gives up by itself on an owner that
    // does not deliver.
    gtk_clipboard_request_contents(gtk_clipboard_get(GDK_SELECTION_CLIPBOARD),
                                   gdk_atom_intern_static_string("UTF8_STRING"), received,
                                   new Done(std::move(done)));
  }
};

}  // namespace

std::unique_ptr<Pasteboard> makePasteboard() {
  return std::make_unique<GtkPasteboard>();
}

}  // namespace orvalle::platform::linuxos
