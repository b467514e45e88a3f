// The Linux program, to which ten seconds without input are an hour.

#include "app/orvalle.h"
#include "platform/linux/factory.h"

namespace orvalle::platform::linuxos {
namespace {

class HastyInputIdle final : public InputIdle {
 public:
  double secondsSinceInput() override { return 360 * idle_->secondsSinceInput(); }

 private:
  std::unique_ptr<InputIdle> idle_ = makeInputIdle();
};

std::unique_ptr<InputIdle> makeHastyInputIdle() {
  return std::make_unique<HastyInputIdle>();
}

}  // namespace
}  // namespace orvalle::platform::linuxos

// All the rest of it is the program's own.
#define makeInputIdle makeHastyInputIdle
#include "app/main_linux.cpp"  // NOLINT(bugprone-suspicious-include)
