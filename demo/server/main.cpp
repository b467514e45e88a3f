#include <glib-unix.h>
#include <glib.h>

#include <csignal>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <variant>
#include <vector>

#include "demo/server/child_program.h"
#include "demo/server/options.h"
#include "demo/server/pairing_keys.h"
#include "demo/server/server.h"

namespace orvalle::demo {
namespace {

constexpr int kFailed = 1;
constexpr int kUsageError = 2;

int complain(const std::string& message) {
  std::fprintf(stderr, "orvalle-demo: %s\n", message.c_str());
  return kFailed;
}

std::string fromEnvironment(const char* name) {
  const char* value = g_getenv(name);
  return value ? value : "";
}

/// Those of the environment, or this installation's own.
PairingKeys keysFor(const Options& options) {
  const PairingKeys given{fromEnvironment("ORVALLE_DEMO_ANON_KEY"),
                          fromEnvironment("ORVALLE_DEMO_CHANNEL_KEY")};
  if (!given.anonKey.empty() && !given.channelKey.empty()) return given;
  const std::filesystem::path file =
      options.keys.empty() ? std::filesystem::path(g_get_user_state_dir()) / "orvalle-demo/keys.json"
                           : options.keys;
  if (auto kept = keptKeys(file)) return *kept;
  complain("impossibile conservare le chiavi in " + file.string() + ": valgono solo per questa volta");
  return makeKeys();
}

std::optional<PageFolder> updatesOf(const Options& options) {
  if (options.updates.empty()) return {};
  return PageFolder(options.updates);
}

/// Runs the main loop until Orvalle, or the server without it, is to end.
class Program {
 public:
  Program() : loop_(g_main_loop_new(nullptr, FALSE)) {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP})
      signals_.push_back(g_unix_signal_add(signal, &end, this));
  }
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;
  ~Program() {
    for (const guint signal : signals_) g_source_remove(signal);
    g_main_loop_unref(loop_);
  }

  int run(const Options& options) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(options.page / "index.html", error)) {
      return complain("nessuna pagina in " + options.page.string());
    }
    const PairingKeys keys = keysFor(options);
    const std::unique_ptr<Server> server =
        Server::start(Site(PageFolder(options.page), keys, updatesOf(options)), options.ports,
                      {keys.anonKey, options.idle});
    if (!server) {
      return complain("nessuna porta libera da " + std::to_string(options.ports.first) + " a " +
                      std::to_string(options.ports.last));
    }
    std::printf("orvalle-demo: %s\n", server->address().c_str());
    std::fflush(stdout);

    if (options.action == Options::Action::ServeAndOpen) {
      auto started = startProgram(options.app, {{"ORVALLE_APP_URL", server->address()}}, [this](int status) {
        status_ = status;
        g_main_loop_quit(loop_);
      });
      if (const auto* failure = std::get_if<StartFailure>(&started)) {
        return complain("impossibile avviare " + options.app.string() + ": " + failure->reason);
      }
      child_ = std::get<std::unique_ptr<ChildProgram>>(std::move(started));
    }
    g_main_loop_run(loop_);
    // The window goes before the server whose page it shows.
    child_.reset();
    return status_;
  }

 private:
  static gboolean end(gpointer self) {
    auto* program = static_cast<Program*>(self);
    if (program->child_) {
      program->child_->end();
    } else {
      g_main_loop_quit(program->loop_);
    }
    return G_SOURCE_CONTINUE;
  }

  GMainLoop* loop_;
  std::vector<guint> signals_;
  std::unique_ptr<ChildProgram> child_;
  int status_ = 0;
};

int run(const std::vector<std::string_view>& arguments) {
  std::error_code error;
  const std::filesystem::path executable = std::filesystem::read_symlink("/proc/self/exe", error);
  const auto read = readOptions(arguments, executable);
  if (const auto* usage = std::get_if<UsageError>(&read)) {
    complain(usage->message);
    return kUsageError;
  }
  const Options& options = std::get<Options>(read);
  switch (options.action) {
    case Options::Action::ShowHelp:
      std::fputs(kHelp, stdout);
      return 0;
    case Options::Action::ShowVersion:
      std::puts("orvalle-demo " ORVALLE_VERSION);
      return 0;
    case Options::Action::Serve:
    case Options::Action::ServeAndOpen:
      break;
  }
  return Program().run(options);
}

}  // namespace
}  // namespace orvalle::demo

int main(int argc, char** argv) {
  try {
    return orvalle::demo::run(std::vector<std::string_view>(argv + 1, argv + argc));
  } catch (const std::exception& failure) {
    return orvalle::demo::complain(failure.what());
  }
}
