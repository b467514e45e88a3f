#pragma once

#include <gio/gio.h>
#include <sys/types.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/glib_ptr.h"

namespace orvalle::platform::linuxos {

/// The names of applications as the desktop shows them: those of the desktop entries, in the user's language.
class ApplicationNames {
 public:
  ApplicationNames();
  ApplicationNames(const ApplicationNames&) = delete;
  ApplicationNames& operator=(const ApplicationNames&) = delete;

  /// The name of the application whose windows are of this class (X11's two words, or twice a Wayland
  /// application id); where no entry claims them, the class itself. Absent when both are empty.
  std::optional<std::string> ofWindows(const std::string& instance, const std::string& windowClass);
  /// The name of the application that runs as this process; absent when no entry starts its program.
  std::optional<std::string> ofProcess(pid_t process);

 private:
  struct Entry {
    /// Without ".desktop".
    std::string id;
    std::string windowClass;
    /// The program's file name; empty when the entry starts it with arguments of its own, for it may then be
    /// another application's.
    std::string program;
    std::string name;
  };
  using Claim = bool (*)(const Entry& entry, const std::string& word);

  const std::vector<Entry>& entries();
  const Entry* find(Claim claim, const std::string& word);
  std::optional<std::string> lookUp(const std::string& instance, const std::string& windowClass);
  static void changed(GAppInfoMonitor*, gpointer self);

  GObjectPtr<GAppInfoMonitor> monitor_;
  SignalConnection changed_;
  /// Absent until somebody asks, and again after the desktop's entries have changed.
  std::optional<std::vector<Entry>> entries_;
  std::map<std::pair<std::string, std::string>, std::optional<std::string>> found_;
};

}  // namespace orvalle::platform::linuxos
