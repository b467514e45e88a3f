#include "platform/processes.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "platform/linux/child_process.h"
#include "platform/linux/display_choice.h"
#include "platform/linux/factory.h"
#include "platform/linux/glib_ptr.h"

namespace orvalle::platform::linuxos {
namespace {

/// Waits for the end of its input, which comes with the end of our process, and becomes the program.
constexpr const char* kWait = "read -r nothing; exec \"$0\" </dev/null";

/// What somebody may be reading to its end, a pipe or a terminal, must not be kept open by the next process.
/// A log goes on.
bool isLog(int descriptor) {
  struct stat status {};
  return ::fstat(descriptor, &status) == 0 && !S_ISFIFO(status.st_mode) && !::isatty(descriptor);
}

class DetachedProcesses final : public Processes {
 public:
  DetachedProcesses() = default;
  DetachedProcesses(const DetachedProcesses&) = delete;
  DetachedProcesses& operator=(const DetachedProcesses&) = delete;

  bool startAfterExit(const std::filesystem::path& bundle) override {
    if (arranged_) return true;
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) return false;
    // The other end stays open, in this process only, until it ends, however it ends.
    arranged_ = !start({"/bin/sh", "-c", kWait, (bundle / "AppRun").string()}, ends[0]);
    ::close(ends[0]);
    if (!arranged_) ::close(ends[1]);
    return arranged_;
  }

  base::Subscription run(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                         std::function<void(const ProcessOutcome&)> done) override {
    return runChild(program, arguments, std::move(done));
  }

  std::optional<std::string> startDetached(const std::filesystem::path& program,
                                           const std::vector<std::string>& arguments) override {
    std::vector<std::string> words{program.string()};
    words.insert(words.end(), arguments.begin(), arguments.end());
    return start(words, -1);
  }

  int ownId() const override { return ::getpid(); }

 private:
  /// Without an input, the program has nothing to read. The reason when it could not be started.
  static std::optional<std::string> start(std::vector<std::string> words, int input) {
    std::vector<char*> arguments;
    for (auto& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    const auto context = GObjectPtr<GAppLaunchContext>::adopt(g_app_launch_context_new());
    hideChoices(context.get());
    char** environment = g_app_launch_context_get_environment(context.get());
    const int null = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    GError* error = nullptr;
    g_spawn_async_with_pipes_and_fds(
        "/", arguments.data(), environment, G_SPAWN_DEFAULT, [](gpointer) { ::setsid(); }, nullptr, input,
        isLog(STDOUT_FILENO) ? STDOUT_FILENO : null, isLog(STDERR_FILENO) ? STDERR_FILENO : null, nullptr,
        nullptr, 0, nullptr, nullptr, nullptr, nullptr, &error);
    if (null >= 0) ::close(null);
    g_strfreev(environment);
    const GlibPtr<GError> failure(error);
    if (!failure) return {};
    return failure->message;
  }

  bool arranged_ = false;
};

}  // namespace

std::unique_ptr<Processes> makeProcesses() {
  return std::make_unique<DetachedProcesses>();
}

}  // namespace orvalle::platform::linuxos
