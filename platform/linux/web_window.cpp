#include "platform/web_window.h"

#include <utility>

#include "platform/linux/factory.h"
#include "platform/linux/own_window.h"
#include "platform/linux/strip_controls.h"
#include "platform/linux/web_profile.h"
#include "platform/linux/web_view.h"
#include "platform/linux/window_frame.h"
#include "platform/linux/window_strip.h"
#include "platform/shown_text.h"

namespace orvalle::platform::linuxos {
namespace {

GtkWidget* makeWindow(GtkApplication* application, const WebWindowSpec& spec) {
  GtkWidget* widget = gtk_application_window_new(application);
  auto* window = GTK_WINDOW(widget);
  gtk_application_window_set_show_menubar(GTK_APPLICATION_WINDOW(window), FALSE);
  gtk_window_set_title(window, spec.title.c_str());
  // A title bar that is never shown: the window is ours to draw up to its edges, which go on casting a shadow
  // and can be taken hold of.
  gtk_window_set_titlebar(window, gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 0));
  // Modal dialogs then hold up this window and what belongs to it, and nothing else.
  const auto group = GObjectPtr<GtkWindowGroup>::adopt(gtk_window_group_new());
  gtk_window_group_add_window(group.get(), window);
  return widget;
}

/// Tells what of the window around the page is border. GTK does so itself where the border is a shadow; under
/// window managers that know no such windows it draws a plain border and keeps it to itself.
void declareBorder(GtkWidget* page, GdkRectangle* allocation, gpointer) {
  GtkWidget* window = gtk_widget_get_toplevel(page);
  GdkWindow* surface = gtk_widget_get_window(window);
  if (!surface || !gtk_style_context_has_class(gtk_widget_get_style_context(window), "solid-csd")) return;
  gdk_window_set_shadow_width(
      surface, allocation->x, gdk_window_get_width(surface) - allocation->x - allocation->width,
      allocation->y, gdk_window_get_height(surface) - allocation->y - allocation->height);
}

class GtkWebWindow final : public WebWindow {
 public:
  GtkWebWindow(GtkApplication* application, MainLoop& loop, WindowMenu& menu, Defaults& defaults,
               WebKitWebContext* context, const WebWindowSpec& spec, WebWindowDelegate& delegate)
      : menu_(menu),
        window_(makeWindow(application, spec)),
        view_(loop, context, spec, delegate),
        strip_(window_.get(), spec.stripHeight, menu),
        frame_(window_.get(), spec.contentSize, spec.minimumSize, defaults),
        connections_{{{window_.get(), "delete-event", G_CALLBACK(closed), this},
                      {window_.get(), "key-press-event", G_CALLBACK(keyPressed), this}}} {
    GtkWidget* layers = gtk_overlay_new();
    g_signal_connect(layers, "size-allocate", G_CALLBACK(declareBorder), nullptr);
    gtk_widget_set_size_request(layers, static_cast<int>(spec.minimumSize.width),
                                static_cast<int>(spec.minimumSize.height));
    gtk_container_add(GTK_CONTAINER(layers), view_.widget());
    gtk_overlay_add_overlay(GTK_OVERLAY(layers), strip_.widget());
    gtk_container_add(GTK_CONTAINER(window_.get()), layers);
    gtk_widget_show(layers);
    gtk_widget_grab_focus(view_.widget());
  }

  void setFrameAutosaveName(const std::string& name) override { frame_.setAutosaveName(name); }
  void setTitle(const std::string& title) override {
    const auto shown = shownText(title);
    if (shown != gtk_window_get_title(window_.get())) gtk_window_set_title(window_.get(), shown.c_str());
  }
  void center() override { frame_.center(); }
  void makeKeyAndOrderFront() override { frame_.open(); }
  void load(const std::string& url) override { view_.load(url); }
  void startAnew() override { view_.startAnew(); }
  void loadHtml(const std::string& html) override { view_.loadHtml(html); }
  bool hasPage() const override { return view_.hasPage(); }
  void evaluate(const std::string& script) override { view_.evaluate(script); }
  TitleStrip& strip() override { return strip_; }

 private:
  static gboolean closed(GtkWidget*, GdkEvent*, gpointer self) {
    static_cast<GtkWebWindow*>(self)->frame_.close();
    return TRUE;
  }

  static gboolean keyPressed(GtkWidget*, GdkEventKey* event, gpointer self) {
    auto& window = *static_cast<GtkWebWindow*>(self);
    if (window.menu_.handleKey(event)) return TRUE;
    if (event->keyval != GDK_KEY_F10 || event->state & gtk_accelerator_get_default_mod_mask()) return FALSE;
    window.strip_.openMenu();
    return TRUE;
  }

  WindowMenu& menu_;
  OwnWindow window_;
  WebView view_;
  WindowStrip strip_;
  WindowFrame frame_;
  std::array<SignalConnection, 2> connections_;
};

class GtkWebWindows final : public WebWindows {
 public:
  GtkWebWindows(NativeApplication& application, MainLoop& loop, WindowMenu& menu, Defaults& defaults)
      : application_(application), loop_(loop), menu_(menu), defaults_(defaults) {}

  std::unique_ptr<WebWindow> make(const WebWindowSpec& spec, WebWindowDelegate& delegate) override {
    if (!profile_) profile_ = makeWebProfile();
    return std::make_unique<GtkWebWindow>(application_.gtk(), loop_, menu_, defaults_, profile_.get(), spec,
                                          delegate);
  }

 private:
  NativeApplication& application_;
  MainLoop& loop_;
  WindowMenu& menu_;
  Defaults& defaults_;
  StripStyle style_;
  GObjectPtr<WebKitWebContext> profile_;
};

}  // namespace

std::unique_ptr<WebWindows> makeWebWindows(NativeApplication& application, MainLoop& loop, WindowMenu& menu,
                                           Defaults& defaults) {
  return std::make_unique<GtkWebWindows>(application, loop, menu, defaults);
}

}  // namespace orvalle::platform::linuxos
