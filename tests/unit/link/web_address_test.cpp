#include "link/web_address.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "platform/memory/memory_stores.h"

namespace orvalle::link {
namespace {

constexpr char kDefault[] = "https://default.example/";

class WebAddressTest : public ::testing::Test {
 protected:
  std::string chosen() const { return address.indirizzo().text(); }

  platform::memory::MemoryEnvironment environment;
  platform::memory::MemoryDefaults defaults;
  WebAddress address{environment, defaults, kDefault};
};

TEST_F(WebAddressTest, isTheDefaultWhenNothingElseIsGiven) {
  EXPECT_EQ(chosen(), kDefault);
}

TEST_F(WebAddressTest, isTheStoredOneBeforeTheDefault) {
  defaults.set("appUrl", "https://stored.example/x");
  EXPECT_EQ(chosen(), "https://stored.example/x");
}

TEST_F(WebAddressTest, isTheEnvironmentsBeforeAnyOther) {
  environment.variables["ORVALLE_APP_URL"] = "http://localhost:4717/";
  EXPECT_EQ(chosen(), "http://localhost:4717/");
  defaults.set("appUrl", "https://stored.example/");
  EXPECT_EQ(chosen(), "http://localhost:4717/");
}

TEST_F(WebAddressTest, isTheDefaultWhenTheEnvironmentsDoesNotParseEvenWithAGoodStoredOne) {
  defaults.set("appUrl", "https://stored.example/");
  for (const std::string bad : {"", " ", "not a url", "https://h example/", "https://h:p/"}) {
    environment.variables["ORVALLE_APP_URL"] = bad;
    EXPECT_EQ(chosen(), kDefault) << bad;
  }
}

TEST_F(WebAddressTest, isTheDefaultWhenTheStoredOneDoesNotParse) {
  for (const std::string bad : {"", " ", "not a url", "https://[::1/"}) {
    defaults.set("appUrl", bad);
    EXPECT_EQ(chosen(), kDefault) << bad;
  }
}

TEST_F(WebAddressTest, ignoresAStoredValueThatIsNoText) {
  defaults.set("appUrl", true);
  EXPECT_EQ(chosen(), kDefault);
  defaults.set("appUrl", std::int64_t{1});
  EXPECT_EQ(chosen(), kDefault);
}

TEST_F(WebAddressTest, takesAnyTextThatParses) {
  // Nothing but the form of the text is looked at.
  for (const std::string text : {"web", "orvalle", "mailto:a@b.example", "HTTPS://Host.Example/P?q#f"}) {
    defaults.set("appUrl", text);
    EXPECT_EQ(chosen(), text);
  }
}

TEST_F(WebAddressTest, isChosenAfreshAtEachRead) {
  EXPECT_EQ(chosen(), kDefault);
  defaults.set("appUrl", "https://one.example/");
  EXPECT_EQ(chosen(), "https://one.example/");
  environment.variables["ORVALLE_APP_URL"] = "https://two.example/";
  EXPECT_EQ(chosen(), "https://two.example/");
  environment.variables.clear();
  EXPECT_EQ(chosen(), "https://one.example/");
}

}  // namespace
}  // namespace orvalle::link
