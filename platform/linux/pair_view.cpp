#include "platform/pair_view.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/linux/factory.h"
#include "platform/linux/glib_ptr.h"
#include "platform/linux/own_window.h"
#include "platform/linux/screen_space.h"
#include "platform/linux/window_front.h"

namespace orvalle::platform::linuxos {
namespace {

constexpr char kLabelClass[] = "orvalle-pair-label";
constexpr char kFieldClass[] = "orvalle-pair-field";
constexpr char kMessageClass[] = "orvalle-pair-message";
constexpr char kButtonClass[] = "orvalle-pair-button";
constexpr char kGreenClass[] = "green";
constexpr char kOrangeClass[] = "orange";

/// Fields and buttons are made to fit the layout, which themes with generous ones would overflow. Colours
/// lean on the theme's, so that they can be read in light and in dark.
constexpr char kStyle[] = R"css(
.orvalle-pair-label { font-size: 11px; font-weight: 600; color: alpha(@theme_fg_color, 0.75); }
.orvalle-pair-field { font-family: monospace; font-size: 11px; min-height: 0; padding: 0 6px; }
.orvalle-pair-message { font-size: 11px; }
.orvalle-pair-message.green { color: mix(#26a269, @theme_fg_color, 0.4); }
.orvalle-pair-message.orange { color: mix(#e66100, @theme_fg_color, 0.4); }
.orvalle-pair-button { min-height: 0; min-width: 0; padding: 0 4px; }
)css";

GtkWidget* makeWindow(GtkApplication* application, const PairViewSpec& spec) {
  GtkWidget* widget = gtk_window_new(GTK_WINDOW_TOPLEVEL);
  auto* window = GTK_WINDOW(widget);
  gtk_window_set_title(window, spec.title.c_str());
  gtk_window_set_resizable(window, FALSE);
  // Its title bar then has a close button and no others.
  gtk_window_set_type_hint(window, GDK_WINDOW_TYPE_HINT_DIALOG);
  gtk_application_add_window(application, window);
  const auto group = GObjectPtr<GtkWindowGroup>::adopt(gtk_window_group_new());
  gtk_window_group_add_window(group.get(), window);
  return widget;
}

class GtkPairView final : public PairView {
 public:
  GtkPairView(GtkApplication* application, WindowMenu& menu, GtkStyleProvider* style,
              const PairViewSpec& spec)
      : menu_(menu),
        style_(style),
        window_(makeWindow(application, spec)),
        contentHeight_(spec.contentSize.height),
        content_(GTK_FIXED(gtk_fixed_new())),
        connections_{{{window_.get(), "realize", G_CALLBACK(realized), nullptr},
                      {window_.get(), "delete-event", G_CALLBACK(gtk_widget_hide_on_delete), nullptr},
                      {window_.get(), "key-press-event", G_CALLBACK(keyPressed), this}}} {
    gtk_widget_set_size_request(GTK_WIDGET(content_), static_cast<int>(spec.contentSize.width),
                                static_cast<int>(spec.contentSize.height));
    gtk_container_add(GTK_CONTAINER(window_.get()), GTK_WIDGET(content_));
    for (std::size_t i = 0; i < spec.fields.size(); ++i) addField(spec.labels[i], spec.fields[i]);
    message_ = makeLabel(spec.messageFrame, kMessageClass);
    gtk_label_set_ellipsize(message_, PANGO_ELLIPSIZE_END);
    for (const auto& button : spec.buttons) addButton(button);
    gtk_widget_show_all(GTK_WIDGET(content_));
  }

  std::string fieldText(std::size_t field) const override { return gtk_entry_get_text(fields_.at(field)); }
  void setFieldText(std::size_t field, const std::string& text) override {
    gtk_entry_set_text(fields_.at(field), text.c_str());
  }

  void setMessage(const std::string& text, MessageColour colour) override {
    GtkStyleContext* style = gtk_widget_get_style_context(GTK_WIDGET(message_));
    gtk_style_context_remove_class(style, kGreenClass);
    gtk_style_context_remove_class(style, kOrangeClass);
    if (colour == MessageColour::SystemGreen) gtk_style_context_add_class(style, kGreenClass);
    if (colour == MessageColour::SystemOrange) gtk_style_context_add_class(style, kOrangeClass);
    gtk_label_set_text(message_, text.c_str());
    // Who cannot see it is told, without having to look for it.
    if (!text.empty()) {
      g_signal_emit_by_name(gtk_widget_get_accessible(GTK_WIDGET(message_)), "announcement", text.c_str());
    }
  }

  void present() override {
    centre();
    linuxos::present(window_.get());
    // One that was on show before comes back to where it was.
    centre();
    gtk_widget_grab_focus(GTK_WIDGET(fields_.front()));
  }
  void orderOut() override { gtk_widget_hide(window_.widget()); }

 private:
  void put(GtkWidget* widget, const base::Rect& frame, const char* styleClass) {
    GtkStyleContext* style = gtk_widget_get_style_context(widget);
    gtk_style_context_add_class(style, styleClass);
    gtk_style_context_add_provider(style, style_, GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
    gtk_widget_set_size_request(widget, static_cast<int>(frame.size.width),
                                static_cast<int>(frame.size.height));
    gtk_fixed_put(content_, widget, static_cast<int>(frame.origin.x),
                  static_cast<int>(contentHeight_ - frame.origin.y - frame.size.height));
  }

  GtkLabel* makeLabel(const base::Rect& frame, const char* styleClass) {
    GtkWidget* label = gtk_label_new(nullptr);
    gtk_label_set_xalign(GTK_LABEL(label), 0);
    put(label, frame, styleClass);
    return GTK_LABEL(label);
  }

  void addField(const PairLabel& name, const PairField& field) {
    GtkLabel* label = makeLabel(name.frame, kLabelClass);
    gtk_label_set_text(label, name.text.c_str());
    GtkWidget* entry = gtk_entry_new();
    gtk_entry_set_placeholder_text(GTK_ENTRY(entry), field.placeholder.c_str());
    gtk_entry_set_activates_default(GTK_ENTRY(entry), TRUE);
    // Ties the two for assistive technologies; the name is for those that do not look for ties.
    gtk_label_set_mnemonic_widget(label, entry);
    atk_object_set_name(gtk_widget_get_accessible(entry), name.text.c_str());
    put(entry, field.frame, kFieldClass);
    fields_.push_back(GTK_ENTRY(entry));
  }

  void addButton(const PairButton& spec) {
    GtkWidget* button = gtk_button_new_with_label(spec.title.c_str());
    put(button, spec.frame, kButtonClass);
    // Return belongs to the default button, wherever the keyboard is.
    gtk_widget_set_receives_default(button, FALSE);
    if (spec.isDefault) {
      gtk_widget_set_can_default(button, TRUE);
      gtk_window_set_default(window_.get(), button);
    }
    g_signal_connect(button, "clicked", G_CALLBACK(pressed), this);
    buttons_.push_back(button);
  }

  /// Into the middle of the main screen's usable part. Not left to GTK, which does it once.
  void centre() {
    GdkMonitor* monitor = mainMonitor();
    if (!monitor) return;
    GdkRectangle area;
    gdk_monitor_get_workarea(monitor, &area);
    GtkRequisition size;
    gtk_widget_get_preferred_size(window_.widget(), nullptr, &size);
    gtk_window_move(window_.get(), area.x + (area.width - size.width) / 2,
                    area.y + (area.height - size.height) / 2);
  }

  /// Window managers that go by these rather than by the kind of the window.
  static void realized(GtkWidget* window, gpointer) {
    GdkWindow* surface = gtk_widget_get_window(window);
    gdk_window_set_functions(surface, static_cast<GdkWMFunction>(GDK_FUNC_MOVE | GDK_FUNC_CLOSE));
    gdk_window_set_decorations(
        surface, static_cast<GdkWMDecoration>(GDK_DECOR_BORDER | GDK_DECOR_TITLE | GDK_DECOR_MENU));
  }

  static void pressed(GtkWidget* button, gpointer data) {
    const auto& self = *static_cast<GtkPairView*>(data);
    const auto found = std::find(self.buttons_.begin(), self.buttons_.end(), button);
    const auto press = self.onButton;
    if (press) press(static_cast<std::size_t>(found - self.buttons_.begin()));
  }

  static gboolean keyPressed(GtkWidget* widget, GdkEventKey* event, gpointer data) {
    auto& self = *static_cast<GtkPairView*>(data);
    if (self.menu_.handleKey(event)) return TRUE;
    if (event->keyval != GDK_KEY_Escape || event->state & gtk_accelerator_get_default_mod_mask())
      return FALSE;
    // An input method in the field may have a use for it.
    if (!gtk_window_propagate_key_event(GTK_WINDOW(widget), event)) gtk_widget_hide(widget);
    return TRUE;
  }

  WindowMenu& menu_;
  GtkStyleProvider* style_;
  OwnWindow window_;
  double contentHeight_;
  GtkFixed* content_;
  std::vector<GtkEntry*> fields_;
  GtkLabel* message_ = nullptr;
  std::vector<GtkWidget*> buttons_;
  std::array<SignalConnection, 3> connections_;
};

class GtkPairViews final : public PairViews {
 public:
  GtkPairViews(NativeApplication& application, WindowMenu& menu)
      : application_(application),
        menu_(menu),
        style_(GObjectPtr<GtkCssProvider>::adopt(gtk_css_provider_new())) {
    gtk_css_provider_load_from_data(style_.get(), kStyle, -1, nullptr);
  }

  std::unique_ptr<PairView> make(const PairViewSpec& spec) override {
    return std::make_unique<GtkPairView>(application_.gtk(), menu_, GTK_STYLE_PROVIDER(style_.get()), spec);
  }

 private:
  NativeApplication& application_;
  WindowMenu& menu_;
  GObjectPtr<GtkCssProvider> style_;
};

}  // namespace

std::unique_ptr<PairViews> makePairViews(NativeApplication& application, WindowMenu& menu) {
  return std::make_unique<GtkPairViews>(application, menu);
}

}  // namespace orvalle::platform::linuxos
