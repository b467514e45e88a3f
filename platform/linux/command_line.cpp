#include "platform/linux/command_line.h"

namespace orvalle::platform::linuxos {

CommandLine parseCommandLine(const std::vector<std::string>& arguments) {
  using Request = CommandLine::Request;
  CommandLine line;
  bool options = true;
  for (const auto& argument : arguments) {
    if (!options || !argument.starts_with('-')) {
      line.addresses.push_back(argument);
    } else if (argument == "--") {
      options = false;
    } else if (argument == "--version") {
      return {Request::Version, {}, {}};
    } else if (argument == "--help") {
      return {Request::Help, {}, {}};
    } else if (argument == "--quit") {
      return {Request::Quit, {}, {}};
    } else {
      return {Request::Unknown, {}, argument};
    }
  }
  return line;
}

}  // namespace orvalle::platform::linuxos
