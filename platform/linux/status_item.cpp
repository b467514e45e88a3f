#include "platform/status_item.h"

#include <optional>
#include <utility>

#include "platform/linux/factory.h"
#include "platform/linux/look_later.h"
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

  void setFace(const StatusFace& face) override {
    if (face_ == face) return;
    face_ = face;
    later_.ask();
  }

  void setMenu(std::shared_ptr<Menu> menu) override {
    menuChanges_ = menu->onChange([this] { later_.ask(); });
    menu_.reset();
    menu_ = std::make_unique<StatusMenu>(std::move(menu), chain_, [this] { later_.ask(); });
    if (notifier_) menu_->publish(kStatusMenuPath);
    later_.ask();
  }

 private:
  void connect(GDBusConnection* bus) {
    ink_.follow(bus);
    if (menu_) menu_->publish(kStatusMenuPath);
    notifier_.emplace(bus, number_, notifierFace());
  }

  void look() {
    if (menu_) menu_->look();
    if (notifier_) notifier_->show(notifierFace());
  }

  NotifierFace notifierFace() {
    // The place of the image beside the title is the host's to choose.
    return {shownText(face_.title), toolTip(), pixmaps()};
  }

  std::string toolTip() const {
    if (!menu_ || menu_->model().items().empty()) return {};
    return shownText(menu_->model().items().front()->title());
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
