#include "platform/status_item.h"

#include <gdk/gdkx.h>

#include <optional>
#include <utility>

#include "platform/linux/factory.h"
#include "platform/linux/look_later.h"
#include "platform/linux/menu_popup.h"
#include "platform/linux/notifier_item.h"
#include "platform/linux/panel_ink.h"
#include "platform/linux/status_icon.h"
#include "platform/linux/status_menu.h"
#include "platform/shown_text.h"

namespace orvalle::platform::linuxos {
namespace {

/// Collects what changes during a turn of the main loop and tells it once.
class NotifierStatusItem final : public StatusItem {
 public:
  NotifierStatusItem(ActionTarget& chain, int number)
      : chain_(chain),
        number_(number),
        later_([this] { look(); }),
        ink_([this] { later_.ask(); }),
        cancellable_(GObjectPtr<GCancellable>::adopt(g_cancellable_new())) {
    g_bus_get(
        G_BUS_TYPE_SESSION, cancellable_.get(),
        [](GObject*, GAsyncResult* result, gpointer data) {
          GError* failure = nullptr;
          const auto bus = GObjectPtr<GDBusConnection>::adopt(g_bus_get_finish(result, &failure));
          const GlibPtr<GError> error(failure);
          if (error && g_error_matches(error.get(), G_IO_ERROR, G_IO_ERROR_CANCELLED)) return;
          // Without a session bus there is no status bar.
          if (bus) static_cast<NotifierStatusItem*>(data)->connect(bus.get());
        },
        this);
  }

  ~NotifierStatusItem() override { g_cancellable_cancel(cancellable_.get()); }

  bool hasButton() const override { return true; }

  bool isShown() const override { return notifier_ && notifier_->shown(); }

  void setFace(const StatusFace& face) override {
    if (face_ == face) return;
    face_ = face;
    later_.ask();
  }

  void setMenu(std::shared_ptr<Menu> menu) override {
    menuChanges_ = menu->onChange([this] { later_.ask(); });
    popup_.reset();
    menu_.reset();
    menu_ = std::make_unique<StatusMenu>(std::move(menu), chain_, [this] { later_.ask(); });
    if (notifier_) menu_->publish(kStatusMenuPath);
    later_.ask();
  }

 private:
  void connect(GDBusConnection* bus) {
    ink_.follow(bus);
    if (menu_) menu_->publish(kStatusMenuPath);
    notifier_.emplace(bus, number_, notifierFace(), [this] { popUp(); });
  }

  /// Opens the menu where the pointer is. Only X11 lets a program choose the place of a menu that is none of
  /// its windows'.
  void popUp() {
    GdkDisplay* display = gdk_display_get_default();
    if (!menu_ || !GDK_IS_X11_DISPLAY(display)) return;
    const auto opener = std::make_shared<Menu>();
    opener->add(MenuItem::opening("", menu_->model()));
    popup_.emplace(makeMenuPopup(opener, chain_));
    popup_->done.emplace(popup_->menu.get(), "selection-done", G_CALLBACK(&NotifierStatusItem::onDone), this);
    GdkDevice* pointer = gdk_seat_get_pointer(gdk_display_get_default_seat(display));
    GdkScreen* screen = nullptr;
    GdkRectangle place{0, 0, 1, 1};
    gdk_device_get_position(pointer, &screen, &place.x, &place.y);
    GdkWindow* root = gdk_screen_get_root_window(screen);
    // The click was the host's: GTK, which wants to know what opens a menu, gets one like it.
    GdkEvent* click = gdk_event_new(GDK_BUTTON_RELEASE);
    click->button.window = GDK_WINDOW(g_object_ref(root));
    gdk_event_set_device(click, pointer);
    gtk_menu_popup_at_rect(GTK_MENU(popup_->menu.get()), root, &place, GDK_GRAVITY_SOUTH_WEST,
                           GDK_GRAVITY_NORTH_WEST, click);
    gdk_event_free(click);
  }

  static void onDone(GtkMenuShell*, gpointer data) { static_cast<NotifierStatusItem*>(data)->popup_.reset(); }

  void look() {
    if (menu_) menu_->look();
    if (notifier_) notifier_->show(notifierFace());
  }

  NotifierFace notifierFace() {
    // The place of the image beside the title is the host's to choose.
    return {shownText(face_.title), toolTip(), pixmaps()};
  }

  std::string toolTip() const {
    if (!menu_ || menu_->model()->items().empty()) return {};
    return shownText(menu_->model()->items().front()->title());
  }

  /// The picture as it was last time, unless it is another one.
  std::shared_ptr<GVariant> pixmaps() {
    const auto ink = ink_.current();
    if (!pixmaps_ || drawing_ != face_.image || alpha_ != face_.alpha || pixmapInk_ != ink) {
      drawing_ = face_.image;
      alpha_ = face_.alpha;
      pixmapInk_ = ink;
      pixmaps_ = iconPixmaps(drawing_, alpha_, ink);
    }
    return pixmaps_;
  }

  /// The menu as our own window, while it is open.
  struct Popup {
    explicit Popup(GtkWidget* widget) : menu(GObjectPtr<GtkWidget>::share(widget)) {}
    Popup(const Popup&) = delete;
    Popup& operator=(const Popup&) = delete;
    ~Popup() { gtk_widget_destroy(menu.get()); }

    const GObjectPtr<GtkWidget> menu;
    std::optional<SignalConnection> done;
  };

  ActionTarget& chain_;
  const int number_;
  LookLater later_;
  PanelInk ink_;
  GObjectPtr<GCancellable> cancellable_;
  StatusFace face_;
  Drawing drawing_;
  double alpha_ = 1;
  Ink pixmapInk_;
  std::shared_ptr<GVariant> pixmaps_;
  std::unique_ptr<StatusMenu> menu_;
  base::Subscription menuChanges_;
  std::optional<Popup> popup_;
  std::optional<NotifierItem> notifier_;
};

class NotifierStatusBar final : public StatusBar {
 public:
  explicit NotifierStatusBar(Application& application) : application_(application) {}

  std::unique_ptr<StatusItem> makeItem() override {
    return std::make_unique<NotifierStatusItem>(application_.responderChain(), ++made_);
  }

 private:
  Application& application_;
  int made_ = 0;
};

}  // namespace

std::unique_ptr<StatusBar> makeStatusBar(Application& application) {
  return std::make_unique<NotifierStatusBar>(application);
}

}  // namespace orvalle::platform::linuxos
