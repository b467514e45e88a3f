#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/neighbours.h"
#include "app/overlay.h"
#include "base/liveness.h"
#include "link/config.h"
#include "link/snapshot.h"
#include "link/web_address.h"
#include "platform/platform.h"
#include "web/finestra.h"

namespace orvalle::app {

/// The shell: holds the session's latest state, shows it in the status item, its menu and the overlay, and
/// carries out what the menus ask. Owns every long-lived object of the program.
class Controller : public platform::ApplicationDelegate, private platform::SessionDelegate {
 public:
  /// Makes everything, shows nothing. What is passed by reference must outlive this.
  Controller(const platform::Platform& platform, const link::WebAddress& address, const link::Config& config,
             const web::Services& services, Neighbours neighbours);
  Controller(const Controller&) = delete;
  Controller& operator=(const Controller&) = delete;
  ~Controller() override;

  /// A session is in progress and its state is to be trusted: received less than 60 seconds ago, from the
  /// page or over a connected channel.
  bool live() const;
  /// Minutes left as of now: while live, the time since the state arrived is taken off. Negative past the
  /// planned end.
  double rimanenteVivo() const;

  void applicationDidFinishLaunching() override;
  void applicationWillTerminate() override;
  bool applicationShouldTerminateAfterLastWindowClosed() override { return false; }
  bool applicationShouldHandleReopen(bool hasVisibleWindows) override;
  /// Each link by itself, in order; what is none of ours is left alone.
  void applicationOpen(const std::vector<std::string>& urls) override;

  /// The actions that menu items name.
  bool responds(std::string_view action) const override;
  void perform(std::string_view action, platform::MenuItem& sender) override;

 private:
  struct Action;
  static const Action* findAction(std::string_view name);

  void buildStatusMenu();
  void installCallbacks();
  void startTimers();
  void receive(const link::Snapshot& snapshot);
  void checkInactivity();
  /// Seconds since the user was last at work.
  double fermoDa() const;

  void willSleep() override;
  void didWake() override;
  void didLock() override;
  void didUnlock() override;
  void updateDiary();

  void render();
  void renderTasks(bool live);

  void route(const std::string& command, const std::optional<std::string>& id);
  void openApp(platform::MenuItem& sender);
  void showPair(platform::MenuItem& sender);
  void cercaAggiornamenti(platform::MenuItem& sender);
  void stop(platform::MenuItem& sender);
  void plus5(platform::MenuItem& sender);
  void minus5(platform::MenuItem& sender);
  void toggleTask(platform::MenuItem& sender);
  void toggleOverlay(platform::MenuItem& sender);
  void sessioneVeloce(platform::MenuItem& sender);
  void sessioneDaFuori(platform::MenuItem& sender);
  void naviga(std::string_view path);

  const platform::Platform& platform_;
  const link::Config& config_;
  const web::Services& services_;
  Neighbours neighbours_;

  // In the order in which they come into being.
  std::unique_ptr<platform::StatusItem> item_;
  link::Snapshot snapshot_;
  bool connected_ = false;
  /// When the latest state arrived; before the first one, as long ago as can be told.
  platform::WallTime lastState_ = platform::WallTime::min();
  base::Subscription watchdog_;
  std::unique_ptr<link::Channel> channel_;
  Overlay overlay_;
  std::unique_ptr<link::Pairing> pair_;
  web::Finestra finestra_;
  std::shared_ptr<platform::MenuItem> openItem_;
  std::shared_ptr<platform::MenuItem> pairItem_;
  std::shared_ptr<platform::MenuItem> stopItem_;
  std::shared_ptr<platform::MenuItem> plusItem_;
  std::shared_ptr<platform::MenuItem> minusItem_;
  std::shared_ptr<platform::MenuItem> statusItem_;
  std::shared_ptr<platform::MenuItem> tasksHeader_;
  std::vector<std::shared_ptr<platform::MenuItem>> taskItems_;
  std::shared_ptr<platform::Menu> menu_;
  std::shared_ptr<platform::MenuItem> overlayItem_;
  bool overlayOn_ = true;
  /// The page has pushed a state; never false again.
  bool statoDalPonte_ = false;

  bool asleep_ = false;
  /// Since when the screen has been locked, if it is.
  std::optional<platform::WallTime> lockedSince_;

  base::Subscription countdown_;
  base::Subscription inactivity_;
  base::Liveness liveness_;
};

}  // namespace orvalle::app
