#include "platform/linux/page_bridge.h"

#include <utility>

namespace orvalle::platform::linuxos {
namespace {

constexpr char kWorld[] = "bridge";

/// Runs in our own world. The event's detail is a text whatever the page made of the event, or it is dropped.
constexpr char kRelay[] = R"js((() => {
  const longest = 64 * 1024 * 1024;
  const handler = window.webkit.messageHandlers['HANDLER'];
  document.addEventListener('HANDLER-message', event => {
    const text = event.detail;
    if (typeof text === 'string' && text.length <= longest) handler.postMessage(text);
  });
})();)js";

/// Runs in the page's world. It keeps to functions it took before the page's own scripts could replace them.
constexpr char kPageSide[] = R"js((() => {
  const { stringify } = JSON;
  const { CustomEvent } = window;
  const dispatch = document.dispatchEvent.bind(document);
  const handler = Object.freeze({
    postMessage(message) {
      let text;
      try { text = stringify(message); } catch { return; }
      if (typeof text === 'string') dispatch(new CustomEvent('HANDLER-message', { detail: text }));
    },
  });
  const fixed = value => ({ value, enumerable: true, configurable: true });
  Object.defineProperty(window, 'webkit', fixed(
      Object.freeze({ messageHandlers: Object.freeze({ 'HANDLER': handler }) })));
})();)js";

std::string forHandler(std::string script, const std::string& handler) {
  constexpr std::string_view placeholder = "HANDLER";
  for (std::size_t at = 0; (at = script.find(placeholder, at)) != std::string::npos; at += handler.size())
    script.replace(at, placeholder.size(), handler);
  return script;
}

void addScript(WebKitUserContentManager* content, const std::string& source, const char* world) {
  constexpr auto frames = WEBKIT_USER_CONTENT_INJECT_TOP_FRAME;
  constexpr auto time = WEBKIT_USER_SCRIPT_INJECT_AT_DOCUMENT_START;
  WebKitUserScript* script =
      world ? webkit_user_script_new_for_world(source.c_str(), frames, time, world, nullptr, nullptr)
            : webkit_user_script_new(source.c_str(), frames, time, nullptr, nullptr);
  webkit_user_content_manager_add_script(content, script);
  webkit_user_script_unref(script);
}

}  // namespace

PageBridge::PageBridge(const std::string& handler, const std::string& documentStartScript,
                       std::function<void(const std::string&)> received)
    : received_(std::move(received)),
      content_(GObjectPtr<WebKitUserContentManager>::adopt(webkit_user_content_manager_new())),
      // Connected before the handler exists, so that not even the first message is lost.
      connection_(content_.get(), ("script-message-received::" + handler).c_str(),
                  G_CALLBACK(messageReceived), this) {
  webkit_user_content_manager_register_script_message_handler_in_world(content_.get(), handler.c_str(),
                                                                       kWorld);
  addScript(content_.get(), forHandler(kRelay, handler), kWorld);
  addScript(content_.get(), forHandler(kPageSide, handler), nullptr);
  addScript(content_.get(), documentStartScript, nullptr);
}

void PageBridge::messageReceived(WebKitUserContentManager*, WebKitJavascriptResult* message, gpointer self) {
  JSCValue* value = webkit_javascript_result_get_js_value(message);
  if (!jsc_value_is_string(value)) return;
  const std::unique_ptr<GBytes, GlibDeleter> text(jsc_value_to_string_as_bytes(value));
  gsize size = 0;
  const auto* data = static_cast<const char*>(g_bytes_get_data(text.get(), &size));
  static_cast<PageBridge*>(self)->received_(std::string(data, size));
}

}  // namespace orvalle::platform::linuxos
