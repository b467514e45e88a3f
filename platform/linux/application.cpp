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
#include "platform/linux/link_delivery.h"
#include "platform/linux/look_later.h"
#include "platform/linux/program_icon.h"
#include "platform/linux/running_instance.h"
#include "platform/linux/user_install.h"
#include "platform/linux/window_front.h"

namespace orvalle::platform::linuxos {
namespace {

constexpr const char* kHelp =
    "Uso: orvalle [OPZIONE] [INDIRIZZO…]\n"
    "\n"
    "Apre Orvalle; se è già aperto, lo porta in primo piano.\n"
    "\n"
    "  --new-session  comincia una sessione da 25 minuti\n"
    "  --stop         ferma la sessione, se Orvalle è aperto\n"
    "  --install      mette Orvalle fra le tue applicazioni\n"
    "  --uninstall    lo toglie; i tuoi dati restano\n"
    "  --quit         chiude Orvalle, se è aperto\n"
    "  --version      mostra la versione\n"
    "  --help         mostra questo aiuto\n";

/// What the desktop offers beside opening the program: the actions of its entry among the applications.
constexpr const char* kNewSession = "new-session";
constexpr const char* kStop = "stop";
constexpr const char* kQuit = "quit";

/// What takes its time and nobody waits for: drawing the icon longer than all else at a start.
void settleIn() {
  showProgramIcon();
  if (const auto reason = renewForUser(makeBundle()->path())) makeSystemLog()->write("Orvalle: " + *reason);
}

class GlibApplication final : public NativeApplication, private ActionTarget {
 public:
  GlibApplication(GObjectPtr<GtkApplication> application, std::unique_ptr<LinkDelivery> links,
                  CommandLine line)
      : application_(std::move(application)),
        links_(std::move(links)),
        line_(std::move(line)),
        activated_(application_.get(), "activate", G_CALLBACK(&GlibApplication::onActivate), this),
        shutDown_(application_.get(), "shutdown", G_CALLBACK(&GlibApplication::onShutdown), this),
        settleIn_(settleIn) {
    links_->onOpen = [this](const auto& urls, GVariant* platformData) { open(urls, platformData); };
    offer(kNewSession, onNewSession);
    offer(kStop, onStop);
    offer(kQuit, onQuit);
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

  using ActionHandler = void (*)(GSimpleAction*, GVariant*, gpointer self);

  void offer(const char* name, ActionHandler handler) {
    const auto action = GObjectPtr<GSimpleAction>::adopt(g_simple_action_new(name, nullptr));
    g_signal_connect(action.get(), "activate", G_CALLBACK(handler), this);
    g_action_map_add_action(G_ACTION_MAP(application_.get()), G_ACTION(action.get()));
  }

  /// True when this call did it.
  bool launch() {
    if (std::exchange(launched_, true)) return false;
    delegate_->applicationDidFinishLaunching();
    // The page is on its way first.
    settleIn_.ask();
    return true;
  }

  void act(const char* action) {
    MenuItem sender("", action);
    sender.choose(*this);
  }

  void open(const std::vector<std::string>& urls, GVariant* platformData) {
    auto* application = G_APPLICATION(application_.get());
    auto* type = G_APPLICATION_GET_CLASS(application);
    // The user's click, which lets a window come to the front.
    type->before_emit(application, platformData);
    launch();
    delegate_->applicationOpen(urls);
    type->after_emit(application, platformData);
  }

  static void onActivate(GApplication*, gpointer data) {
    auto& self = *static_cast<GlibApplication*>(data);
    if (self.launch()) {
      if (self.line_.request == CommandLine::Request::NewSession) self.act("sessioneDaFuori");
      self.delegate_->applicationOpen(std::exchange(self.line_.addresses, {}));
    } else if (self.delegate_->applicationShouldHandleReopen(frontWindow(self.application_.get()) !=
                                                             nullptr)) {
      self.activate();
    }
  }

  static void onNewSession(GSimpleAction*, GVariant*, gpointer data) {
    auto& self = *static_cast<GlibApplication*>(data);
    self.launch();
    self.act("sessioneDaFuori");
  }

  static void onStop(GSimpleAction*, GVariant*, gpointer data) {
    auto& self = *static_cast<GlibApplication*>(data);
    // Started for this alone there is nothing to stop.
    if (!self.launched_) return self.terminate();
    self.act("stop");
  }

  static void onQuit(GSimpleAction*, GVariant*, gpointer data) {
    static_cast<GlibApplication*>(data)->terminate();
  }

  static void onShutdown(GApplication*, gpointer data) {
    static_cast<GlibApplication*>(data)->delegate_->applicationWillTerminate();
  }

  static gboolean onSignal(gpointer application) {
    g_application_quit(G_APPLICATION(application));
    return G_SOURCE_CONTINUE;
  }

  GObjectPtr<GtkApplication> application_;
  std::unique_ptr<LinkDelivery> links_;
  CommandLine line_;
  ApplicationDelegate* delegate_ = nullptr;
  bool launched_ = false;
  SignalConnection activated_;
  SignalConnection shutDown_;
  LookLater settleIn_;
};

Start finished(int status) {
  return {nullptr, status};
}

Start failed(int status, const std::string& message) {
  makeSystemLog()->write("Orvalle: " + message);
  return finished(status);
}

Start install() {
  const auto bundle = makeBundle();
  if (bundle->swapObstacle() == SwapObstacle::NoBundle) return failed(1, "non sta girando da Orvalle.app");
  if (const auto reason = installForUser(bundle->path())) return failed(1, *reason);
  std::puts("Orvalle è fra le tue applicazioni e apre i suoi link.");
  return finished(0);
}

Start uninstall() {
  if (const auto reason = uninstallForUser()) return failed(1, *reason);
  std::puts("Orvalle non è più fra le tue applicazioni. I tuoi dati restano.");
  return finished(0);
}

/// Has the running instance do what this process was asked to. False when there is none.
bool handOver(const CommandLine& line) {
  switch (line.request) {
    case CommandLine::Request::NewSession:
      return actInRunningInstance(kNewSession);
    case CommandLine::Request::Run:
      return line.addresses.empty() ? activateRunningInstance() : openInRunningInstance(line.addresses);
    default:
      return false;
  }
}

Start startFirstInstance(CommandLine line) {
  // The window class, by which desktops find our entry among their applications.
  g_set_prgname("orvalle");
  g_set_application_name("Orvalle");
  if (!gtk_init_check(nullptr, nullptr)) return failed(1, "nessuno schermo disponibile");

  const auto flags =
      line.request == CommandLine::Request::Service ? G_APPLICATION_IS_SERVICE : G_APPLICATION_DEFAULT_FLAGS;
  auto application = GObjectPtr<GtkApplication>::adopt(gtk_application_new(kApplicationId, flags));
  auto links = std::make_unique<LinkDelivery>();
  // The session manager then tells us when the session ends.
  g_object_set(application.get(), "register-session", TRUE, nullptr);
  GError* error = nullptr;
  if (!g_application_register(G_APPLICATION(application.get()), nullptr, &error)) {
    const GlibPtr<GError> owned(error);
    return failed(1, error->message);
  }
  // Somebody else was first after all.
  if (g_application_get_is_remote(G_APPLICATION(application.get()))) return finished(handOver(line) ? 0 : 1);
  return {std::make_unique<GlibApplication>(std::move(application), std::move(links), std::move(line)), 0};
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
    case CommandLine::Request::Install:
      return install();
    case CommandLine::Request::Uninstall:
      return uninstall();
    case CommandLine::Request::Stop:
      actInRunningInstance(kStop);
      return finished(0);
    case CommandLine::Request::Run:
    case CommandLine::Request::NewSession:
    case CommandLine::Request::Service:
      break;
  }
  awaitReplacedInstance();
  chooseDisplay();
  chooseGraphics();
  // Before anything of GTK: it would take the start-up notification that the running instance needs to come
  // to the front.
  return handOver(line) ? finished(0) : startFirstInstance(line);
}

}  // namespace orvalle::platform::linuxos
