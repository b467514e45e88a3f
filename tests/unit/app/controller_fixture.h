#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "app/controller.h"
#include "link/config.h"
#include "link/web_address.h"
#include "platform/memory/memory_platform.h"
#include "tests/unit/web/memory_services.h"

namespace orvalle::app {

using Texts = std::vector<std::string>;

/// What was asked of a channel; outlives it.
struct ChannelRecord {
  link::Channel* channel = nullptr;
  int connects = 0;
  Texts commands;
  /// Looks on at every call.
  std::function<void()> watching = [] {};
};

class FakeChannel : public link::Channel {
 public:
  FakeChannel(ChannelRecord& record, platform::memory::Journal& journal)
      : record_(record), journal_(journal) {
    record_.channel = this;
    journal_.push_back("channel made");
  }
  ~FakeChannel() override { record_.channel = nullptr; }
  void connect() override {
    ++record_.connects;
    journal_.push_back("channel connects");
    record_.watching();
  }
  void command(const std::string& word, const std::optional<std::string>& id) override {
    record_.commands.push_back(id ? word + " " + *id : word);
    record_.watching();
  }

 private:
  ChannelRecord& record_;
  platform::memory::Journal& journal_;
};

class FakePairing : public link::Pairing {
 public:
  FakePairing(FakePairing*& self, platform::memory::Journal& journal) : self_(self), journal_(journal) {
    self_ = this;
    journal_.push_back("pairing made");
  }
  ~FakePairing() override { self_ = nullptr; }
  void show() override { journal_.push_back("pairing shown"); }

 private:
  FakePairing*& self_;
  platform::memory::Journal& journal_;
};

/// A controller with all its neighbours on a desktop in memory, at home on https://app.example/.
class ControllerFixture : public ::testing::Test {
 protected:
  ControllerFixture();

  void pairUp();
  /// Makes the controller, after the one before it is gone.
  void make();
  void launch();
  /// Starts and lets the page arrive.
  void launchWithPage();

  /// Running, 5 of 25 minutes gone, with two tasks of which the second is done.
  static link::Snapshot session(double remainingMin = 20);
  void pushFromPage(const link::Snapshot& snapshot);
  void pushFromChannel(const link::Snapshot& snapshot) { channel.channel->onState(snapshot); }
  /// The channel connects and brings a session.
  void goLive(const link::Snapshot& snapshot = session());

  const platform::Menu& menu() const { return *system.statusBar.state.menu; }
  /// The status menu's row with this title, separators and hidden rows included; the test fails without one.
  platform::MenuItem& row(const std::string& title) const;
  /// The titles of the rows between the header of the tasks and the separator after them.
  Texts taskTitles() const;
  std::string statusLine() const { return menu().items().at(0)->title(); }
  const platform::StatusFace& face() const { return system.statusBar.state.face; }
  platform::memory::WebWindowState& window() { return *system.webWindows.made.back(); }
  const platform::memory::PanelState& panel() const { return *system.panels.made.back(); }
  /// Chooses an item as the user does.
  void choose(platform::MenuItem& item) { item.choose(system.application.responderChain()); }
  void choose(const std::string& title) { choose(row(title)); }
  /// The row of the menu bar with this action.
  std::shared_ptr<platform::MenuItem> barItem(const std::string& action) const;
  /// The expression by which the page gets a command; the argument as script text.
  static std::string commandScript(const std::string& word, const std::string& argument = "null");

  platform::memory::MemoryPlatform system;
  platform::Platform platform = system.platform();
  link::WebAddress address{system.environment, system.defaults, "https://default.example/"};
  link::Config config{system.defaults};
  web::MemoryServices services{platform};
  ChannelRecord channel;
  FakePairing* pairing = nullptr;
  double idleSeconds = 0;
  Neighbours neighbours;
  std::unique_ptr<Controller> controller;
};

}  // namespace orvalle::app
