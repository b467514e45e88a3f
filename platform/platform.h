#pragma once

#include "platform/accessibility.h"
#include "platform/alerts.h"
#include "platform/application.h"
#include "platform/background.h"
#include "platform/bundle.h"
#include "platform/clock.h"
#include "platform/code_signing.h"
#include "platform/defaults.h"
#include "platform/environment.h"
#include "platform/frontmost.h"
#include "platform/haptics.h"
#include "platform/http_client.h"
#include "platform/input_idle.h"
#include "platform/main_loop.h"
#include "platform/main_menu.h"
#include "platform/notification_centre.h"
#include "platform/open_panel.h"
#include "platform/package_tools.h"
#include "platform/pair_view.h"
#include "platform/panel.h"
#include "platform/pasteboard.h"
#include "platform/processes.h"
#include "platform/screen.h"
#include "platform/session_watch.h"
#include "platform/settings_panes.h"
#include "platform/status_item.h"
#include "platform/system_log.h"
#include "platform/user_folders.h"
#include "platform/web_socket.h"
#include "platform/web_window.h"
#include "platform/workspace.h"

namespace orvalle::platform {

/// Everything the portable program asks of a system. Owned by whoever starts the program; outlives it.
struct Platform {
  Application& application;
  Clock& clock;
  MainLoop& loop;
  Environment& environment;
  Defaults& defaults;
  Workspace& workspace;
  Haptics& haptics;
  Screen& screen;
  MainMenu& mainMenu;
  StatusBar& statusBar;
  Panels& panels;
  WebWindows& webWindows;
  Alerts& alerts;
  OpenPanel& openPanel;
  WebSockets& webSockets;
  Pasteboard& pasteboard;
  PairViews& pairViews;
  SystemLog& log;
  Background& background;
  UserFolders& userFolders;
  Bundle& bundle;
  CodeSigning& codeSigning;
  NotificationCentre& notificationCentre;
  SettingsPanes& settingsPanes;
  Processes& processes;
  Frontmost& frontmost;
  Accessibility& accessibility;
  InputIdle& inputIdle;
  HttpClient& http;
  PackageTools& packageTools;
  SessionWatch& sessionWatch;
};

}  // namespace orvalle::platform
