#pragma once

#include <string>
#include <vector>

namespace orvalle::platform::linuxos {

inline constexpr const char* kApplicationId = "app.orvalle.Orvalle";
/// Where the desktop finds the application on the bus.
inline constexpr const char* kObjectPath = "/app/orvalle/Orvalle";
/// Set for the program that an update opens. A variable, because a program that knows nothing of it opens all
/// the same.
inline constexpr const char* kAfterUpdate = "ORVALLE_AFTER_UPDATE";

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

/// In a program that an update has opened: waits until the instance that it replaces has gone, a minute at
/// most. That one is about to end, however long it takes: handing over to it would leave no program at all.
void awaitReplacedInstance();

}  // namespace orvalle::platform::linuxos
