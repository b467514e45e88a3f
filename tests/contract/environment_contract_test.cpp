#include "platform/environment.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <string>

#include "platform/memory/memory_stores.h"
#include "tests/contract/native.h"

namespace orvalle::platform {
namespace {

constexpr const char* kName = "ORVALLE_CONTRACT_TEST";

class MemoryRig {
 public:
  Environment& environment() { return environment_; }
  void set(const std::string& text) { environment_.variables[kName] = text; }
  void unset() { environment_.variables.erase(kName); }

 private:
  memory::MemoryEnvironment environment_;
};

class NativeRig {
 public:
  ~NativeRig() { unset(); }
  Environment& environment() { return *environment_; }
  void set(const std::string& text) { ::setenv(kName, text.c_str(), 1); }
  void unset() { ::unsetenv(kName); }

 private:
  std::unique_ptr<Environment> environment_ = contract::native::makeEnvironment();
};

template <typename Rig>
class EnvironmentContract : public ::testing::Test {
 protected:
  std::optional<std::string> read(std::string_view name = kName) { return rig.environment().variable(name); }

  Rig rig;
};

using Rigs = ::testing::Types<MemoryRig, NativeRig>;
TYPED_TEST_SUITE(EnvironmentContract, Rigs);

TYPED_TEST(EnvironmentContract, hasNothingWhereNothingIsSet) {
  EXPECT_EQ(this->read(), std::nullopt);
}

TYPED_TEST(EnvironmentContract, tellsAnEmptyTextFromNone) {
  this->rig.set("");
  EXPECT_EQ(this->read(), "");
  this->rig.unset();
  EXPECT_EQ(this->read(), std::nullopt);
}

TYPED_TEST(EnvironmentContract, givesTheTextAsItIs) {
  this->rig.set(" https://esempio.example/?a=1&b=è ");
  EXPECT_EQ(this->read(), " https://esempio.example/?a=1&b=è ");
}

TYPED_TEST(EnvironmentContract, reactsToChanges) {
  this->rig.set("a");
  EXPECT_EQ(this->read(), "a");
  this->rig.set("b");
  EXPECT_EQ(this->read(), "b");
}

TYPED_TEST(EnvironmentContract, takesNamesExactly) {
  this->rig.set("a");
  EXPECT_EQ(this->read("orvalle_contract_test"), std::nullopt);
  EXPECT_EQ(this->read("ORVALLE_CONTRACT_TES"), std::nullopt);
  // A view into a longer text ends where it ends.
  EXPECT_EQ(this->read(std::string_view("ORVALLE_CONTRACT_TEST_AND_MORE").substr(0, 21)), "a");
}

}  // namespace
}  // namespace orvalle::platform
