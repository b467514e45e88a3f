#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace orvalle::platform {

struct OpenPanelSpec {
  std::string message;
  /// The title of the button that confirms.
  std::string prompt;
  bool allowsMultipleSelection = false;
};

/// The system's dialog for choosing files (not folders), without a filter by type.
class OpenPanel {
 public:
  virtual ~OpenPanel() = default;
  /// `done` is called once, on the main loop, with the absolute paths chosen; absent when the user cancelled.
  virtual void choose(const OpenPanelSpec& spec,
                      std::function<void(std::optional<std::vector<std::string>>)> done) = 0;
};

}  // namespace orvalle::platform
