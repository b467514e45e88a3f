#include "platform/code_signing.h"

#include "platform/linux/factory.h"

namespace orvalle::platform::linuxos {
namespace {

/// Nothing signs bundles yet, so no program is signed.
class NoSignature final : public CodeSigning {
 public:
  std::optional<std::uint32_t> ownFlags() const override { return {}; }
};

}  // namespace

std::unique_ptr<CodeSigning> makeCodeSigning() {
  return std::make_unique<NoSignature>();
}

}  // namespace orvalle::platform::linuxos
