// What the menus can ask of the controller.

#include <algorithm>
#include <array>

#include "app/controller.h"

namespace orvalle::app {

struct Controller::Action {
  std::string_view name;
  void (Controller::*perform)(platform::MenuItem& sender) = nullptr;
  /// For actions without an operation of their own: the page's route that they go to.
  std::string_view path = {};
};

const Controller::Action* Controller::findAction(std::string_view name) {
  static constexpr std::array kActions = {
      Action{"openApp", &Controller::openApp},
      Action{"showPair", &Controller::showPair},
      Action{"cercaAggiornamenti", &Controller::cercaAggiornamenti},
      Action{"stop", &Controller::stop},
      Action{"plus5", &Controller::plus5},
      Action{"minus5", &Controller::minus5},
      Action{"toggleTask", &Controller::toggleTask},
      Action{"toggleOverlay", &Controller::toggleOverlay},
      Action{"sessioneVeloce", &Controller::sessioneVeloce},
      Action{"sessioneDaFuori", &Controller::sessioneDaFuori},
      Action{"vaiFocus", nullptr, "/"},
      Action{"vaiSprint", nullptr, "/sprint"},
      Action{"vaiCalendario", nullptr, "/calendar"},
      Action{"vaiMappa", nullptr, "/mappa"},
      Action{"vaiBrain", nullptr, "/brain"},
      Action{"vaiProgetti", nullptr, "/projects"},
      Action{"vaiObiettivi", nullptr, "/goals"},
      Action{"vaiInbox", nullptr, "/inbox"},
      Action{"vaiOggi", nullptr, "/today"},
      Action{"vaiReview", nullptr, "/review"},
      Action{"vaiReset", nullptr, "/sunday"},
      Action{"vaiSfida", nullptr, "/challenge"},
      Action{"vaiOrganizzazione", nullptr, "/org"},
      Action{"vaiImpostazioni", nullptr, "/settings"},
      Action{"vaiScorciatoie", nullptr, "/settings?sezione=scorciatoie"},
  };
  const auto found =
      std::find_if(kActions.begin(), kActions.end(), [&](const Action& a) { return a.name == name; });
  return found == kActions.end() ? nullptr : &*found;
}

bool Controller::responds(std::string_view name) const {
  const auto* action = findAction(name);
  if (!action) return false;
  if (action->perform == &Controller::showPair) return pair_ != nullptr;
  if (action->perform == &Controller::toggleOverlay) return platform_.panels.canFloat();
  if (action->perform == &Controller::cercaAggiornamenti)
    return neighbours_.controllaAggiornamenti != nullptr;
  return true;
}

void Controller::perform(std::string_view name, platform::MenuItem& sender) {
  const auto* action = responds(name) ? findAction(name) : nullptr;
  if (!action) return;
  if (action->perform) {
    (this->*action->perform)(sender);
  } else {
    naviga(action->path);
  }
}

void Controller::route(const std::string& command, const std::optional<std::string>& id) {
  if (!finestra_.comanda(command, id) && channel_) channel_->command(command, id);
}

void Controller::openApp(platform::MenuItem&) {
  finestra_.mostra();
}

void Controller::showPair(platform::MenuItem&) {
  pair_->show();
}

void Controller::cercaAggiornamenti(platform::MenuItem&) {
  neighbours_.controllaAggiornamenti();
}

void Controller::stop(platform::MenuItem&) {
  route("stop", {});
  finestra_.mostra();
}

void Controller::plus5(platform::MenuItem&) {
  route("plus5", {});
}

void Controller::minus5(platform::MenuItem&) {
  route("minus5", {});
}

void Controller::toggleTask(platform::MenuItem& sender) {
  const auto id = sender.representedObject();
  if (!id) return;
  // The click shows at once; the next render brings what the session says.
  sender.setChecked(!sender.checked());
  route("task", id);
}

void Controller::toggleOverlay(platform::MenuItem&) {
  overlayOn_ = !overlayOn_;
  overlayItem_->setChecked(overlayOn_);
  platform_.defaults.set("overlayOn", overlayOn_);
  render();
}

void Controller::sessioneVeloce(platform::MenuItem&) {
  finestra_.mostra();
  finestra_.comanda("subito", "25");
}

void Controller::sessioneDaFuori(platform::MenuItem&) {
  finestra_.mostra();
  finestra_.consegna("subito", "25");
}

void Controller::naviga(std::string_view path) {
  finestra_.mostra();
  finestra_.comanda("vai", std::string(path));
}

}  // namespace orvalle::app
