#include <ext-idle-notify-v1.h>
#include <kde-idle.h>

#include <chrono>
#include <functional>
#include <optional>
#include <utility>

#include "platform/linux/input_idle_sources.h"
#include "platform/linux/wayland_connection.h"

namespace orvalle::platform::linuxos {
namespace {

using Clock = std::chrono::steady_clock;

/// Short beside any time that matters, and long enough not to wake us at every pause in typing.
constexpr std::uint32_t kFirstNoticeMilliseconds = 5000;

/// Since when nobody has touched anything; absent until the first notice and after each input.
using IdleSince = std::optional<Clock::time_point>;

void setIdle(void* data) {
  *static_cast<IdleSince*>(data) = Clock::now() - std::chrono::milliseconds(kFirstNoticeMilliseconds);
}
void setBusy(void* data) {
  static_cast<IdleSince*>(data)->reset();
}

using Release = std::function<void()>;

/// Has the compositor tell `since` of idleness and input until the function is called. Empty where it does
/// not know this way.
Release follow(WaylandConnection& connection, wl_seat* seat, IdleSince& since) {
  static constexpr ext_idle_notification_v1_listener kListener = {
      [](void* data, ext_idle_notification_v1*) { setIdle(data); },
      [](void* data, ext_idle_notification_v1*) { setBusy(data); }};
  auto* notifier = connection.bind<ext_idle_notifier_v1>(ext_idle_notifier_v1_interface);
  if (!notifier) return {};
  auto* notice = ext_idle_notifier_v1_get_idle_notification(notifier, kFirstNoticeMilliseconds, seat);
  ext_idle_notification_v1_add_listener(notice, &kListener, &since);
  return [=] {
    ext_idle_notification_v1_destroy(notice);
    ext_idle_notifier_v1_destroy(notifier);
  };
}

/// The same with older compositors.
Release followOlder(WaylandConnection& connection, wl_seat* seat, IdleSince& since) {
  static constexpr org_kde_kwin_idle_timeout_listener kListener = {
      [](void* data, org_kde_kwin_idle_timeout*) { setIdle(data); },
      [](void* data, org_kde_kwin_idle_timeout*) { setBusy(data); }};
  auto* notifier = connection.bind<org_kde_kwin_idle>(org_kde_kwin_idle_interface);
  if (!notifier) return {};
  auto* notice = org_kde_kwin_idle_get_idle_timeout(notifier, seat, kFirstNoticeMilliseconds);
  org_kde_kwin_idle_timeout_add_listener(notice, &kListener, &since);
  return [=] {
    org_kde_kwin_idle_timeout_release(notice);
    org_kde_kwin_idle_destroy(notifier);
  };
}

class WaylandInputIdle final : public InputIdle {
 public:
  WaylandInputIdle(std::unique_ptr<WaylandConnection> connection, wl_seat* seat)
      : connection_(std::move(connection)), seat_(seat), release_(follow(*connection_, seat, since_)) {
    if (!release_) release_ = followOlder(*connection_, seat, since_);
    connection_->send();
  }
  WaylandInputIdle(const WaylandInputIdle&) = delete;
  WaylandInputIdle& operator=(const WaylandInputIdle&) = delete;
  ~WaylandInputIdle() override {
    if (release_) release_();
    wl_seat_destroy(seat_);
    connection_->send();
  }

  bool works() const { return static_cast<bool>(release_); }

  double secondsSinceInput() override {
    connection_->handleArrived();
    return since_ ? std::chrono::duration<double>(Clock::now() - *since_).count() : 0;
  }

 private:
  std::unique_ptr<WaylandConnection> connection_;
  wl_seat* seat_;
  IdleSince since_;
  Release release_;
};

}  // namespace

std::unique_ptr<InputIdle> makeWaylandInputIdle() {
  auto connection = WaylandConnection::open();
  auto* seat = connection ? connection->bind<wl_seat>(wl_seat_interface) : nullptr;
  if (!seat) return nullptr;
  auto idle = std::make_unique<WaylandInputIdle>(std::move(connection), seat);
  return idle->works() ? std::move(idle) : nullptr;
}

}  // namespace orvalle::platform::linuxos
