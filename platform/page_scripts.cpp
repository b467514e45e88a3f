#include "platform/page_scripts.h"

#include <string_view>

namespace orvalle::platform {
namespace {

/// Runs in our own world. The event's detail is a text whatever the page made of the event, or it is dropped.
/// A long one goes in pieces, cut where no character is halved. Half a character that is in a text already,
/// as a title cut short has it, would spoil the whole message: a mark takes its place.
constexpr char kRelay[] = R"js((() => {
  const longest = 160 * 1024 * 1024;
  const step = 256 * 1024;
  const handler = window.webkit.messageHandlers['HANDLER'];
  const mended = text => !text.includes('\\ud') ? text :
      text.replace(/\\(?:ud[89a-f]..|.)/g, escaped => escaped.length > 2 ? '\ufffd' : escaped);
  const postPieces = text => {
    for (let from = 0; from < text.length;) {
      let to = from + step;
      if ((text.charCodeAt(to) & 0xfc00) === 0xdc00) to--;
      const kind = from === 0 ? '<' : to < text.length ? '+' : '>';
      handler.postMessage(kind + text.slice(from, to));
      from = to;
    }
  };
  document.addEventListener('HANDLER-message', event => {
    if (typeof event.detail !== 'string' || event.detail.length > longest) return;
    const text = mended(event.detail);
    if (text.length > step) postPieces(text);
    else handler.postMessage('=' + text);
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

}  // namespace

std::string relayScript(const std::string& handler) {
  return forHandler(kRelay, handler);
}

std::string pageScript(const std::string& handler) {
  return forHandler(kPageSide, handler);
}

}  // namespace orvalle::platform
