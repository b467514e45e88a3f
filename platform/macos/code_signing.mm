#include "platform/code_signing.h"

#import <Foundation/Foundation.h>
#import <Security/Security.h>

#include "platform/macos/cf_ptr.h"
#include "platform/macos/factory.h"

namespace orvalle::platform::macos {
namespace {

class OwnCode final : public CodeSigning {
 public:
  std::optional<std::uint32_t> ownFlags() const override {
    SecCodeRef running = nullptr;
    if (SecCodeCopySelf(kSecCSDefaultFlags, &running) != errSecSuccess) return {};
    const CfPtr<SecCodeRef> ownRunning(running);
    SecStaticCodeRef stored = nullptr;
    if (SecCodeCopyStaticCode(running, kSecCSDefaultFlags, &stored) != errSecSuccess) return {};
    const CfPtr<SecStaticCodeRef> ownStored(stored);
    CFDictionaryRef found = nullptr;
    if (SecCodeCopySigningInformation(stored, kSecCSDefaultFlags, &found) != errSecSuccess) return {};
    id information = CFBridgingRelease(found);
    if (![information isKindOfClass:[NSDictionary class]]) return {};
    // One that is not signed is described too, but has no flags.
    id flags = static_cast<NSDictionary*>(information)[(__bridge NSString*)kSecCodeInfoFlags];
    if (![flags isKindOfClass:[NSNumber class]]) return {};
    return static_cast<NSNumber*>(flags).unsignedIntValue;
  }
};

}  // namespace

std::unique_ptr<CodeSigning> makeCodeSigning() {
  return std::make_unique<OwnCode>();
}

}  // namespace orvalle::platform::macos
