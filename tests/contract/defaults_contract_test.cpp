#include "platform/defaults.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "platform/memory/memory_stores.h"

// The native one of the system that the tests run on; the build names it.
#include ORVALLE_NATIVE_RIGS

namespace orvalle::platform {
namespace {

using Value = Defaults::Value;

class MemoryDefaultsRig {
 public:
  Defaults& store() { return store_; }
  /// The same settings as the next run of the program finds them.
  void startAgain() {}

 private:
  memory::MemoryDefaults store_;
};

template <typename Rig>
class DefaultsContract : public ::testing::Test {
 protected:
  void set(std::string_view key, Value value) { rig.store().set(key, value); }
  std::optional<Value> read(std::string_view key) { return rig.store().value(key); }

  /// What is stored, read now and by the next run.
  void expectKept(std::string_view key, const Value& value) {
    EXPECT_EQ(read(key), value);
    rig.startAgain();
    EXPECT_EQ(read(key), value);
  }

  Rig rig;
};

using Rigs = ::testing::Types<MemoryDefaultsRig, contract::NativeDefaultsRig>;
TYPED_TEST_SUITE(DefaultsContract, Rigs);

TYPED_TEST(DefaultsContract, hasNothingAtFirst) {
  EXPECT_EQ(this->read("a"), std::nullopt);
  EXPECT_EQ(this->rig.store().text("a"), std::nullopt);
  EXPECT_EQ(this->rig.store().boolean("a"), std::nullopt);
}

TYPED_TEST(DefaultsContract, keepsBooleans) {
  this->set("on", true);
  this->set("off", false);
  this->expectKept("on", true);
  this->expectKept("off", false);
}

TYPED_TEST(DefaultsContract, keepsIntegersToTheirLimits) {
  for (const std::int64_t number :
       {std::int64_t{0}, std::int64_t{-1}, std::numeric_limits<std::int64_t>::min(),
        std::numeric_limits<std::int64_t>::max()}) {
    this->set("number", number);
    this->expectKept("number", number);
  }
}

TYPED_TEST(DefaultsContract, keepsNumbersExactly) {
  for (const double number : {0.0, 0.1, -12.5, 1e300, 5e-324, 9007199254740993.0, 1.0}) {
    this->set("number", number);
    this->expectKept("number", number);
  }
}

TYPED_TEST(DefaultsContract, keepsTextsExactly) {
  using namespace std::string_literals;
  for (const auto& text : {""s, "{12, 34}"s, "è “😀” \\ \" / \n\t"s, "a\0b"s, std::string(100000, 'x')}) {
    this->set("text", text);
    this->expectKept("text", text);
  }
}

TYPED_TEST(DefaultsContract, takesAnyTextForAKey) {
  for (const std::string key : {"NSWindow Frame finestraPrincipale", "a.b", "\"{è}\"", ""}) {
    this->set(key, key + "!");
    this->expectKept(key, key + "!");
  }
}

TYPED_TEST(DefaultsContract, keepsKeysApart) {
  this->set("a", std::string("1"));
  this->set("A", std::string("2"));
  this->expectKept("a", std::string("1"));
  this->expectKept("A", std::string("2"));
}

TYPED_TEST(DefaultsContract, replacesWhateverWasThere) {
  this->set("a", true);
  this->set("a", std::string("text"));
  this->expectKept("a", std::string("text"));
  this->set("a", std::int64_t{1});
  this->expectKept("a", std::int64_t{1});
  this->set("a", 1.0);
  this->expectKept("a", 1.0);
  this->set("a", true);
  this->expectKept("a", true);
}

TYPED_TEST(DefaultsContract, neverConvertsTypes) {
  this->set("one", std::int64_t{1});
  EXPECT_EQ(this->rig.store().boolean("one"), std::nullopt);
  EXPECT_EQ(this->rig.store().text("one"), std::nullopt);
  this->set("one", true);
  EXPECT_EQ(this->rig.store().boolean("one"), true);
  EXPECT_EQ(this->rig.store().text("one"), std::nullopt);
  this->set("one", std::string("1"));
  EXPECT_EQ(this->rig.store().boolean("one"), std::nullopt);
  EXPECT_EQ(this->rig.store().text("one"), "1");
}

TYPED_TEST(DefaultsContract, doesNotStoreWhatIsNoText) {
  this->set("a", std::string("before"));
  this->set("a", std::string("\xFF\xFE"));
  this->set("b", std::string("\xC3"));
  this->expectKept("a", std::string("before"));
  EXPECT_EQ(this->read("b"), std::nullopt);
}

TYPED_TEST(DefaultsContract, doesNotStoreWhatIsNoNumber) {
  this->set("a", 2.5);
  this->set("a", std::numeric_limits<double>::infinity());
  this->set("a", std::numeric_limits<double>::quiet_NaN());
  this->expectKept("a", 2.5);
}

}  // namespace
}  // namespace orvalle::platform
