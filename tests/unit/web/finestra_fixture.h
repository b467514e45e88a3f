#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "link/web_address.h"
#include "platform/memory/memory_platform.h"
#include "tests/unit/web/memory_services.h"
#include "web/finestra.h"

namespace orvalle::web {

/// A main window on a desktop in memory, at home on https://app.example/.
class FinestraFixture : public ::testing::Test {
 protected:
  FinestraFixture() { setHome("https://app.example/"); }

  void setHome(const std::string& url) { system.environment.variables["ORVALLE_APP_URL"] = url; }
  platform::memory::WebWindowState& window() { return *system.webWindows.made.at(0); }
  /// Opens the window and lets its page arrive.
  void showPage() {
    finestra->mostra();
    window().commit();
    window().finish();
    window().scripts.clear();
  }
  void showOfflinePage() {
    showPage();
    window().fail("niente rete");
  }

  platform::memory::MemoryPlatform system;
  platform::Platform platform = system.platform();
  link::WebAddress address{system.environment, system.defaults, "https://default.example/"};
  MemoryServices services{platform};
  std::unique_ptr<Finestra> finestra = std::make_unique<Finestra>(platform, address, services);
};

using Texts = std::vector<std::string>;

}  // namespace orvalle::web
