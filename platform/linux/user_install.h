#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace orvalle::platform::linuxos {

/// Makes the program in this bundle one of the user's applications: with its entry, its icons, and as what
/// opens its links. What was there of an earlier installation is replaced. Needs no display. Absent when all
/// went well, else why not, in words for the user.
std::optional<std::string> installForUser(const std::filesystem::path& bundle);

/// Brings that up to what this bundle holds by now, as an update leaves it behind. Does nothing where the
/// user's entry starts another program, or there is none. Absent when all went well, as above.
std::optional<std::string> renewForUser(const std::filesystem::path& bundle);

/// Takes all that away again; the user's own data stays. Nothing installed is no failure.
std::optional<std::string> uninstallForUser();

}  // namespace orvalle::platform::linuxos
