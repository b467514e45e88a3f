#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "platform/any_system.h"
#include "platform/platform.h"

/// The macOS implementations. Everything is made and used on the main thread, except where a function says
/// otherwise. What is passed by reference must outlive what is made.
namespace orvalle::platform::macos {

using platform::makeClock;
using platform::makeEnvironment;

/// The application object of the process; made before everything that has to do with the screen.
std::unique_ptr<Application> makeApplication();
std::unique_ptr<MainLoop> makeMainLoop();
std::unique_ptr<SystemLog> makeSystemLog();
/// The program's own settings, or those of another name.
std::unique_ptr<Defaults> makeDefaults(const std::string& suite = "");
std::unique_ptr<Workspace> makeWorkspace();
std::unique_ptr<Haptics> makeHaptics();
std::unique_ptr<Screen> makeScreen();
/// `application` gives the responder chain for items without a target.
std::unique_ptr<MainMenu> makeMainMenu(Application& application);
std::unique_ptr<StatusBar> makeStatusBar(Application& application);
std::unique_ptr<Panels> makePanels();
/// `loop` tells when a page has kept silent for too long.
std::unique_ptr<WebWindows> makeWebWindows(MainLoop& loop);
std::unique_ptr<Alerts> makeAlerts();
std::unique_ptr<OpenPanel> makeOpenPanel();
std::unique_ptr<WebSockets> makeWebSockets();
std::unique_ptr<Pasteboard> makePasteboard();
std::unique_ptr<Background> makeBackground(MainLoop& loop);
std::unique_ptr<UserFolders> makeUserFolders();
std::unique_ptr<Bundle> makeBundle();
std::unique_ptr<CodeSigning> makeCodeSigning();
std::unique_ptr<NotificationCentre> makeNotificationCentre();
std::unique_ptr<SettingsPanes> makeSettingsPanes();
std::unique_ptr<Processes> makeProcesses();
std::unique_ptr<Frontmost> makeFrontmost();
std::unique_ptr<InputIdle> makeInputIdle();
std::unique_ptr<Accessibility> makeAccessibility();
/// A request on which nothing moves for `idle` fails.
std::unique_ptr<HttpClient> makeHttpClient(std::chrono::seconds idle = std::chrono::seconds(60));
std::unique_ptr<PackageTools> makePackageTools();
std::unique_ptr<PairViews> makePairViews();
std::unique_ptr<SessionWatch> makeSessionWatch();

}  // namespace orvalle::platform::macos
