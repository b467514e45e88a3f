#include "tests/unit/app/controller_fixture.h"

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>

#include <stdexcept>

#include "base/json.h"

namespace orvalle::app {

ControllerFixture::ControllerFixture() {
  system.environment.variables["ORVALLE_APP_URL"] = "https://app.example/";
  const auto note = [this](std::string word) {
    return [this, word = std::move(word)] { system.journal.push_back(word); };
  };
  neighbours.makeChannel = [this] { return std::make_unique<FakeChannel>(channel, system.journal); };
  neighbours.makePairing = [this] { return std::make_unique<FakePairing>(pairing, system.journal); };
  neighbours.avviaNotifiche = note("notifiche avviate");
  neighbours.avviaAggiornamenti = note("aggiornamenti avviati");
  neighbours.avviaAttivita = note("attività avviata");
  neighbours.fermaAttivita = note("attività ferma");
  neighbours.controllaAggiornamenti = note("controllo aggiornamenti");
  neighbours.fermoDa = [this] { return idleSeconds; };
  neighbours.sogliaSecondi = 300;
}

void ControllerFixture::pairUp() {
  config.setUrl("https://project.example");
  config.setAnonKey("eyJ");
  config.setChannelKey("0123456789abcdef0123456789abcdef");
}

void ControllerFixture::make() {
  controller.reset();
  controller = std::make_unique<Controller>(platform, address, config, services, neighbours);
}

void ControllerFixture::launch() {
  make();
  controller->applicationDidFinishLaunching();
}

void ControllerFixture::launchWithPage() {
  launch();
  window().commit();
}

link::Snapshot ControllerFixture::session(double remainingMin) {
  return {true, false, 5, remainingMin, 25, "Tesi", {}, {{"t1", "Scrivere", false}, {"t2", "Leggere", true}}};
}

void ControllerFixture::pushFromPage(const link::Snapshot& snapshot) {
  boost::json::array tasks;
  for (const auto& task : snapshot.tasks) {
    tasks.push_back(boost::json::object{{"id", task.id}, {"title", task.title}, {"done", task.done}});
  }
  boost::json::object body{{"running", snapshot.running},       {"isBreak", snapshot.isBreak},
                           {"elapsedMin", snapshot.elapsedMin}, {"remainingMin", snapshot.remainingMin},
                           {"plannedMin", snapshot.plannedMin}, {"projectTitle", snapshot.projectTitle},
                           {"tasks", std::move(tasks)}};
  if (snapshot.origin) body["origin"] = *snapshot.origin;
  window().post(base::writeJson(body).value());
}

void ControllerFixture::goLive(const link::Snapshot& snapshot) {
  channel.channel->onConnection(true);
  pushFromChannel(snapshot);
}

platform::MenuItem& ControllerFixture::row(const std::string& title) const {
  for (const auto& item : menu().items()) {
    if (item->title() == title && !item->isSeparator()) return *item;
  }
  throw std::runtime_error("no row \"" + title + "\"");
}

Texts ControllerFixture::taskTitles() const {
  Texts titles;
  for (auto index = menu().indexOf(row("Task della roadmap")).value() + 1;; ++index) {
    const auto& item = *menu().items().at(index);
    if (item.isSeparator()) return titles;
    titles.push_back(item.title());
  }
}

std::shared_ptr<platform::MenuItem> ControllerFixture::barItem(const std::string& action) const {
  for (const auto& opener : system.mainMenu.bar->items()) {
    for (const auto& item : opener->submenu()->items()) {
      if (item->action() == action) return item;
    }
  }
  throw std::runtime_error("no item for " + action);
}

std::string ControllerFixture::commandScript(const std::string& word, const std::string& argument) {
  return "window.__orvalleComando && window.__orvalleComando('" + word + "', " + argument + ")";
}

}  // namespace orvalle::app
