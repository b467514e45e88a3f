#pragma once

#include <gtk/gtk.h>

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>

#include "platform/any_system.h"
#include "platform/pair_view.h"
#include "platform/pasteboard.h"
#include "platform/platform.h"
#include "platform/web_socket.h"

/// The Linux implementations. Everything is made and used on the main thread, after `startApplication` has
/// given an application (GTK is up then), except where a function says otherwise. What is passed by reference
/// must outlive what is made.
namespace orvalle::platform::linuxos {

using platform::makeClock;
using platform::makeEnvironment;

/// The application with what other Linux parts need of it.
class NativeApplication : public Application {
 public:
  /// Windows that count as the program's own are added to it; the overlay is not.
  virtual GtkApplication* gtk() = 0;
};

/// What the program says of itself on the command line.
struct ProgramInfo {
  std::string version;
  std::string build;
};

/// The outcome of starting: the application of the first instance, or the exit status of a process that had
/// nothing else to do: it answered an option, or handed its request over to the instance that is running.
struct Start {
  std::unique_ptr<NativeApplication> application;
  int exitStatus = 0;
};

Start startApplication(int argc, char** argv, const ProgramInfo& info);

/// What our windows need of the menu bar.
class WindowMenu {
 public:
  virtual ~WindowMenu() = default;
  /// A new pop-up menu that holds the whole menu bar and follows its model as long as it lives; a floating
  /// reference.
  virtual GtkWidget* makePopup() = 0;
  /// Carries out the key equivalent that `event` stands for, in the window that has the keyboard. False when
  /// there is none or its item is not usable: the key is then the window's own business.
  virtual bool handleKey(GdkEventKey* event) = 0;
};

/// The menu bar with the windows' side of it.
class NativeMainMenu : public MainMenu, public WindowMenu {};

std::unique_ptr<MainLoop> makeMainLoop();
std::unique_ptr<SystemLog> makeSystemLog();
/// The store in `$XDG_CONFIG_HOME/Orvalle/defaults.json`, by default under `$HOME/.config`. What other
/// programs write into it shows at the next read. A link there is followed. Failures are logged, each once.
std::unique_ptr<Defaults> makeDefaults(const Environment& environment, SystemLog& log);
std::unique_ptr<Workspace> makeWorkspace();
std::unique_ptr<Haptics> makeHaptics(NativeApplication& application);
std::unique_ptr<Screen> makeScreen();
std::unique_ptr<NativeMainMenu> makeMainMenu(NativeApplication& application);
/// `application` gives the responder chain for items without a target.
std::unique_ptr<StatusBar> makeStatusBar(Application& application);
std::unique_ptr<Panels> makePanels();
std::unique_ptr<WebWindows> makeWebWindows(NativeApplication& application, MainLoop& loop, WindowMenu& menu,
                                           Defaults& defaults);
std::unique_ptr<Alerts> makeAlerts(NativeApplication& application);
std::unique_ptr<OpenPanel> makeOpenPanel(NativeApplication& application);
/// Without a need of GTK.
std::unique_ptr<WebSockets> makeWebSockets();
std::unique_ptr<Pasteboard> makePasteboard();
/// Without a need of GTK, these two. The folders are those of `user-dirs.dirs` and of the environment.
std::unique_ptr<Background> makeBackground(MainLoop& loop);
std::unique_ptr<UserFolders> makeUserFolders(const Environment& environment);
/// The bundle that the running program lies in, and the one that a program's file lies in, if any. Read once.
std::unique_ptr<Bundle> makeBundle();
std::unique_ptr<Bundle> makeBundle(const std::filesystem::path& executable);
/// Reads the signature of the bundle at every call.
std::unique_ptr<CodeSigning> makeCodeSigning(const Bundle& bundle);
std::unique_ptr<NotificationCentre> makeNotificationCentre(NativeApplication& application,
                                                           const Environment& environment,
                                                           const Bundle& bundle);
std::unique_ptr<SettingsPanes> makeSettingsPanes(NativeApplication& application,
                                                 const Environment& environment, const UserFolders& folders);
std::unique_ptr<Processes> makeProcesses();
/// Finds the desktop's own way of telling, and has none where there is none.
std::unique_ptr<Frontmost> makeFrontmost();
std::unique_ptr<InputIdle> makeInputIdle();
/// Keeps the consent in `defaults`, and asks for it by `alerts`.
std::unique_ptr<Accessibility> makeAccessibility(NativeApplication& application, Defaults& defaults,
                                                 Alerts& alerts, const UserFolders& folders);
/// Without a need of GTK, these two. A request on which nothing moves for `idle` fails.
std::unique_ptr<HttpClient> makeHttpClient(std::chrono::seconds idle = std::chrono::seconds(60));
/// Bundles are verified by the tool in the bundle that runs. Where `signer` is given, a public key, no other
/// signer counts.
std::unique_ptr<PackageTools> makePackageTools(const Bundle& bundle, std::string signer = "");
/// Listens to the system's and the desktop's own services, as far as there are any; they come later.
std::unique_ptr<SessionWatch> makeSessionWatch();
std::unique_ptr<PairViews> makePairViews(NativeApplication& application, WindowMenu& menu);

}  // namespace orvalle::platform::linuxos
