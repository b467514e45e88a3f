#include "platform/alerts.h"

#include <gtk/gtk.h>

#include <optional>
#include <utility>

#include "platform/alert_queue.h"
#include "platform/linux/factory.h"
#include "platform/linux/glib_ptr.h"
#include "platform/linux/own_window.h"
#include "platform/linux/window_front.h"

namespace orvalle::platform::linuxos {
namespace {

/// Of the texts together, in points. Taller ones scroll, so that the buttons stay on the screen.
constexpr int kNarrowest = 300;
constexpr int kScrolledWidth = 480;
constexpr int kTallest = 360;
constexpr int kAboveTexts = 12;

/// The time between two steps of the bar, in milliseconds.
constexpr guint kBarStep = 100;

/// A bar that moves as long as this lives.
class MovingBar {
 public:
  explicit MovingBar(GtkWidget* area) : bar_(GObjectPtr<GtkWidget>::share(gtk_progress_bar_new())) {
    gtk_widget_set_size_request(bar_.get(), static_cast<int>(kProgressBarSize.width),
                                static_cast<int>(kProgressBarSize.height));
    gtk_widget_set_halign(bar_.get(), GTK_ALIGN_CENTER);
    gtk_widget_show(bar_.get());
    gtk_box_pack_end(GTK_BOX(area), bar_.get(), FALSE, FALSE, 0);
    timer_ = g_timeout_add(kBarStep, step, this);
  }
  MovingBar(const MovingBar&) = delete;
  MovingBar& operator=(const MovingBar&) = delete;
  ~MovingBar() { g_source_remove(timer_); }

 private:
  static gboolean step(gpointer self) {
    gtk_progress_bar_pulse(GTK_PROGRESS_BAR(static_cast<MovingBar*>(self)->bar_.get()));
    return G_SOURCE_CONTINUE;
  }

  GObjectPtr<GtkWidget> bar_;
  guint timer_ = 0;
};

/// The dialog of one alert.
class Dialog final : public AlertQueue::Dialog {
 public:
  Dialog(const Alert& alert, bool progress, GtkWindow* parent, std::function<void(std::size_t)> answered)
      : answered_(std::move(answered)),
        closing_(alert.closing.value_or(alert.buttons.size() - 1)),
        window_(gtk_message_dialog_new(parent, GTK_DIALOG_MODAL, GTK_MESSAGE_OTHER, GTK_BUTTONS_NONE, "%s",
                                       alert.message.c_str())),
        response_(window_.widget(), "response", G_CALLBACK(responded), this) {
    gtk_window_set_title(window_.get(), g_get_application_name());
    auto* dialog = GTK_MESSAGE_DIALOG(window_.widget());
    if (!alert.informative.empty())
      gtk_message_dialog_format_secondary_text(dialog, "%s", alert.informative.c_str());
    for (std::size_t button = 0; button < alert.buttons.size(); ++button)
      addButton(alert.buttons[button], static_cast<int>(button), button == alert.returnButton);
    gtk_dialog_set_default_response(GTK_DIALOG(dialog), static_cast<int>(alert.returnButton));
    fitTexts(dialog);
    if (progress) bar_.emplace(gtk_dialog_get_content_area(GTK_DIALOG(dialog)));
    if (!parent) {
      // Holds up none of our other windows, as it belongs to none of them.
      const auto group = GObjectPtr<GtkWindowGroup>::adopt(gtk_window_group_new());
      gtk_window_group_add_window(group.get(), window_.get());
      gtk_window_set_position(window_.get(), GTK_WIN_POS_CENTER);
    }
    present(window_.get());
  }

 private:
  void addButton(const std::string& title, int response, bool focused) {
    // The title as it is: an underline would make the next letter a shortcut.
    GtkWidget* button = gtk_button_new_with_label(title.c_str());
    gtk_widget_set_can_default(button, TRUE);
    gtk_widget_show(button);
    gtk_dialog_add_action_widget(GTK_DIALOG(window_.widget()), button, response);
    if (focused) gtk_widget_grab_focus(button);
  }

  static void fitTexts(GtkMessageDialog* dialog) {
    GtkWidget* area = gtk_message_dialog_get_message_area(dialog);
    gtk_widget_set_size_request(area, kNarrowest, -1);
    gtk_widget_set_margin_top(area, kAboveTexts);
    gtk_container_foreach(
        GTK_CONTAINER(area),
        [](GtkWidget* label, gpointer) {
          gtk_label_set_selectable(GTK_LABEL(label), TRUE);
          // A word may be longer than a line.
          gtk_label_set_line_wrap_mode(GTK_LABEL(label), PANGO_WRAP_WORD_CHAR);
          // Each in the middle, they would begin at different places.
          gtk_widget_set_halign(label, GTK_ALIGN_FILL);
          gtk_label_set_xalign(GTK_LABEL(label), 0);
        },
        nullptr);
    GtkRequisition natural;
    gtk_widget_get_preferred_size(area, nullptr, &natural);
    if (natural.height <= kTallest) return;
    auto* parent = GTK_CONTAINER(gtk_widget_get_parent(area));
    GtkWidget* scroller = gtk_scrolled_window_new(nullptr, nullptr);
    gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(scroller), GTK_POLICY_NEVER, GTK_POLICY_AUTOMATIC);
    gtk_widget_set_size_request(scroller, kScrolledWidth, kTallest);
    const auto kept = GObjectPtr<GtkWidget>::share(area);
    gtk_container_remove(parent, area);
    gtk_container_add(GTK_CONTAINER(scroller), area);
    gtk_container_add(parent, scroller);
    gtk_widget_show_all(scroller);
  }

  static void responded(GtkDialog*, int response, gpointer self) {
    auto& dialog = *static_cast<Dialog*>(self);
    // Everything but a button closes the window.
    const auto button = response >= 0 ? static_cast<std::size_t>(response) : dialog.closing_;
    // The answer does away with this dialog.
    const auto answered = std::move(dialog.answered_);
    answered(button);
  }

  std::function<void(std::size_t)> answered_;
  std::size_t closing_;
  OwnWindow window_;
  std::optional<MovingBar> bar_;
  SignalConnection response_;
};

}  // namespace

std::unique_ptr<Alerts> makeAlerts(NativeApplication& application) {
  return std::make_unique<AlertQueue>([&application](const Alert& alert, bool progress, auto answered) {
    return std::make_unique<Dialog>(alert, progress, frontWindow(application.gtk()), std::move(answered));
  });
}

}  // namespace orvalle::platform::linuxos
