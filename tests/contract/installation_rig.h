#pragma once

#include <cstdlib>
#include <functional>
#include <memory>
#include <vector>

#include "platform/linux/factory.h"
#include "platform/memory/memory_platform.h"
#include "tests/contract/loop.h"
#include "tests/contract/signed_bundle.h"
#include "update/installazione.h"

namespace orvalle::contract {

namespace fs = std::filesystem;

/// The programs of this machine, but for the script at the end, which is kept and not started.
class AllButTheSwap : public platform::Processes {
 public:
  bool startAfterExit(const fs::path&) override { return false; }
  base::Subscription run(const fs::path& program, const std::vector<std::string>& arguments,
                         std::function<void(const platform::ProcessOutcome&)> done) override {
    return native_->run(program, arguments, std::move(done));
  }
  std::optional<std::string> startDetached(const fs::path&,
                                           const std::vector<std::string>& arguments) override {
    swap = arguments;
    return {};
  }
  int ownId() const override { return native_->ownId(); }

  std::vector<std::string> swap;

 private:
  std::unique_ptr<platform::Processes> native_ = platform::linuxos::makeProcesses();
};

/// An installed bundle, a newer one, and the real tools; the screen is the test's.
class Installation : public SignedBundle {
 protected:
  Installation() {
    write(app / "bin/orvalle-codesign", std::string("#!/bin/sh\nexec '") + ORVALLE_CODESIGN + "' \"$@\"\n",
          0755);
    EXPECT_EQ(platform::linuxos::signBundle(app), std::nullopt);
    makeBundle(newer, "nuovo");
    fs::create_directory(outside);
    system.userFolders.temporaryFolder = root / "tmp";
    ::setenv("ORVALLE_OUTSIDE", outside.c_str(), 1);
    ::setenv("ORVALLE_INSTALLED", app.c_str(), 1);
  }
  void makePackage(const std::string& kind) const {
    fs::remove(archive);
    const auto command = std::string("/usr/bin/python3 -W ignore '") + ORVALLE_MAKE_PACKAGE + "' " + kind +
                         " '" + newer.string() + "' '" + archive.string() + "'";
    EXPECT_EQ(std::system(command.c_str()), 0) << command;
  }
  /// The message and the reason of the alert that an installation ends with; nothing when the swap has begun.
  std::vector<std::string> outcome() {
    const auto ended = [&] {
      return !processes.swap.empty() ||
             (!system.alerts.waiting.empty() && !system.alerts.waiting.front().progress);
    };
    EXPECT_TRUE(runUntil(ended, std::chrono::seconds(60)));
    if (system.alerts.waiting.empty()) return {};
    const auto& alert = system.alerts.waiting.front().alert;
    return {alert.message, alert.informative};
  }
  /// Installs a package of this kind.
  std::vector<std::string> install(const std::string& kind) {
    makePackage(kind);
    system.alerts.waiting.clear();
    processes.swap.clear();
    installation.installa(archive, "2.0");
    return outcome();
  }
  /// It is refused with this message, and everything is as before.
  void expectRefused(const std::string& kind, const std::string& message, const std::string& reason = "") {
    SCOPED_TRACE(kind);
    expectRefused([&] { return install(kind); }, message, reason);
  }
  void expectRefused(const std::function<std::vector<std::string>()>& attempt, const std::string& message,
                     const std::string& reason) {
    const auto before = everything(root / "installata");
    const auto said = attempt();
    ASSERT_EQ(said.size(), 2u);
    EXPECT_EQ(said[0], message) << said[1];
    EXPECT_NE(said[1].find(reason), std::string::npos) << said[1];
    EXPECT_EQ(everything(root / "installata"), before);
    EXPECT_TRUE(fs::is_empty(outside));
    EXPECT_TRUE(!fs::exists(root / "tmp") || fs::is_empty(root / "tmp"));
    EXPECT_EQ(system.application.terminations, 0);
  }

  fs::path newer = root / "nuova" / "Orvalle.app";
  fs::path archive = root / "pacchetto.zip";
  fs::path outside = root / "fuori";
  platform::memory::MemoryPlatform system;
  std::unique_ptr<platform::Bundle> bundle = platform::linuxos::makeBundle(app / "bin/orvalle");
  std::unique_ptr<platform::PackageTools> tools = platform::linuxos::makePackageTools(*bundle);
  AllButTheSwap processes;
  std::unique_ptr<platform::HttpClient> http = platform::linuxos::makeHttpClient();
  platform::Platform platform = system.platform(
      {.bundle = bundle.get(), .processes = &processes, .http = http.get(), .packageTools = tools.get()});
  link::WebAddress address{system.environment, system.defaults, "https://app.example/"};
  update::Installazione installation{platform, address};
};

inline constexpr char kFailed[] = "Aggiornamento non riuscito.";
inline constexpr char kOther[] = "Pacchetto non riconosciuto.";
inline constexpr char kNone[] = "Pacchetto incompleto.";

}  // namespace orvalle::contract
