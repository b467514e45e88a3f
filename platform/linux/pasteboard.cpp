#include "platform/pasteboard.h"

#include <memory>
#include <utility>

#include "platform/linux/factory.h"

namespace orvalle::platform::linuxos {
namespace {

using Done = std::function<void(const std::string&)>;

void received(GtkClipboard*, const gchar* text, gpointer data) {
  const std::unique_ptr<Done> done(static_cast<Done*>(data));
  (*done)(text ? text : "");
}

class GtkPasteboard final : public Pasteboard {
 public:
  void readText(Done done) override {
    // GTK gives up by itself on an owner that does not deliver.
    gtk_clipboard_request_text(gtk_clipboard_get(GDK_SELECTION_CLIPBOARD), received,
                               new Done(std::move(done)));
  }
};

}  // namespace

std::unique_ptr<Pasteboard> makePasteboard() {
  return std::make_unique<GtkPasteboard>();
}

}  // namespace orvalle::platform::linuxos
