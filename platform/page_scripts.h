#pragma once

#include <string>

namespace orvalle::platform {

/// The name of our own script world.
inline constexpr char kScriptWorld[] = "bridge";

/// The scripts by which a page reaches the program, in the main frame alone: the native handler `handler`
/// lives in a script world of its own, where frames of other sites cannot find it. Both are for the start of
/// every document.

/// Runs in our own world, and posts each message to the native handler as JSON text, in pieces for
/// `MessagePieces`.
std::string relayScript(const std::string& handler);
/// Runs in the page's world, and gives the page `window.webkit.messageHandlers.HANDLER.postMessage`.
std::string pageScript(const std::string& handler);

}  // namespace orvalle::platform
