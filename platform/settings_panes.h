#pragma once

namespace orvalle::platform {

enum class SettingsPane { Notifications, Documents };

/// The places in the system's settings where the user decides what the program may do.
class SettingsPanes {
 public:
  virtual ~SettingsPanes() = default;
  /// Opens the place; nothing where the system has none. Returns at once, a failure is silent.
  virtual void open(SettingsPane pane) = 0;
};

}  // namespace orvalle::platform
