#include "platform/panel.h"

#include <gtk/gtk.h>

#include <numbers>
#include <optional>
#include <utility>

#include "platform/linux/factory.h"
#include "platform/linux/glib_ptr.h"
#include "platform/linux/panel_place.h"
#include "platform/linux/tabular_digits.h"
#include "platform/shown_text.h"

namespace orvalle::platform::linuxos {
namespace {

constexpr GdkRGBA kGlass{0.11, 0.11, 0.12, 0.88};
constexpr GdkRGBA kOpaque{0.13, 0.13, 0.14, 1};
constexpr GdkRGBA kHairline{1, 1, 1, 0.16};
constexpr double kHairlineWidth = 1;

/// Lighter than the red that warns on white, so that it reads well on the dark panel, even where white shines
/// through.
constexpr char kWhite[] = "#ffffff";
constexpr char kSystemRed[] = "#ff7771";

void addRoundedRectangle(cairo_t* cairo, double inset, base::Size size, double radius) {
  const double left = inset, top = inset, right = size.width - inset, bottom = size.height - inset;
  const double corner = radius - inset;
  constexpr double kQuarter = std::numbers::pi / 2;
  cairo_new_path(cairo);
  cairo_arc(cairo, right - corner, top + corner, corner, -kQuarter, 0);
  cairo_arc(cairo, right - corner, bottom - corner, corner, 0, kQuarter);
  cairo_arc(cairo, left + corner, bottom - corner, corner, kQuarter, 2 * kQuarter);
  cairo_arc(cairo, left + corner, top + corner, corner, 2 * kQuarter, 3 * kQuarter);
  cairo_close_path(cairo);
}

/// The pixels of a rounded rectangle, for screens where windows cannot be translucent.
cairo_region_t* roundedRegion(base::Size size, double radius) {
  cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_A1, static_cast<int>(size.width),
                                                        static_cast<int>(size.height));
  cairo_t* cairo = cairo_create(surface);
  addRoundedRectangle(cairo, 0, size, radius);
  cairo_fill(cairo);
  cairo_destroy(cairo);
  cairo_region_t* region = gdk_cairo_region_create_from_surface(surface);
  cairo_surface_destroy(surface);
  return region;
}

struct DescriptionDeleter {
  void operator()(PangoFontDescription* font) const { pango_font_description_free(font); }
};
using FontPtr = std::unique_ptr<PangoFontDescription, DescriptionDeleter>;

/// Bold, in the theme's family. The model's points are the screen's pixels, for fonts as for frames.
FontPtr boldFont(double points) {
  FontPtr font(pango_font_description_new());
  pango_font_description_set_weight(font.get(), PANGO_WEIGHT_BOLD);
  pango_font_description_set_absolute_size(font.get(), points * PANGO_SCALE);
  return font;
}

class GtkPanel final : public Panel {
 public:
  explicit GtkPanel(const PanelSpec& spec)
      : spec_(spec),
        digits_(boldFont(spec.labelFontSize).get()),
        window_(GTK_WINDOW(gtk_window_new(GTK_WINDOW_TOPLEVEL))),
        label_(GTK_LABEL(gtk_label_new(nullptr))) {
    buildWindow();
    place_ = makePanelPlace(window_, spec.contentSize);
    place_->onDidMove = [this] {
      if (onDidMove) onDidMove();
    };
    buildLabel();
    // Once for all: hiding and showing keep the window that others may have taken note of.
    gtk_widget_realize(GTK_WIDGET(window_));
    followCompositor();
  }

  ~GtkPanel() override {
    place_.reset();
    gtk_widget_destroy(GTK_WIDGET(window_));
  }

  void setFrameOrigin(base::Point origin) override { place_->setOrigin(origin); }
  base::Point frameOrigin() const override { return place_->origin(); }

  void setLabel(const std::string& text, TextColour colour) override {
    auto shown = shownText(text);
    if (shown == text_ && colour == colour_) return;
    text_ = std::move(shown);
    colour_ = colour;
    gtk_label_set_text(label_, text_.c_str());
    setLabelAttributes();
  }

  void orderFrontRegardless() override {
    if (!gtk_widget_get_visible(GTK_WIDGET(window_))) place_->show();
  }

  void orderOut() override {
    if (gtk_widget_get_visible(GTK_WIDGET(window_))) place_->hide();
  }

 private:
  void buildWindow() {
    auto* widget = GTK_WIDGET(window_);
    gtk_window_set_role(window_, "overlay");
    // For who listens; a title would be one more window of the program to who looks for its window.
    atk_object_set_name(gtk_widget_get_accessible(widget), g_get_application_name());
    gtk_window_set_decorated(window_, FALSE);
    gtk_window_set_resizable(window_, FALSE);
    gtk_widget_set_app_paintable(widget, TRUE);
    if (auto* visual = gdk_screen_get_rgba_visual(gtk_widget_get_screen(widget))) {
      gtk_widget_set_visual(widget, visual);
    }
    g_signal_connect(widget, "delete-event", G_CALLBACK(gtk_true), nullptr);
    drawn_.emplace(widget, "draw", G_CALLBACK(+[](GtkWidget*, cairo_t* cairo, GtkPanel* self) -> gboolean {
                     self->drawGlass(cairo);
                     return FALSE;
                   }),
                   this);
  }

