#include "platform/linux/command_line.h"

#include <map>

namespace orvalle::platform::linuxos {

CommandLine parseCommandLine(const std::vector<std::string>& arguments) {
  using Request = CommandLine::Request;
  static const std::map<std::string, Request> kOptions = {
      // The bus starts the program so: it will say what it wants.
      {"--gapplication-service", Request::Service},
      {"--new-session", Request::NewSession},
      {"--stop", Request::Stop},
      {"--install", Request::Install},
      {"--uninstall", Request::Uninstall},
      {"--version", Request::Version},
      {"--help", Request::Help},
      {"--quit", Request::Quit},
  };
  CommandLine line;
  bool options = true;
  for (const auto& argument : arguments) {
    if (!options || !argument.starts_with('-')) {
      line.addresses.push_back(argument);
    } else if (argument == "--") {
      options = false;
    } else if (const auto known = kOptions.find(argument); known != kOptions.end()) {
      return {known->second, {}, {}};
    } else {
      return {Request::Unknown, {}, argument};
    }
  }
  return line;
}

}  // namespace orvalle::platform::linuxos
