#include "platform/system_log.h"

#include <unistd.h>

#include <cerrno>

#include "base/text.h"
#include "platform/linux/factory.h"

namespace orvalle::platform::linuxos {
namespace {

/// Standard error: the journal keeps it when the desktop starts the program.
class StandardError final : public SystemLog {
 public:
  void write(std::string_view line) override {
    const std::string text = base::onOneLine(line) + '\n';
    // One call, so that lines of several processes on the same file do not mix. There is nobody to tell of a
    // failure.
    while (::write(STDERR_FILENO, text.data(), text.size()) < 0 && errno == EINTR) {
    }
  }
};

}  // namespace

std::unique_ptr<SystemLog> makeSystemLog() {
  return std::make_unique<StandardError>();
}

}  // namespace orvalle::platform::linuxos
