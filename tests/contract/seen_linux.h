#pragma once

#include <gtk/gtk.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "platform/linux/glib_ptr.h"
#include "tests/contract/loop.h"
#include "tests/contract/window_home.h"

/// What is on the screen for somebody who looks, who goes by keyboard, who listens to a screen reader.
namespace orvalle::contract {

/// What `widget` holds of this kind, at whatever depth, in order.
inline void collect(GtkWidget* widget, GType type, std::vector<GtkWidget*>& found) {
  if (G_TYPE_CHECK_INSTANCE_TYPE(widget, type)) found.push_back(widget);
  if (!GTK_IS_CONTAINER(widget) || GTK_IS_BUTTON(widget)) return;
  GList* children = gtk_container_get_children(GTK_CONTAINER(widget));
  for (GList* child = children; child; child = child->next) collect(GTK_WIDGET(child->data), type, found);
  g_list_free(children);
}

inline std::vector<GtkWidget*> all(gpointer widget, GType type) {
  std::vector<GtkWidget*> found;
  collect(GTK_WIDGET(widget), type, found);
  return found;
}

/// The least contrast with which texts are easily read, and pictures seen.
inline constexpr double kTextContrast = 4.5;
inline constexpr double kPictureContrast = 3;

inline constexpr GdkRGBA kWhite{1, 1, 1, 1};
inline constexpr GdkRGBA kBlack{0, 0, 0, 1};

/// How well colours can be told apart, from 1 to 21.
inline double contrast(const GdkRGBA& one, const GdkRGBA& other) {
  const auto luminance = [](const GdkRGBA& colour) {
    const auto linear = [](double part) {
      return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.red) + 0.7152 * linear(colour.green) + 0.0722 * linear(colour.blue);
  };
  const auto [low, high] = std::minmax({luminance(one), luminance(other)});
  return (high + 0.05) / (low + 0.05);
}

/// The colour of most of the place of `widget` when `root`, in which it is, is drawn over `beneath`.
inline GdkRGBA groundOf(GtkWidget* widget, GtkWidget* root, const GdkRGBA& beneath = kWhite) {
  const int width = gtk_widget_get_allocated_width(widget);
  const int height = gtk_widget_get_allocated_height(widget);
  int x = 0;
  int y = 0;
  gtk_widget_translate_coordinates(widget, root, 0, 0, &x, &y);
  cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height);
  cairo_t* cairo = cairo_create(surface);
  cairo_translate(cairo, -x, -y);
  gtk_widget_draw(root, cairo);
  cairo_destroy(cairo);
  cairo_surface_flush(surface);
  std::map<std::uint32_t, int> counts;
  for (int row = 0; row < height; ++row) {
    const auto* pixels = reinterpret_cast<const std::uint32_t*>(
        cairo_image_surface_get_data(surface) + row * cairo_image_surface_get_stride(surface));
    for (int column = 0; column < width; ++column) ++counts[pixels[column]];
  }
  cairo_surface_destroy(surface);
  const auto most = std::max_element(counts.begin(), counts.end(), [](const auto& one, const auto& other) {
                      return one.second < other.second;
                    })->first;
  const auto part = [&](int shift) { return ((most >> shift) & 0xFF) / 255.0; };
  const double through = 1 - part(24);
  return {part(16) + through * beneath.red, part(8) + through * beneath.green,
          part(0) + through * beneath.blue, 1};
}

/// How well what a widget writes or draws in its style's colour stands out from what it stands on.
inline double contrastOf(GtkWidget* widget, GtkWidget* root, const GdkRGBA& beneath = kWhite) {
  GdkRGBA ink;
  GtkStyleContext* style = gtk_widget_get_style_context(widget);
  gtk_style_context_get_color(style, gtk_style_context_get_state(style), &ink);
  for (GtkWidget* each = widget; each; each = gtk_widget_get_parent(each)) {
    double opacity = 1;
    style = gtk_widget_get_style_context(each);
    gtk_style_context_get(style, gtk_style_context_get_state(style), "opacity", &opacity, nullptr);
    ink.alpha *= opacity * gtk_widget_get_opacity(each);
  }
  const GdkRGBA ground = groundOf(widget, root, beneath);
  for (auto part : {&GdkRGBA::red, &GdkRGBA::green, &GdkRGBA::blue})
    ink.*part = ink.*part * ink.alpha + ground.*part * (1 - ink.alpha);
  return contrast(ink, ground);
}
inline double contrastOf(GtkWidget* widget) {
  return contrastOf(widget, gtk_widget_get_toplevel(widget));
}

/// All windows in a theme, as long as this lives.
class Theme {
 public:
  struct Look {
    const char* name;
    bool dark;
  };
  static constexpr std::array<Look, 4> kAll{
      {{"Adwaita", false}, {"Adwaita", true}, {"HighContrast", false}, {"HighContrastInverse", true}}};

  explicit Theme(const Look& look) {
    char* name = nullptr;
    g_object_get(gtk_settings_get_default(), kName, &name, kDark, &darkBefore_, nullptr);
    nameBefore_.reset(name);
    set(look.name, look.dark);
    // Colours may change by and by.
    runFor(std::chrono::milliseconds(400));
  }
  Theme(const Theme&) = delete;
  Theme& operator=(const Theme&) = delete;
  ~Theme() { set(nameBefore_.get(), darkBefore_); }

 private:
  static constexpr char kName[] = "gtk-theme-name";
  static constexpr char kDark[] = "gtk-application-prefer-dark-theme";

  static void set(const char* name, gboolean dark) {
    g_object_set(gtk_settings_get_default(), kName, name, kDark, dark, nullptr);
  }

  platform::linuxos::GlibPtr<char> nameBefore_;
  gboolean darkBefore_ = FALSE;
};

/// The names of labels and controls, as a screen reader comes upon them in `widget`.
inline std::vector<std::string> readOut(gpointer widget) {
  std::vector<std::string> read;
  const auto visit = [&](auto& self, AtkObject* accessible) -> void {
    using platform::linuxos::GObjectPtr;
    const auto states = GObjectPtr<AtkStateSet>::adopt(atk_object_ref_state_set(accessible));
    if (!atk_state_set_contains_state(states.get(), ATK_STATE_SHOWING)) return;
    const char* name = atk_object_get_name(accessible);
    const AtkRole role = atk_object_get_role(accessible);
    for (const AtkRole told : {ATK_ROLE_LABEL, ATK_ROLE_PUSH_BUTTON, ATK_ROLE_TOGGLE_BUTTON, ATK_ROLE_TEXT}) {
      if (role == told) read.push_back(atk_role_get_name(role) + std::string(" ") + (name ? name : ""));
    }
    for (int child = 0; child < atk_object_get_n_accessible_children(accessible); ++child) {
      const auto below = GObjectPtr<AtkObject>::adopt(atk_object_ref_accessible_child(accessible, child));
      if (below) self(self, below.get());
    }
  };
  visit(visit, gtk_widget_get_accessible(GTK_WIDGET(widget)));
  return read;
}

/// Where Tab leads, from what has the focus until it is there again.
inline std::vector<GtkWidget*> tabRound(gpointer window) {
  std::vector<GtkWidget*> round;
  for (auto* at = gtk_window_get_focus(GTK_WINDOW(window)); at && round.size() < 20;
       at = gtk_window_get_focus(GTK_WINDOW(window))) {
    if (!round.empty() && at == round.front()) break;
    round.push_back(at);
    pressKey(GTK_WINDOW(window), GDK_KEY_Tab);
  }
  return round;
}

}  // namespace orvalle::contract
