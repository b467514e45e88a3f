#include "platform/code_signing.h"

#include "platform/linux/codesign/bundle_signature.h"
#include "platform/linux/factory.h"

namespace orvalle::platform::linuxos {
namespace {

class BundleSigning final : public CodeSigning {
 public:
  explicit BundleSigning(const Bundle& bundle) : bundle_(bundle) {}

  std::optional<std::uint32_t> ownFlags() const override {
    const auto signature = readSignature(bundle_.path());
    if (!signature) return {};
    return signature->adhoc ? kSignatureAdhoc : 0;
  }

 private:
  const Bundle& bundle_;
};

}  // namespace

std::unique_ptr<CodeSigning> makeCodeSigning(const Bundle& bundle) {
  return std::make_unique<BundleSigning>(bundle);
}

}  // namespace orvalle::platform::linuxos
