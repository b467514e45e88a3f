#include "app/controller.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <utility>
#include <variant>

#include "app/deep_links.h"
#include "app/display.h"
#include "app/menus.h"

namespace orvalle::app {
namespace {

using namespace std::chrono_literals;
using platform::Menu;
using platform::MenuItem;

constexpr char kOverlayOnKey[] = "overlayOn";
constexpr char kAddressKey[] = "appUrl";
constexpr auto kTrustedAge = 60s;

std::shared_ptr<MenuItem> makeItem(std::string title, const char* action, const char* key = "") {
  return std::make_shared<MenuItem>(std::move(title), action, key);
}

/// Time between two moments, however far apart: the distant past lies further back than a duration can tell.
platform::WallTime::duration age(platform::WallTime now, platform::WallTime then) {
  if (then == platform::WallTime::min()) return platform::WallTime::duration::max();
  return now - then;
}

}  // namespace

Controller::Controller(const platform::Platform& platform, const link::WebAddress& address,
                       const link::Config& config, const web::Services& services, Neighbours neighbours)
    : platform_(platform),
      config_(config),
      services_(services),
      neighbours_(std::move(neighbours)),
      item_(platform.statusBar.makeItem()),
      channel_(neighbours_.makeChannel ? neighbours_.makeChannel() : nullptr),
      overlay_(platform),
      pair_(neighbours_.makePairing ? neighbours_.makePairing() : nullptr),
      finestra_(platform, address, services),
      openItem_(makeItem("Apri Orvalle", "openApp", "o")),
      pairItem_(makeItem("Abbina…", "showPair")),
      stopItem_(makeItem("Ferma la sessione", "stop")),
      plusItem_(makeItem("Allunga di 5 minuti", "plus5")),
      minusItem_(makeItem("Accorcia di 5 minuti", "minus5")),
      statusItem_(makeItem("", "")),
      tasksHeader_(makeItem("Task della roadmap", "")),
      menu_(std::make_shared<Menu>()),
      overlayItem_(makeItem(overlayTitle(platform.panels.canFloat()), "toggleOverlay")),
      overlayOn_(platform.defaults.boolean(kOverlayOnKey).value_or(true)) {}

Controller::~Controller() {
  platform_.sessionWatch.setDelegate(nullptr);
}

bool Controller::live() const {
  return snapshot_.running && age(platform_.clock.now(), lastState_) < kTrustedAge &&
         (connected_ || statoDalPonte_);
}

double Controller::rimanenteVivo() const {
  if (!live()) return snapshot_.remainingMin;
  const std::chrono::duration<double, std::ratio<60>> elapsed = age(platform_.clock.now(), lastState_);
  return snapshot_.remainingMin - std::max(elapsed.count(), 0.0);
}

void Controller::applicationDidFinishLaunching() {
  const auto menus = buildMainMenus(*this, platform_.panels.canFloat());
  platform_.mainMenu.show(menus.bar, menus.windows, menus.help);
  for (const auto& avvia :
       {neighbours_.avviaNotifiche, neighbours_.avviaAggiornamenti, neighbours_.avviaAttivita}) {
    if (avvia) avvia();
  }
  buildStatusMenu();
  installCallbacks();
  finestra_.mostra();
  render();
  if (channel_ && config_.isReady()) channel_->connect();
  startTimers();
  platform_.sessionWatch.setDelegate(this);
}

void Controller::buildStatusMenu() {
  statusItem_->setEnabled(false);
  tasksHeader_->setEnabled(false);
  for (const auto& item :
       {statusItem_, openItem_, pairItem_, stopItem_, plusItem_, minusItem_, overlayItem_}) {
    item->setTarget(this);
  }
  overlayItem_->setChecked(overlayOn_ && platform_.panels.canFloat());

  menu_->replace(0, 0,
                 {statusItem_, MenuItem::separator(), openItem_, overlayItem_, pairItem_,
                  MenuItem::separator(), stopItem_, plusItem_, minusItem_, MenuItem::separator(),
                  tasksHeader_, MenuItem::separator(), makeItem("Cerca aggiornamenti…", "cercaAggiornamenti"),
                  std::make_shared<MenuItem>("Esci", std::string(platform::kActionTerminate), "q")});
  item_->setMenu(menu_);
}

void Controller::installCallbacks() {
  if (channel_) {
    channel_->onState = liveness_.guard([this](const link::Snapshot& snapshot) {
      receive(snapshot);
      // Only the user's own channel may move the web application: the page must not choose where it comes
      // from.
      if (snapshot.origin && !snapshot.origin->empty()) platform_.defaults.set(kAddressKey, *snapshot.origin);
      render();
    });
    channel_->onConnection = liveness_.guard([this](bool connected) {
      connected_ = connected;
      render();
    });
  }
  if (pair_) {
    pair_->onSaved = liveness_.guard([this] {
      if (channel_) channel_->connect();
    });
  }
  services_.notifiche.onSelezionata = liveness_.guard([this] { finestra_.mostra(); });
  finestra_.onState = liveness_.guard([this](const link::Snapshot& snapshot) {
    receive(snapshot);
    statoDalPonte_ = true;
    render();
  });
}

void Controller::willSleep() {
  asleep_ = true;
  updateDiary();
}

void Controller::didWake() {
  asleep_ = false;
  updateDiary();
  // What was left of the session before is not what is left now.
  render();
  // The old connection may have died without a word.
  if (channel_ && config_.isReady()) channel_->connect();
}

void Controller::didLock() {
  lockedSince_ = platform_.clock.now();
  updateDiary();
}

void Controller::didUnlock() {
  lockedSince_.reset();
  updateDiary();
}

void Controller::updateDiary() {
  const auto& change = asleep_ || lockedSince_ ? neighbours_.sospendiAttivita : neighbours_.riprendiAttivita;
  if (change) change();
}

double Controller::fermoDa() const {
  const double idle = neighbours_.fermoDa();
  if (!lockedSince_) return idle;
  // Whatever is typed on the lock screen is no work.
  return std::max(idle, std::chrono::duration<double>(platform_.clock.now() - *lockedSince_).count());
}

void Controller::receive(const link::Snapshot& snapshot) {
  snapshot_ = snapshot;
  lastState_ = platform_.clock.now();
}

void Controller::startTimers() {
  auto& loop = platform_.loop;
  countdown_ = loop.every(1s, liveness_.guard([this] {
    if (live()) render();
  }));
  watchdog_ = loop.every(3s, liveness_.guard([this] { render(); }));
  inactivity_ = loop.every(30s, liveness_.guard([this] { checkInactivity(); }));
}

void Controller::checkInactivity() {
  if (!snapshot_.running || !neighbours_.fermoDa) return;
  const double idle = fermoDa();
  if (idle >= neighbours_.sogliaSecondi) {
    finestra_.comanda("inattivo", std::to_string(static_cast<std::int64_t>(idle)));
  }
}

void Controller::applicationWillTerminate() {
  if (neighbours_.fermaAttivita) neighbours_.fermaAttivita();
}

bool Controller::applicationShouldHandleReopen(bool hasVisibleWindows) {
  if (!hasVisibleWindows) finestra_.mostra();
  return true;
}

void Controller::applicationOpen(const std::vector<std::string>& urls) {
  for (const auto& url : urls) {
    const auto link = readDeepLink(url, finestra_.indirizzo());
    if (!link) continue;
    if (const auto* google = std::get_if<GoogleReturn>(&*link)) {
      finestra_.mostra();
      finestra_.consegna("vai", google->path);
    } else {
      finestra_.vai(std::get<SignIn>(*link).address);
    }
  }
}

void Controller::render() {
  const bool isLive = live();
  const auto display = describe({snapshot_, isLive, rimanenteVivo(), config_.isReady(), connected_});

  if (item_->hasButton()) item_->setFace(display.face);
  statusItem_->setTitle(display.statusLine);
  for (const auto& item : {stopItem_, plusItem_, minusItem_}) item->setEnabled(isLive);
  renderTasks(isLive);
  overlay_.update(display.overlayText, display.over);
  overlay_.show(overlayOn_ && isLive && platform_.panels.canFloat());
  finestra_.intitola(item_->isShown() ? "Orvalle" : display.windowTitle);
}

void Controller::renderTasks(bool live) {
  std::vector<std::shared_ptr<MenuItem>> items;
  if (live) {
    items.reserve(snapshot_.tasks.size());
    for (const auto& task : snapshot_.tasks) {
      auto item = std::make_shared<MenuItem>(task.title, "toggleTask");
      item->setTarget(this);
      item->setChecked(task.done);
      item->setRepresentedObject(task.id);
      items.push_back(std::move(item));
    }
  }
  tasksHeader_->setHidden(items.empty());
  if (const auto header = menu_->indexOf(*tasksHeader_)) {
    menu_->replace(*header + 1, taskItems_.size(), items);
    taskItems_ = std::move(items);
  }
}

}  // namespace orvalle::app
