#import "platform/macos/page_bridge.h"

#include <utility>

#import "platform/macos/text.h"
#include "platform/message_pieces.h"
#include "platform/page_scripts.h"

using Received = std::function<void(std::string)>;

/// Kept by the web view as long as that likes: what it tells it to goes first.
@interface OrvalleMessageHandler : NSObject <WKScriptMessageHandler>
- (void)listen:(Received)received;
@end

@implementation OrvalleMessageHandler {
  Received _received;
  orvalle::platform::MessagePieces _pieces;
}

- (void)listen:(Received)received {
  _received = std::move(received);
}

- (void)userContentController:(WKUserContentController*)userContentController
      didReceiveScriptMessage:(WKScriptMessage*)message {
  if (!_received || !message.frameInfo.mainFrame || ![message.body isKindOfClass:[NSString class]]) return;
  auto whole = _pieces.take(orvalle::platform::macos::utf8Text(message.body));
  if (whole) _received(std::move(*whole));
}

@end

namespace orvalle::platform::macos {
namespace {

void addScript(WKUserContentController* content, const std::string& source, WKContentWorld* world) {
  [content addUserScript:[[WKUserScript alloc] initWithSource:nativeText(source)
                                                injectionTime:WKUserScriptInjectionTimeAtDocumentStart
                                             forMainFrameOnly:YES
                                               inContentWorld:world]];
}

}  // namespace

PageBridge::PageBridge(const std::string& handler, const std::string& documentStartScript,
                       std::function<void(std::string)> received)
    : content_([[WKUserContentController alloc] init]), handler_([[OrvalleMessageHandler alloc] init]) {
  [handler_ listen:std::move(received)];
  WKContentWorld* world = [WKContentWorld worldWithName:nativeText(kScriptWorld)];
  [content_ addScriptMessageHandler:handler_ contentWorld:world name:nativeText(handler)];
  addScript(content_, relayScript(handler), world);
  addScript(content_, pageScript(handler), WKContentWorld.pageWorld);
  addScript(content_, documentStartScript, WKContentWorld.pageWorld);
}

PageBridge::~PageBridge() {
  [handler_ listen:nullptr];
  [content_ removeAllScriptMessageHandlers];
}

}  // namespace orvalle::platform::macos
