#include "platform/open_panel.h"

#include <gtk/gtk.h>

#include <list>
#include <utility>

#include "platform/linux/factory.h"
#include "platform/linux/glib_ptr.h"
#include "platform/linux/window_front.h"

namespace orvalle::platform::linuxos {
namespace {

using Answer = std::optional<std::vector<std::string>>;

/// A title in which an underline is an underline.
std::string literally(const std::string& title) {
  std::string result;
  for (const char character : title) result.append(character == '_' ? 2 : 1, character);
  return result;
}

/// The dialog of one question, which goes away with this.
class Chooser {
 public:
  Chooser(const OpenPanelSpec& spec, GtkWindow* parent, std::function<void(Answer)> answered)
      : answered_(std::move(answered)),
        chooser_(GObjectPtr<GtkFileChooserNative>::adopt(
            gtk_file_chooser_native_new(spec.message.c_str(), parent, GTK_FILE_CHOOSER_ACTION_OPEN,
                                        literally(spec.prompt).c_str(), "Annulla"))),
        response_(chooser_.get(), "response", G_CALLBACK(responded), this) {
    gtk_file_chooser_set_select_multiple(GTK_FILE_CHOOSER(chooser_.get()), spec.allowsMultipleSelection);
    gtk_native_dialog_show(GTK_NATIVE_DIALOG(chooser_.get()));
  }
  Chooser(const Chooser&) = delete;
  Chooser& operator=(const Chooser&) = delete;
  ~Chooser() { gtk_native_dialog_destroy(GTK_NATIVE_DIALOG(chooser_.get())); }

 private:
  static void responded(GtkNativeDialog*, int response, gpointer self) {
    auto& chooser = *static_cast<Chooser*>(self);
    auto answer = response == GTK_RESPONSE_ACCEPT ? chooser.chosen() : Answer();
    // The answer does away with this dialog.
    const auto answered = std::move(chooser.answered_);
    answered(std::move(answer));
  }

  Answer chosen() const {
    std::vector<std::string> paths;
    GSList* names = gtk_file_chooser_get_filenames(GTK_FILE_CHOOSER(chooser_.get()));
    for (GSList* each = names; each; each = each->next) paths.emplace_back(static_cast<char*>(each->data));
    g_slist_free_full(names, g_free);
    return paths;
  }

  std::function<void(Answer)> answered_;
  GObjectPtr<GtkFileChooserNative> chooser_;
  SignalConnection response_;
};

class GtkOpenPanel final : public OpenPanel {
 public:
  explicit GtkOpenPanel(NativeApplication& application) : application_(application) {}

  void choose(const OpenPanelSpec& spec, std::function<void(Answer)> done) override {
    const auto place = choosers_.emplace(choosers_.end());
    place->emplace(spec, frontWindow(application_.gtk()),
                   [this, place, done = std::move(done)](Answer answer) {
                     choosers_.erase(place);
                     done(std::move(answer));
                   });
  }

 private:
  NativeApplication& application_;
  /// Those on show.
  std::list<std::optional<Chooser>> choosers_;
};

}  // namespace

std::unique_ptr<OpenPanel> makeOpenPanel(NativeApplication& application) {
  return std::make_unique<GtkOpenPanel>(application);
}

}  // namespace orvalle::platform::linuxos
