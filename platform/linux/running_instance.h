#pragma once

namespace orvalle::platform::linuxos {

inline constexpr const char* kApplicationId = "app.orvalle.Orvalle";

/// The instance of the program that runs in this user session, as another process sees it over D-Bus. All of
/// it blocks for a short while and needs neither a display nor a main loop.

bool instanceRuns();

/// Asks the running instance to show itself. False when there is none, or it ended instead of taking the
/// request.
bool activateRunningInstance();

/// Ends the running instance and waits until its process has gone. False when it is still there after a
/// while; true also when none runs.
bool quitRunningInstance();

}  // namespace orvalle::platform::linuxos
