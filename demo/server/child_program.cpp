#include "demo/server/child_program.h"

#include <gio/gio.h>

#include <csignal>

namespace orvalle::demo {
namespace {

constexpr unsigned kGraceSeconds = 5;

class Subprocess final : public ChildProgram {
 public:
  /// Takes over a reference to the process.
  Subprocess(GSubprocess* process, std::function<void(int)> onExit)
      : process_(process), waiting_(g_cancellable_new()), onExit_(std::move(onExit)) {
    g_subprocess_wait_async(process_, waiting_, &Subprocess::exited, this);
  }

  ~Subprocess() override {
    stopGrace();
    g_cancellable_cancel(waiting_);
    g_object_unref(waiting_);
    g_object_unref(process_);
  }

  void end() override {
    g_subprocess_send_signal(process_, SIGTERM);
    if (grace_) return;
    grace_ = g_timeout_source_new_seconds(kGraceSeconds);
    g_source_set_callback(grace_, &Subprocess::graceOver, this, nullptr);
    g_source_attach(grace_, g_main_context_get_thread_default());
  }

 private:
  static void exited(GObject* source, GAsyncResult* result, gpointer self) {
    g_autoptr(GError) error = nullptr;
    // A cancelled wait means that the object is gone; nothing of it may be touched then.
    if (!g_subprocess_wait_finish(G_SUBPROCESS(source), result, &error)) return;
    auto* process = G_SUBPROCESS(source);
    auto* child = static_cast<Subprocess*>(self);
    child->stopGrace();
    const std::function<void(int)> onExit = std::move(child->onExit_);
    onExit(g_subprocess_get_if_exited(process) ? g_subprocess_get_exit_status(process)
                                               : 128 + g_subprocess_get_term_sig(process));
  }

  static gboolean graceOver(gpointer self) {
    g_subprocess_force_exit(static_cast<Subprocess*>(self)->process_);
    return G_SOURCE_CONTINUE;
  }

  void stopGrace() {
    if (!grace_) return;
    g_source_destroy(grace_);
    g_source_unref(grace_);
    grace_ = nullptr;
  }

  GSubprocess* process_;
  GCancellable* waiting_;
  GSource* grace_ = nullptr;
  std::function<void(int)> onExit_;
};

}  // namespace

std::variant<std::unique_ptr<ChildProgram>, StartFailure> startProgram(
    const std::filesystem::path& program, const std::vector<std::pair<std::string, std::string>>& environment,
    std::function<void(int)> onExit) {
  g_autoptr(GSubprocessLauncher) launcher = g_subprocess_launcher_new(G_SUBPROCESS_FLAGS_STDIN_INHERIT);
  for (const auto& [name, value] : environment) {
    g_subprocess_launcher_setenv(launcher, name.c_str(), value.c_str(), TRUE);
  }
  g_autoptr(GError) error = nullptr;
  const char* arguments[] = {program.c_str(), nullptr};
  GSubprocess* process = g_subprocess_launcher_spawnv(launcher, arguments, &error);
  if (!process) return StartFailure{error->message};
  return std::make_unique<Subprocess>(process, std::move(onExit));
}

}  // namespace orvalle::demo
