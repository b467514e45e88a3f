#include "platform/application.h"

#include <glib-unix.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>

#include "platform/linux/command_line.h"
#include "platform/linux/display_choice.h"
#include "platform/linux/edit_commands.h"
#include "platform/linux/factory.h"
#include "platform/linux/glib_ptr.h"
#include "platform/linux/look_later.h"
#include "platform/linux/program_icon.h"
#include "platform/linux/running_instance.h"
#include "platform/linux/window_front.h"

namespace orvalle::platform::linuxos {
namespace {

constexpr const char* kHelp =
    "Uso: orvalle [OPZIONE] [INDIRIZZO…]\n"
    "\n"
    "Apre Orvalle; se è già aperto, lo porta in primo piano.\n"
    "\n"
    "  --quit     chiude Orvalle, se è aperto\n"
    "  --version  mostra la versione\n"
    "  --help     mostra questo aiuto\n";

class GlibApplication final : public NativeApplication, private ActionTarget {
 public:
  explicit GlibApplication(GObjectPtr<GtkApplication> application)
      : application_(std::move(application)),
        activated_(application_.get(), "activate", G_CALLBACK(&GlibApplication::onActivate), this),
        shutDown_(application_.get(), "shutdown", G_CALLBACK(&GlibApplication::onShutdown), this),
        showIcon_(showProgramIcon) {
    const auto quit = GObjectPtr<GSimpleAction>::adopt(g_simple_action_new("quit", nullptr));
    g_signal_connect_swapped(quit.get(), "activate", G_CALLBACK(g_application_quit), application_.get());
    g_action_map_add_action(G_ACTION_MAP(application_.get()), G_ACTION(quit.get()));
  }

  int run(ApplicationDelegate& delegate) override {
    delegate_ = &delegate;
    const std::array signals = {g_unix_signal_add(SIGTERM, &GlibApplication::onSignal, application_.get()),
                                g_unix_signal_add(SIGINT, &GlibApplication::onSignal, application_.get()),
                                g_unix_signal_add(SIGHUP, &GlibApplication::onSignal, application_.get())};
    // Otherwise the loop would end with the last window.
    if (!delegate.applicationShouldTerminateAfterLastWindowClosed()) {
      g_application_hold(G_APPLICATION(application_.get()));
    }
    const int status = g_application_run(G_APPLICATION(application_.get()), 0, nullptr);
    for (const guint signal : signals) g_source_remove(signal);
    delegate_ = nullptr;
    return status;
  }

  void activate() override {
    if (GtkWindow* window = frontWindow(application_.get())) present(window);
  }

  void terminate() override { g_application_quit(G_APPLICATION(application_.get())); }

  ActionTarget& responderChain() override { return *this; }

  GtkApplication* gtk() override { return application_.get(); }

 private:
  bool responds(std::string_view action) const override {
    return canEdit(focus(), action) || action == kActionTerminate ||
           (delegate_ && delegate_->responds(action));
  }

  void perform(std::string_view action, MenuItem& sender) override {
    if (GtkWidget* widget = focus(); canEdit(widget, action)) {
      edit(widget, action);
    } else if (action == kActionTerminate) {
      terminate();
    } else {
      delegate_->perform(action, sender);
    }
  }

  /// The widget that has the keyboard in the window in use.
  GtkWidget* focus() const {
    GtkWindow* window = gtk_application_get_active_window(application_.get());
    return window && isVisible(window) ? gtk_window_get_focus(window) : nullptr;
  }

  static void onActivate(GApplication*, gpointer data) {
    auto& self = *static_cast<GlibApplication*>(data);
    if (!self.launched_) {
      self.launched_ = true;
      self.delegate_->applicationDidFinishLaunching();
      // Drawing it takes longer than anything else here: the page is on its way first.
      self.showIcon_.ask();
    } else if (self.delegate_->applicationShouldHandleReopen(frontWindow(self.application_.get()) !=
                                                             nullptr)) {
      self.activate();
    }
  }

  static void onShutdown(GApplication*, gpointer data) {
    static_cast<GlibApplication*>(data)->delegate_->applicationWillTerminate();
  }

  static gboolean onSignal(gpointer application) {
    g_application_quit(G_APPLICATION(application));
    return G_SOURCE_CONTINUE;
  }

  GObjectPtr<GtkApplication> application_;
  ApplicationDelegate* delegate_ = nullptr;
  bool launched_ = false;
  SignalConnection activated_;
  SignalConnection shutDown_;
  LookLater showIcon_;
};

Start finished(int status) {
  return {nullptr, status};
}

Start failed(int status, const std::string& message) {
  makeSystemLog()->write("Orvalle: " + message);
  return finished(status);
}

Start startFirstInstance() {
  // The window class, by which desktops find our entry among their applications.
  g_set_prgname("orvalle");
  g_set_application_name("Orvalle");
  if (!gtk_init_check(nullptr, nullptr)) return failed(1, "nessuno schermo disponibile");

  auto application =
      GObjectPtr<GtkApplication>::adopt(gtk_application_new(kApplicationId, G_APPLICATION_DEFAULT_FLAGS));
  // The session manager then tells us when the session ends.
  g_object_set(application.get(), "register-session", TRUE, nullptr);
  GError* error = nullptr;
  if (!g_application_register(G_APPLICATION(application.get()), nullptr, &error)) {
    const GlibPtr<GError> owned(error);
    return failed(1, error->message);
  }
  // Somebody else was first after all: this hands our request over.
  if (g_application_get_is_remote(G_APPLICATION(application.get()))) {
    return finished(g_application_run(G_APPLICATION(application.get()), 0, nullptr));
  }
  return {std::make_unique<GlibApplication>(std::move(application)), 0};
}

}  // namespace

Start startApplication(int argc, char** argv, const ProgramInfo& info) {
  // A terminal that has gone must not take us with it.
  std::signal(SIGPIPE, SIG_IGN);
  const auto line = parseCommandLine({argv + std::min(argc, 1), argv + argc});
  switch (line.request) {
    case CommandLine::Request::Version:
      std::printf("Orvalle %s (%s)\n", info.version.c_str(), info.build.c_str());
      return finished(0);
    case CommandLine::Request::Help:
      std::fputs(kHelp, stdout);
      return finished(0);
    case CommandLine::Request::Unknown:
      return failed(2, "opzione sconosciuta: " + line.unknown + " (vedi --help)");
    case CommandLine::Request::Quit:
      return quitRunningInstance() ? finished(0) : failed(1, "l'istanza aperta non risponde");
    case CommandLine::Request::Run:
      break;
  }
  chooseDisplay();
  // Before anything of GTK: it would take the start-up notification that the running instance needs to come
  // to the front. Addresses alone do not bring it there.
  const bool handedOver = line.addresses.empty() ? activateRunningInstance() : instanceRuns();
  return handedOver ? finished(0) : startFirstInstance();
}

}  // namespace orvalle::platform::linuxos
