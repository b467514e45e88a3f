#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/glib_ptr.h"

namespace orvalle::contract {

/// A desktop's tray, seen from the bus: it has a connection of its own, keeps the list of status items as the
/// watcher, and reads an item and its menu as hosts do.
class TrayHost {
 public:
  /// A row of an item's menu; what the protocol leaves out has its default.
  struct Row {
    int id = 0;
    std::string label;
    bool separator = false;
    bool enabled = true;
    bool visible = true;
    /// Absent for a row without a place for a mark.
    std::optional<bool> mark;
    /// "Control+o"; empty for none.
    std::string shortcut;
    std::vector<Row> submenu;
    bool operator==(const Row&) const = default;
  };

  TrayHost();
  TrayHost(const TrayHost&) = delete;
  TrayHost& operator=(const TrayHost&) = delete;
  ~TrayHost();

  /// Begins and ends to be the watcher of the session.
  void startWatching();
  void stopWatching();
  /// Says from now on whether somebody draws the items, as the property and with the signal; until first
  /// told, the watcher has no answer to that.
  void tellHosted(bool hosted);
  /// How often that was asked.
  int askedForHosts() const { return askedForHosts_; }
  /// The names under which items announced themselves, in order, those of earlier watches too.
  const std::vector<std::string>& announced() const { return announced_; }

  /// The bus name of the only status item of this process; absent when there is none.
  std::optional<std::string> item();
  /// A property of the item.
  platform::linuxos::GlibPtr<GVariant> property(const char* name);
  std::string text(const char* name);
  /// The title of the item's tool tip.
  std::string toolTip();
  std::vector<Row> menu();
  /// Clicks on rows, all in one message.
  void click(const std::vector<int>& ids);
  /// Calls a method; null pointer when the answer is an error.
  platform::linuxos::GlibPtr<GVariant> call(const char* name, const char* path, const char* interface,
                                            const char* method, GVariant* parameters);
  /// The signals of items and menus since the last time, by name.
  std::map<std::string, int> takeSignals();

 private:
  static void serve(GDBusConnection*, const char*, const char*, const char*, const char* method,
                    GVariant* parameters, GDBusMethodInvocation* invocation, gpointer self);

  static GVariant* property(GDBusConnection*, const char*, const char*, const char*, const char* name,
                            GError** error, gpointer self);

  platform::linuxos::GObjectPtr<GDBusConnection> bus_;
  guint object_ = 0;
  guint subscription_ = 0;
  std::optional<bool> hosted_;
  int askedForHosts_ = 0;
  std::vector<std::string> announced_;
  std::map<std::string, int> signals_;
};

}  // namespace orvalle::contract
