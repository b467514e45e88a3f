#pragma once

#include <webkit2/webkit2.h>

#include <array>

#include "platform/answer_watch.h"
#include "platform/linux/glib_ptr.h"
#include "platform/web_window.h"

namespace orvalle::platform::linuxos {

/// What pages ask of the program beside navigating: dialogs, files, permissions, a context menu. Dialogs and
/// files are the delegate's; permissions are denied.
class PageRequests {
 public:
  /// Answers the requests of `view` as long as it lives. `delegate` and `watch` outlive it.
  PageRequests(WebKitWebView* view, WebWindowDelegate& delegate, AnswerWatch& watch);

 private:
  static gboolean scriptDialog(WebKitWebView*, WebKitScriptDialog* dialog, gpointer self);
  static gboolean chooseFiles(WebKitWebView*, WebKitFileChooserRequest* request, gpointer self);

  WebWindowDelegate& delegate_;
  AnswerWatch& watch_;
  std::array<SignalConnection, 5> connections_;
};

}  // namespace orvalle::platform::linuxos
