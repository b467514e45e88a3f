#include "platform/any_system.h"

#include <cstdlib>

namespace orvalle::platform {
namespace {

class SystemClock final : public Clock {
 public:
  WallTime now() const override { return std::chrono::system_clock::now(); }
};

class ProcessEnvironment final : public Environment {
 public:
  std::optional<std::string> variable(std::string_view name) const override {
    const char* text = std::getenv(std::string(name).c_str());
    return text ? std::optional<std::string>(text) : std::nullopt;
  }
};

}  // namespace

std::unique_ptr<Clock> makeClock() {
  return std::make_unique<SystemClock>();
}

std::unique_ptr<Environment> makeEnvironment() {
  return std::make_unique<ProcessEnvironment>();
}

}  // namespace orvalle::platform
