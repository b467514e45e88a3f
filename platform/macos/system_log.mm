#include "platform/system_log.h"

#include "base/text.h"
#include "platform/macos/factory.h"
#include "platform/macos/text.h"

namespace orvalle::platform::macos {
namespace {

class UnifiedLog final : public SystemLog {
 public:
  void write(std::string_view line) override { NSLog(@"%@", nativeText(base::onOneLine(line))); }
};

}  // namespace

std::unique_ptr<SystemLog> makeSystemLog() {
  return std::make_unique<UnifiedLog>();
}

}  // namespace orvalle::platform::macos
