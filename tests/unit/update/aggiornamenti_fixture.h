#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "link/web_address.h"
#include "platform/memory/memory_platform.h"
#include "update/aggiornamenti.h"

namespace orvalle::update {

using Texts = std::vector<std::string>;

/// The updates of a program of build 5 and version 0.5.0, at home on https://app.example/.
class AggiornamentiFixture : public ::testing::Test {
 protected:
  AggiornamentiFixture() {
    system.environment.variables["ORVALLE_APP_URL"] = "https://app.example/";
    system.bundle.versionText = "5";
    system.bundle.shortVersionText = "0.5.0";
  }

  /// The last request.
  platform::memory::HttpRequest& request() {
    return *system.http.requests.at(system.http.requests.size() - 1);
  }
  /// The server answers the last request.
  void answer(const std::optional<std::string>& body) { request().gotBody(body); }
  static std::string manifest(std::int64_t build, const std::string& more = "") {
    return R"({"versione":"2.0","build":)" + std::to_string(build) + R"(,"url":"/x.zip")" + more + "}";
  }
  /// What is on the screen, line by line; empty when nothing is.
  Texts shown() const {
    if (system.alerts.waiting.empty()) return {};
    const auto& alert = system.alerts.waiting.front().alert;
    Texts lines{alert.message, alert.informative};
    lines.insert(lines.end(), alert.buttons.begin(), alert.buttons.end());
    return lines;
  }
  /// What `cerca` answers to what the server says; "?" without an answer.
  std::string cerca(const std::optional<std::string>& body) {
    std::string reply = "?";
    aggiornamenti.cerca([&](const std::string& text) { reply = text; });
    answer(body);
    return reply;
  }

  platform::memory::MemoryPlatform system;
  platform::Platform platform = system.platform();
  link::WebAddress address{system.environment, system.defaults, "https://default.example/"};
  Aggiornamenti aggiornamenti{platform, address};
};

}  // namespace orvalle::update
