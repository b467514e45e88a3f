#pragma once

#include <string>
#include <vector>

namespace orvalle::platform::linuxos {

inline constexpr const char* kApplicationId = "app.orvalle.Orvalle";
/// Where the desktop finds the application on the bus.
inline constexpr const char* kObjectPath = "/app/orvalle/Orvalle";

/// The instance of the program that runs in this user session, as another process sees it over D-Bus. All of
/// it blocks for a short while and needs neither a display nor a main loop.

/// Asks the running instance to show itself. False when there is none, or it ended instead of taking the
/// request.
bool activateRunningInstance();

/// Hands addresses over, as they are; those that are no text are left out. False like above.
bool openInRunningInstance(const std::vector<std::string>& urls);

/// Has the running instance carry out one of the actions that it offers the desktop. False like above.
bool actInRunningInstance(const char* action);

/// Ends the running instance and waits until its process has gone. False when it is still there after a
/// while; true also when none runs.
bool quitRunningInstance();

}  // namespace orvalle::platform::linuxos
