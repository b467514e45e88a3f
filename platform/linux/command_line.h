#pragma once

#include <string>
#include <vector>

namespace orvalle::platform::linuxos {

/// What the command line asks for.
struct CommandLine {
  enum class Request { Run, Service, NewSession, Stop, Install, Uninstall, Version, Help, Quit, Unknown };

  Request request = Request::Run;
  /// The arguments that are not options, as they were written: addresses to open, when the request is `Run`.
  std::vector<std::string> addresses;
  /// The option that we do not have, when the request is `Unknown`.
  std::string unknown;
};

/// Reads the arguments that follow the program's name. The first option decides; "--" ends the options.
CommandLine parseCommandLine(const std::vector<std::string>& arguments);

}  // namespace orvalle::platform::linuxos
