#include "platform/linux/page_bridge.h"

#include <utility>

#include "platform/page_scripts.h"

namespace orvalle::platform::linuxos {
namespace {

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
                       std::function<void(std::string)> received)
    : received_(std::move(received)),
      later_([this] { takeNext(); }),
      content_(GObjectPtr<WebKitUserContentManager>::adopt(webkit_user_content_manager_new())),
      // Connected before the handler exists, so that not even the first message is lost.
      connection_(content_.get(), ("script-message-received::" + handler).c_str(),
                  G_CALLBACK(messageReceived), this) {
  webkit_user_content_manager_register_script_message_handler_in_world(content_.get(), handler.c_str(),
                                                                       kScriptWorld);
  addScript(content_.get(), relayScript(handler), kScriptWorld);
  addScript(content_.get(), pageScript(handler), nullptr);
  addScript(content_.get(), documentStartScript, nullptr);
}

void PageBridge::messageReceived(WebKitUserContentManager*, WebKitJavascriptResult* message, gpointer self) {
  auto& bridge = *static_cast<PageBridge*>(self);
  JSCValue* value = webkit_javascript_result_get_js_value(message);
  if (!bridge.pieces_.unfinished() && bridge.waiting_.empty()) return bridge.take(value);
  // The library hands out the pieces of a long message without a pause, and reading them takes its time:
  // whoever else waits for the main loop gets a turn after each.
  bridge.waiting_.push_back(GObjectPtr<JSCValue>::share(value));
  bridge.later_.ask();
}

void PageBridge::takeNext() {
  const auto next = std::move(waiting_.front());
  waiting_.pop_front();
  if (!waiting_.empty()) later_.ask();
  take(next.get());
}

void PageBridge::take(JSCValue* value) {
  if (!jsc_value_is_string(value)) return;
  const std::unique_ptr<GBytes, GlibDeleter> text(jsc_value_to_string_as_bytes(value));
  gsize size = 0;
  const auto* data = static_cast<const char*>(g_bytes_get_data(text.get(), &size));
  if (auto whole = pieces_.take({data, size})) received_(std::move(*whole));
}

}  // namespace orvalle::platform::linuxos
