#include "platform/linux/strip_controls.h"

#include <string_view>

namespace orvalle::platform::linuxos {
namespace {

constexpr char kEndClass[] = "orvalle-controls";

/// What lies beneath is the page's business and may be anything: the controls bring their own ground, in the
/// theme's colours, which a page that follows the desktop's light or dark has too. Where the window has a
/// plain border instead of a shadow the theme's draws two lines around a stripe: one line is enough.
constexpr char kStyle[] = R"css(
.orvalle-controls {
  margin: 5px 6px;
  padding: 0 2px;
  border-radius: 14px;
  background-color: alpha(@theme_bg_color, 0.72);
}
.orvalle-controls button {
  min-width: 24px;
  min-height: 24px;
  margin: 2px;
  padding: 0;
  border: none;
  border-radius: 12px;
  background: none;
  box-shadow: none;
  text-shadow: none;
  -gtk-icon-shadow: none;
  color: @theme_fg_color;
}
.orvalle-controls button:backdrop { color: alpha(@theme_fg_color, 0.75); }
.orvalle-controls button:hover { background-color: alpha(@theme_fg_color, 0.12); }
.orvalle-controls button:active, .orvalle-controls button:checked {
  background-color: alpha(@theme_fg_color, 0.22);
}
.solid-csd decoration, .solid-csd decoration:backdrop {
  background-color: @theme_bg_color;
  box-shadow: none;
}
)css";

struct WindowButton {
  const char* token;
  const char* icon;
  const char* name;
  void (*pressed)(GtkWindow* window);
};

void toggleMaximized(GtkWindow* window) {
  if (gtk_window_is_maximized(window)) {
    gtk_window_unmaximize(window);
  } else {
    gtk_window_maximize(window);
  }
}

constexpr char kMaximizeToken[] = "maximize";

constexpr WindowButton kWindowButtons[] = {
    {"close", "window-close-symbolic", "Chiudi", gtk_window_close},
    {"minimize", "window-minimize-symbolic", "Riduci a icona", gtk_window_iconify},
    {kMaximizeToken, "window-maximize-symbolic", "Ingrandisci", toggleMaximized},
};

void setFace(GtkWidget* button, const char* icon, const char* name) {
  gtk_button_set_image(GTK_BUTTON(button), gtk_image_new_from_icon_name(icon, GTK_ICON_SIZE_MENU));
  atk_object_set_name(gtk_widget_get_accessible(button), name);
}

/// The controls are for the pointer, as those of other windows are: the keyboard stays with the page.
void leaveKeyboardAlone(GtkWidget* button) {
  gtk_widget_set_can_focus(button, FALSE);
  gtk_widget_set_valign(button, GTK_ALIGN_CENTER);
}

GtkBox* makeEnd() {
  GtkWidget* end = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 0);
  gtk_style_context_add_class(gtk_widget_get_style_context(end), kEndClass);
  return GTK_BOX(end);
}

void empty(GtkBox* end) {
  gtk_container_foreach(
      GTK_CONTAINER(end), [](GtkWidget* child, gpointer) { gtk_widget_destroy(child); }, nullptr);
}

bool isEmpty(GtkBox* end) {
  GList* children = gtk_container_get_children(GTK_CONTAINER(end));
  g_list_free(children);
  return !children;
}

/// The buttons of one side of a layout like "menu:minimize,maximize,close".
using Tokens = std::unique_ptr<char*, decltype(&g_strfreev)>;

Tokens tokensOf(const char* side) {
  return {g_strsplit(side ? side : "", ",", -1), g_strfreev};
}

bool closes(const Tokens& tokens) {
  return g_strv_contains(tokens.get(), "close");
}

}  // namespace

StripControls::StripControls(GtkWindow* window, GtkContainer* strip, WindowMenu& menu)
    : window_(window),
      menu_(menu),
      left_(makeEnd()),
      right_(makeEnd()),
      connections_{{{gtk_widget_get_settings(GTK_WIDGET(window)), "notify::gtk-decoration-layout",
                     G_CALLBACK(layoutChanged), this},
                    {window, "window-state-event", G_CALLBACK(stateChanged), this}}} {
  GtkWidget* ends = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 0);
  gtk_box_pack_start(GTK_BOX(ends), GTK_WIDGET(left_), FALSE, FALSE, 0);
  gtk_box_pack_end(GTK_BOX(ends), GTK_WIDGET(right_), FALSE, FALSE, 0);
  gtk_container_add(strip, ends);
  gtk_widget_show(ends);
  build();
}

