#pragma once

#include "platform/memory/memory_desktop.h"
#include "platform/memory/memory_link.h"
#include "platform/memory/memory_stores.h"
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

  Platform platform() {
    return {application, time,      time,       environment, defaults, workspace,
            haptics,     screen,    mainMenu,   statusBar,   panels,   webWindows,
            alerts,      openPanel, webSockets, pasteboard,  pairViews};
  }
};

}  // namespace orvalle::platform::memory
