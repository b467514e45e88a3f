#pragma once

#include <chrono>
#include <filesystem>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "demo/server/server.h"

namespace orvalle::demo {

/// What the command line asks for.
struct Options {
  enum class Action { Serve, ServeAndOpen, ShowHelp, ShowVersion };

  Action action = Action::ServeAndOpen;
  PortRange ports;
  /// The folder of the page.
  std::filesystem::path page;
  /// The program to start on the page's address.
  std::filesystem::path app;
  /// The file of the pairing keys; empty for the usual one.
  std::filesystem::path keys;
  /// The folder of the program's updates; empty when none are published.
  std::filesystem::path updates;
  /// How long a realtime connection may be silent.
  std::chrono::seconds idle{60};
};

/// A command line that cannot be obeyed, with the text to show.
struct UsageError {
  std::string message;
};

extern const char* const kHelp;

/// Reads the arguments that follow the program's name. The defaults of the page and of the program to start
/// are found from `executable`, the absolute path of this program inside its bundle.
std::variant<Options, UsageError> readOptions(const std::vector<std::string_view>& arguments,
                                              const std::filesystem::path& executable);

}  // namespace orvalle::demo
