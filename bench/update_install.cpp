// From a downloaded package to the start of the swap: update_install BUNDLE ARCHIVE FOLDER prints the
// nanoseconds that the installed BUNDLE takes to list, unpack and verify it in FOLDER.

#include <glib.h>

#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

#include "platform/linux/factory.h"
#include "platform/memory/memory_platform.h"
#include "update/installazione.h"

namespace {

namespace fs = std::filesystem;
namespace native = orvalle::platform::linuxos;

/// The programs of this machine, but for the script at the end.
class AllButTheSwap : public orvalle::platform::memory::MemoryProcesses {
 public:
  orvalle::base::Subscription run(
      const fs::path& program, const std::vector<std::string>& arguments,
      std::function<void(const orvalle::platform::ProcessOutcome&)> done) override {
    return native_->run(program, arguments, std::move(done));
  }

 private:
  std::unique_ptr<orvalle::platform::Processes> native_ = native::makeProcesses();
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) return 2;
  orvalle::platform::memory::MemoryPlatform system;
  system.userFolders.temporaryFolder = argv[3];
  const auto bundle = native::makeBundle(fs::path(argv[1]) / "bin/orvalle");
  const auto tools = native::makePackageTools(*bundle);
  AllButTheSwap processes;
  const auto platform =
      system.platform({.bundle = bundle.get(), .processes = &processes, .packageTools = tools.get()});
  const orvalle::link::WebAddress address(system.environment, system.defaults, "https://app.example/");
  orvalle::update::Installazione installation(platform, address);

  const auto begin = std::chrono::steady_clock::now();
  installation.installa(argv[2], "2.0");
  while (processes.detached.empty() && system.alerts.waiting.empty()) g_main_context_iteration(nullptr, TRUE);
  const auto taken = std::chrono::steady_clock::now() - begin;
  if (!system.alerts.waiting.empty()) {
    std::fprintf(stderr, "%s\n", system.alerts.waiting.front().alert.informative.c_str());
    return 1;
  }
  std::printf("%lld\n",
              static_cast<long long>(std::chrono::duration_cast<std::chrono::nanoseconds>(taken).count()));
}
