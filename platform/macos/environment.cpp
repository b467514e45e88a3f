#include "platform/environment.h"

#include <cstdlib>

#include "platform/macos/factory.h"

namespace orvalle::platform::macos {
namespace {

class ProcessEnvironment final : public Environment {
 public:
  std::optional<std::string> variable(std::string_view name) const override {
    const char* text = std::getenv(std::string(name).c_str());
    return text ? std::optional<std::string>(text) : std::nullopt;
  }
};

}  // namespace

std::unique_ptr<Environment> makeEnvironment() {
  return std::make_unique<ProcessEnvironment>();
}

}  // namespace orvalle::platform::macos
