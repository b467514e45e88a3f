#include "platform/linux/child_process.h"

#include <unistd.h>

#include <csignal>
#include <memory>
#include <utility>

#include "platform/linux/glib_ptr.h"

namespace orvalle::platform::linuxos {
namespace {

class Child : public std::enable_shared_from_this<Child> {
 public:
  explicit Child(std::function<void(const ProcessOutcome&)> done) : done_(std::move(done)) {}

  void start(const std::filesystem::path& program, const std::vector<std::string>& arguments) {
    const auto launcher = GObjectPtr<GSubprocessLauncher>::adopt(g_subprocess_launcher_new(
        static_cast<GSubprocessFlags>(G_SUBPROCESS_FLAGS_STDOUT_PIPE | G_SUBPROCESS_FLAGS_STDERR_MERGE)));
    g_subprocess_launcher_set_child_setup(
        launcher.get(), [](gpointer) { ::setsid(); }, nullptr, nullptr);
    const std::string path = program.string();
    std::vector<const char*> words{path.c_str()};
    for (const auto& argument : arguments) words.push_back(argument.c_str());
    words.push_back(nullptr);
    GError* error = nullptr;
    process_ =
        GObjectPtr<GSubprocess>::adopt(g_subprocess_launcher_spawnv(launcher.get(), words.data(), &error));
    const GlibPtr<GError> failure(error);
    if (failure) {
      outcome_.launchError = failure->message;
      g_idle_add(reportLater, new std::shared_ptr(shared_from_this()));
      return;
    }
    // One that has ended already has none any more.
    const char* number = g_subprocess_get_identifier(process_.get());
    if (number) group_ = static_cast<pid_t>(g_ascii_strtoll(number, nullptr, 10));
    g_subprocess_communicate_async(process_.get(), nullptr, cancellable_.get(), ended,
                                   new std::shared_ptr(shared_from_this()));
  }

  void cancel() {
    if (!std::exchange(done_, nullptr)) return;
    // As long as the process has not been waited for, nobody else can have its number.
    if (group_ && g_subprocess_get_identifier(process_.get())) ::kill(-group_, SIGKILL);
    g_cancellable_cancel(cancellable_.get());
  }

 private:
  static void ended(GObject*, GAsyncResult* result, gpointer data) {
    const std::unique_ptr<std::shared_ptr<Child>> self(static_cast<std::shared_ptr<Child>*>(data));
    (*self)->readOutcome(result);
    (*self)->report();
  }

  void readOutcome(GAsyncResult* result) {
    GBytes* bytes = nullptr;
    GError* error = nullptr;
    g_subprocess_communicate_finish(process_.get(), result, &bytes, nullptr, &error);
    const GlibPtr<GError> failure(error);
    const GlibPtr<GBytes> output(bytes);
    if (output) {
      gsize size = 0;
      const auto* text = static_cast<const char*>(g_bytes_get_data(output.get(), &size));
      if (size > 0) outcome_.output.assign(text, size);
    }
    if (failure) {
      outcome_.launchError = failure->message;
    } else if (g_subprocess_get_if_exited(process_.get())) {
      outcome_.status = g_subprocess_get_exit_status(process_.get());
    } else {
      outcome_.status = kSignalled + g_subprocess_get_term_sig(process_.get());
    }
  }

  static gboolean reportLater(gpointer data) {
    const std::unique_ptr<std::shared_ptr<Child>> self(static_cast<std::shared_ptr<Child>*>(data));
    (*self)->report();
    return G_SOURCE_REMOVE;
  }

  void report() {
    if (const auto done = std::exchange(done_, nullptr)) done(outcome_);
  }

  /// Empty once told or cancelled.
  std::function<void(const ProcessOutcome&)> done_;
  GObjectPtr<GSubprocess> process_;
  GObjectPtr<GCancellable> cancellable_ = GObjectPtr<GCancellable>::adopt(g_cancellable_new());
  pid_t group_ = 0;
  ProcessOutcome outcome_;
};

}  // namespace

base::Subscription runChild(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                            std::function<void(const ProcessOutcome&)> done) {
  const auto child = std::make_shared<Child>(std::move(done));
  child->start(program, arguments);
  return base::Subscription([child] { child->cancel(); });
}

}  // namespace orvalle::platform::linuxos
