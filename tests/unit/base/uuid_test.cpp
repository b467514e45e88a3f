#include "base/uuid.h"

#include <gtest/gtest.h>

#include <regex>
#include <set>

namespace orvalle::base {
namespace {

TEST(Uuid, isARandomOneInCapitals) {
  const std::regex form("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}");
  std::set<std::string> seen;
  for (int i = 0; i < 1000; ++i) {
    const auto uuid = randomUuid();
    EXPECT_TRUE(std::regex_match(uuid, form)) << uuid;
    seen.insert(uuid);
  }
  EXPECT_EQ(seen.size(), 1000u);
}

}  // namespace
}  // namespace orvalle::base