void StripControls::build() {
  maximizeButton_ = nullptr;
  empty(left_);
  empty(right_);
  char* layout = nullptr;
  g_object_get(gtk_widget_get_settings(GTK_WIDGET(window_)), "gtk-decoration-layout", &layout, nullptr);
  const GlibPtr<char> owned(layout);
  const std::unique_ptr<char*, decltype(&g_strfreev)> sides(g_strsplit(layout ? layout : "", ":", 2),
                                                            g_strfreev);
  const auto left = tokensOf(sides.get()[0]);
  const auto right = tokensOf(sides.get()[0] ? sides.get()[1] : nullptr);
  const bool menuLeft = closes(left) && !closes(right);

  for (char** token = left.get(); *token; ++token) addWindowButton(left_, *token);
  if (menuLeft) addMenuButton(left_);
  if (!menuLeft) addMenuButton(right_);
  for (char** token = right.get(); *token; ++token) addWindowButton(right_, *token);
  for (GtkBox* end : {left_, right_}) {
    gtk_widget_show_all(GTK_WIDGET(end));
    gtk_widget_set_visible(GTK_WIDGET(end), !isEmpty(end));
  }
  showMaximized(gtk_window_is_maximized(window_));
}

void StripControls::addWindowButton(GtkBox* end, const char* token) {
  for (const auto& kind : kWindowButtons) {
    if (std::string_view(token) != kind.token) continue;
    GtkWidget* button = gtk_button_new();
    leaveKeyboardAlone(button);
    setFace(button, kind.icon, kind.name);
    g_signal_connect_swapped(button, "clicked", G_CALLBACK(kind.pressed), window_);
    gtk_box_pack_start(end, button, FALSE, FALSE, 0);
    if (std::string_view(token) == kMaximizeToken) maximizeButton_ = button;
  }
}

void StripControls::addMenuButton(GtkBox* end) {
  menuButton_ = gtk_menu_button_new();
  leaveKeyboardAlone(menuButton_);
  setFace(menuButton_, "open-menu-symbolic", "Menu");
  GtkWidget* menu = menu_.makePopup();
  gtk_widget_set_halign(menu, end == left_ ? GTK_ALIGN_START : GTK_ALIGN_END);
  gtk_menu_button_set_popup(GTK_MENU_BUTTON(menuButton_), menu);
  gtk_box_pack_start(end, menuButton_, FALSE, FALSE, 0);
}

void StripControls::openMenu() {
  gtk_toggle_button_set_active(GTK_TOGGLE_BUTTON(menuButton_), TRUE);
}

void StripControls::showMaximized(bool maximized) {
  if (!maximizeButton_) return;
  setFace(maximizeButton_, maximized ? "window-restore-symbolic" : "window-maximize-symbolic",
          maximized ? "Ripristina" : "Ingrandisci");
}

void StripControls::layoutChanged(GtkSettings*, GParamSpec*, gpointer self) {
  static_cast<StripControls*>(self)->build();
}

gboolean StripControls::stateChanged(GtkWidget*, GdkEventWindowState* event, gpointer self) {
  if (event->changed_mask & GDK_WINDOW_STATE_MAXIMIZED)
    static_cast<StripControls*>(self)->showMaximized(event->new_window_state & GDK_WINDOW_STATE_MAXIMIZED);
  return FALSE;
}

StripStyle::StripStyle() : provider_(GObjectPtr<GtkCssProvider>::adopt(gtk_css_provider_new())) {
  gtk_css_provider_load_from_data(provider_.get(), kStyle, -1, nullptr);
  gtk_style_context_add_provider_for_screen(gdk_screen_get_default(), GTK_STYLE_PROVIDER(provider_.get()),
                                            GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
}

StripStyle::~StripStyle() {
  gtk_style_context_remove_provider_for_screen(gdk_screen_get_default(), GTK_STYLE_PROVIDER(provider_.get()));
}

}  // namespace orvalle::platform::linuxos
