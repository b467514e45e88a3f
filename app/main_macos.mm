// The macOS program: builds the parts of the system and hands them to the portable program.

#include <cstdio>
#include <string_view>

#include "app/orvalle.h"
#import "platform/macos/factory.h"

int main(int argc, char** argv) {
  namespace native = orvalle::platform::macos;
  if (argc > 1 && std::string_view(argv[1]) == "--version") {
    std::printf("Orvalle %s (%s)\n", ORVALLE_VERSION, ORVALLE_BUILD);
    return 0;
  }
  const auto application = native::makeApplication();

  const auto clock = native::makeClock();
  const auto loop = native::makeMainLoop();
  const auto environment = native::makeEnvironment();
  const auto log = native::makeSystemLog();
  const auto defaults = native::makeDefaults();
  const auto workspace = native::makeWorkspace();
  const auto haptics = native::makeHaptics();
  const auto screen = native::makeScreen();
  const auto mainMenu = native::makeMainMenu(*application);
  const auto statusBar = native::makeStatusBar(*application);
  const auto panels = native::makePanels();
  const auto webWindows = native::makeWebWindows(*loop);
  const auto alerts = native::makeAlerts();
  const auto openPanel = native::makeOpenPanel();
  const auto webSockets = native::makeWebSockets();
  const auto pasteboard = native::makePasteboard();
  const auto pairViews = native::makePairViews();
  const auto background = native::makeBackground(*loop);
  const auto userFolders = native::makeUserFolders();
  const auto bundle = native::makeBundle();
  const auto codeSigning = native::makeCodeSigning();
  const auto notificationCentre = native::makeNotificationCentre();
  const auto settingsPanes = native::makeSettingsPanes();
  const auto processes = native::makeProcesses();
  const auto frontmost = native::makeFrontmost();
  const auto accessibility = native::makeAccessibility();
  const auto inputIdle = native::makeInputIdle();
  const auto http = native::makeHttpClient();
  const auto packageTools = native::makePackageTools();
  const auto sessionWatch = native::makeSessionWatch();

  return orvalle::app::run({*application,
                            *clock,
                            *loop,
                            *environment,
                            *defaults,
                            *workspace,
                            *haptics,
                            *screen,
                            *mainMenu,
                            *statusBar,
                            *panels,
                            *webWindows,
                            *alerts,
                            *openPanel,
                            *webSockets,
                            *pasteboard,
                            *pairViews,
                            *log,
                            *background,
                            *userFolders,
                            *bundle,
                            *codeSigning,
                            *notificationCentre,
                            *settingsPanes,
                            *processes,
                            *frontmost,
                            *accessibility,
                            *inputIdle,
                            *http,
                            *packageTools,
                            *sessionWatch});
}