  /// An overlay's child has no say in its size: whatever the text and its fonts, the panel keeps its own.
  void buildLabel() {
    auto* frame = gtk_overlay_new();
    gtk_widget_set_size_request(frame, static_cast<int>(spec_.contentSize.width),
                                static_cast<int>(spec_.contentSize.height));
    gtk_label_set_ellipsize(label_, PANGO_ELLIPSIZE_END);
    gtk_label_set_single_line_mode(label_, TRUE);
    setLabelAttributes();
    placed_.emplace(frame, "get-child-position", G_CALLBACK(placeLabel), this);
    gtk_overlay_add_overlay(GTK_OVERLAY(frame), GTK_WIDGET(label_));
    gtk_container_add(GTK_CONTAINER(window_), frame);
    gtk_widget_show_all(frame);
    styled_.emplace(label_, "style-updated",
                    G_CALLBACK(+[](GtkWidget*, GtkPanel* self) { self->setLabelAttributes(); }), this);
  }

  static gboolean placeLabel(GtkOverlay*, GtkWidget*, GdkRectangle* rectangle, GtkPanel* self) {
    const auto& frame = self->spec_.labelFrame;
    rectangle->x = static_cast<int>(frame.origin.x);
    rectangle->y = static_cast<int>(self->spec_.contentSize.height - frame.origin.y - frame.size.height);
    rectangle->width = static_cast<int>(frame.size.width);
    rectangle->height = static_cast<int>(frame.size.height);
    return TRUE;
  }

  void setLabelAttributes() {
    auto attributes = digits_.attributes(gtk_widget_get_pango_context(GTK_WIDGET(label_)), text_);
    PangoColor colour;
    pango_color_parse(&colour, colour_ == TextColour::SystemRed ? kSystemRed : kWhite);
    pango_attr_list_insert(attributes.get(),
                           pango_attr_foreground_new(colour.red, colour.green, colour.blue));
    gtk_label_set_attributes(label_, attributes.get());
  }

  void followCompositor() {
    auto* screen = gtk_widget_get_screen(GTK_WIDGET(window_));
    composited_.emplace(screen, "composited-changed",
                        G_CALLBACK(+[](GdkScreen*, GtkPanel* self) { self->shapeWindow(); }), this);
    shapeWindow();
  }

  bool translucent() const {
    auto* screen = gtk_widget_get_screen(GTK_WIDGET(window_));
    return gdk_screen_is_composited(screen) && gdk_screen_get_rgba_visual(screen);
  }

  /// A translucent window keeps its corners, invisible: compositors give no shadow to windows with holes.
  void shapeWindow() {
    auto* widget = GTK_WIDGET(window_);
    cairo_region_t* region = translucent() ? nullptr : roundedRegion(spec_.contentSize, spec_.cornerRadius);
    gtk_widget_shape_combine_region(widget, region);
    if (region) cairo_region_destroy(region);
    gtk_widget_queue_draw(widget);
  }

  void drawGlass(cairo_t* cairo) const {
    cairo_save(cairo);
    cairo_set_operator(cairo, CAIRO_OPERATOR_SOURCE);
    if (translucent()) {
      cairo_set_source_rgba(cairo, 0, 0, 0, 0);
      cairo_paint(cairo);
      gdk_cairo_set_source_rgba(cairo, &kGlass);
      addRoundedRectangle(cairo, 0, spec_.contentSize, spec_.cornerRadius);
      cairo_fill(cairo);
    } else {
      gdk_cairo_set_source_rgba(cairo, &kOpaque);
      cairo_paint(cairo);
    }
    cairo_restore(cairo);
    gdk_cairo_set_source_rgba(cairo, &kHairline);
    cairo_set_line_width(cairo, kHairlineWidth);
    addRoundedRectangle(cairo, kHairlineWidth / 2, spec_.contentSize, spec_.cornerRadius);
    cairo_stroke(cairo);
  }

  const PanelSpec spec_;
  TabularDigits digits_;
  GtkWindow* window_;
  GtkLabel* label_;
  std::string text_;
  TextColour colour_ = TextColour::White;
  std::unique_ptr<PanelPlace> place_;
  std::optional<SignalConnection> drawn_, placed_, styled_, composited_;
};

class GtkPanels final : public Panels {
 public:
  bool canFloat() const override { return hasPanelPlaces(); }
  std::unique_ptr<Panel> make(const PanelSpec& spec) override { return std::make_unique<GtkPanel>(spec); }
};

}  // namespace

std::unique_ptr<Panels> makePanels() {
  return std::make_unique<GtkPanels>();
}

}  // namespace orvalle::platform::linuxos
