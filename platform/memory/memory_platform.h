#pragma once

#include "platform/memory/memory_desktop.h"
#include "platform/memory/memory_diary.h"
#include "platform/memory/memory_link.h"
#include "platform/memory/memory_services.h"
#include "platform/memory/memory_stores.h"
#include "platform/memory/memory_update.h"
#include "platform/memory/virtual_time.h"
#include "platform/platform.h"

namespace orvalle::platform::memory {

/// A whole system in memory.
struct MemoryPlatform {
  Journal journal;
  VirtualTime time;
  MemoryApplication application{journal};
  MemoryEnvironment environment;
  MemoryDefaults defaults;
  MemoryWorkspace workspace;
  MemoryHaptics haptics;
  MemoryScreen screen;
  MemoryMainMenu mainMenu{journal};
  MemoryStatusBar statusBar{journal};
  MemoryPanels panels{journal};
  MemoryWebWindows webWindows{journal};
  MemoryAlerts alerts;
  MemoryOpenPanel openPanel;
  MemoryWebSockets webSockets;
  MemoryPasteboard pasteboard;
  MemoryPairViews pairViews;
  MemorySystemLog log;
  MemoryBackground background{time};
  MemoryUserFolders userFolders;
  MemoryBundle bundle;
  MemoryCodeSigning codeSigning;
  MemoryNotificationCentre notificationCentre;
  MemorySettingsPanes settingsPanes;
  MemoryProcesses processes;
  MemoryFrontmost frontmost;
  MemoryAccessibility accessibility;
  MemoryInputIdle inputIdle;
  MemoryHttpClient http;
  MemoryPackageTools packageTools;
  MemorySessionWatch sessionWatch;

  /// Parts of a test's own that stand in for ours.
  struct Own {
    Panels* panels = nullptr;
    WebWindows* webWindows = nullptr;
    Alerts* alerts = nullptr;
    OpenPanel* openPanel = nullptr;
    Bundle* bundle = nullptr;
    Processes* processes = nullptr;
    HttpClient* http = nullptr;
    PackageTools* packageTools = nullptr;
  };
  Platform platform() { return platform(Own()); }
  Platform platform(const Own& own) {
    return {application,
            time,
            time,
            environment,
            defaults,
            workspace,
            haptics,
            screen,
            mainMenu,
            statusBar,
            own.panels ? *own.panels : panels,
            own.webWindows ? *own.webWindows : webWindows,
            own.alerts ? *own.alerts : alerts,
            own.openPanel ? *own.openPanel : openPanel,
            webSockets,
            pasteboard,
            pairViews,
            log,
            background,
            userFolders,
            own.bundle ? *own.bundle : bundle,
            codeSigning,
            notificationCentre,
            settingsPanes,
            own.processes ? *own.processes : processes,
            frontmost,
            accessibility,
            inputIdle,
            own.http ? *own.http : http,
            own.packageTools ? *own.packageTools : packageTools,
            sessionWatch};
  }
};

}  // namespace orvalle::platform::memory
