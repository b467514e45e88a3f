#pragma once

#include <webkit2/webkit2.h>

#include <deque>
#include <functional>
#include <string>

#include "platform/linux/glib_ptr.h"
#include "platform/linux/look_later.h"
#include "platform/message_pieces.h"

namespace orvalle::platform::linuxos {

/// What is put into every document of the main frame: the script that runs first, and the messages from the
/// page to the program.
///
/// A handler registered for pages would be there in every frame of every origin, and its messages do not say
/// which frame sent them. So the real handler is registered in a script world of our own, of which pages see
/// nothing, and scripts injected into the main frame only carry messages there: one gives the page its
/// `window.webkit.messageHandlers.NAME`, the other passes on what it is given.
class PageBridge {
 public:
  /// `received` is called on the main loop with each message as a JSON document. Messages that JSON cannot
  /// express, and those longer than a hundred and sixty million characters, are dropped. `handler` is an
  /// identifier.
  PageBridge(const std::string& handler, const std::string& documentStartScript,
             std::function<void(std::string json)> received);

  /// What a web view is made with.
  WebKitUserContentManager* content() const { return content_.get(); }

 private:
  static void messageReceived(WebKitUserContentManager*, WebKitJavascriptResult* message, gpointer self);
  void takeNext();
  void take(JSCValue* value);

  std::function<void(std::string)> received_;
  MessagePieces pieces_;
  /// What came behind an unfinished message.
  std::deque<GObjectPtr<JSCValue>> waiting_;
  LookLater later_;
  GObjectPtr<WebKitUserContentManager> content_;
  SignalConnection connection_;
};

}  // namespace orvalle::platform::linuxos
