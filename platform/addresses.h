#pragma once

#include <initializer_list>
#include <string_view>

/// What every client asks of the addresses that it is given, and that servers give it.
namespace orvalle::platform {

/// Whether the text is an address with one of these schemes, written in any case, and with a host.
bool isAddress(std::string_view text, std::initializer_list<std::string_view> schemes);

/// Whether the answer with this status sends the client somewhere else.
bool isRedirect(int status);

/// Whether a server at `from` may send the client to `to`: to an encrypted address, or from an unencrypted
/// one to another on the same host.
bool mayRedirect(std::string_view from, std::string_view to);

}  // namespace orvalle::platform
