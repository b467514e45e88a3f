#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/json.h"

namespace orvalle::link {

/// A task of the session.
struct TaskRow {
  /// The web application's own identifier, sent back to it as it came.
  std::string id;
  std::string title;
  bool done = false;
  bool operator==(const TaskRow&) const = default;
};

/// The state of the user's focus session as the web application last told it. Only ever received, never sent.
struct Snapshot {
  /// A session, focus or break, is in progress.
  bool running = false;
  bool isBreak = false;
  /// Of the current period, in minutes with fractions.
  double elapsedMin = 0;
  double remainingMin = 0;
  double plannedMin = 0;
  /// May be empty.
  std::string projectTitle;
  /// Where the session was started.
  std::optional<std::string> origin;
  std::vector<TaskRow> tasks;
  bool operator==(const Snapshot&) const = default;
};

/// Reads a state object, all or nothing: absent when a member is missing or has the wrong type, "origin"
/// alone being optional (absent or null), or when one task is malformed. Members with other names are
/// ignored.
std::optional<Snapshot> decodeSnapshot(const base::Json& state);

}  // namespace orvalle::link
