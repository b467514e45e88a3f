// The Linux program: builds the parts of the system and hands them to the portable program.

#include "app/orvalle.h"
#include "platform/linux/factory.h"

int main(int argc, char** argv) {
  namespace native = orvalle::platform::linuxos;
  const auto start = native::startApplication(argc, argv, {ORVALLE_VERSION, ORVALLE_BUILD});
  if (!start.application) return start.exitStatus;
  auto& application = *start.application;

  const auto clock = native::makeClock();
  const auto loop = native::makeMainLoop();
  const auto environment = native::makeEnvironment();
  const auto log = native::makeSystemLog();
  const auto defaults = native::makeDefaults(*environment, *log);
  const auto workspace = native::makeWorkspace();
  const auto haptics = native::makeHaptics(application);
  const auto screen = native::makeScreen();
  const auto mainMenu = native::makeMainMenu(application);
  const auto statusBar = native::makeStatusBar(application);
  const auto panels = native::makePanels();
  const auto webWindows = native::makeWebWindows(application, *loop, *mainMenu, *defaults);
  const auto alerts = native::makeAlerts(application);
  const auto openPanel = native::makeOpenPanel(application);
  const auto webSockets = native::makeWebSockets();
  const auto pasteboard = native::makePasteboard();
  const auto pairViews = native::makePairViews(application, *mainMenu);
  const auto background = native::makeBackground(*loop);
  const auto userFolders = native::makeUserFolders(*environment);
  const auto bundle = native::makeBundle();
  const auto codeSigning = native::makeCodeSigning(*bundle);
  const auto notificationCentre = native::makeNotificationCentre(application, *environment, *bundle);
  const auto settingsPanes = native::makeSettingsPanes(application, *environment, *userFolders);
  const auto processes = native::makeProcesses();
  const auto frontmost = native::makeFrontmost();
  const auto accessibility = native::makeAccessibility(application, *defaults, *alerts, *userFolders);
  const auto inputIdle = native::makeInputIdle();
  const auto http = native::makeHttpClient();
  const auto packageTools = native::makePackageTools(*bundle, ORVALLE_UPDATE_SIGNER);
  const auto sessionWatch = native::makeSessionWatch();

  return orvalle::app::run({application,
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
