#include "update/rilascio.h"

#include <gtest/gtest.h>

namespace orvalle::update {
namespace {

/// A manifest with these members in the place of its own.
std::string manifest(const std::string& versione = R"("versione":"2.0",)",
                     const std::string& build = R"("build":7,)", const std::string& url = R"("url":"/x.zip")",
                     const std::string& more = "") {
  return "{" + versione + build + url + more + "}";
}

TEST(Rilascio, readsEveryField) {
  EXPECT_EQ(
      decodeRilascio(R"({"versione":"2.0","build":7,"url":"/x.zip","note":"Nuovo","pubblicato":"ieri"})"),
      (Rilascio{"2.0", 7, "/x.zip", "Nuovo", "ieri"}));
}

TEST(Rilascio, doesWithoutNoteAndDate) {
  const Rilascio bare{"2.0", 7, "/x.zip", {}, {}};
  EXPECT_EQ(decodeRilascio(manifest()), bare);
  EXPECT_EQ(decodeRilascio(R"({"versione":"2.0","build":7,"url":"/x.zip","note":null,"pubblicato":null})"),
            bare);
}

TEST(Rilascio, ignoresWhatItDoesNotKnow) {
  EXPECT_TRUE(decodeRilascio(R"({"versione":"2.0","build":7,"url":"","extra":{"build":"x"},"Build":"8"})"));
}

TEST(Rilascio, isAbsentWithoutARequiredField) {
  EXPECT_FALSE(decodeRilascio(manifest("")));
  EXPECT_FALSE(decodeRilascio(manifest(R"("versione":"2.0",)", "")));
  EXPECT_FALSE(decodeRilascio(R"({"versione":"2.0","build":7})"));
  EXPECT_FALSE(decodeRilascio(manifest(R"("versione":null,)")));
}

TEST(Rilascio, isAbsentWhenAnythingHasTheWrongType) {
  for (const auto* build : {R"("7")", "7.5", "true", "1e40", "9223372036854775808", "null", "[7]"})
    EXPECT_FALSE(decodeRilascio(manifest(R"("versione":"2.0",)", R"("build":)" + std::string(build) + ",")))
        << build;
  EXPECT_FALSE(decodeRilascio(manifest(R"("versione":2,)")));
  EXPECT_FALSE(decodeRilascio(manifest(R"("versione":"2.0",)", R"("build":7,)", R"("url":7)")));
  for (const auto* wrong : {"7", "true", "[]", "{}"}) {
    EXPECT_FALSE(decodeRilascio(
        manifest(R"("versione":"2",)", R"("build":7,)", R"("url":"")", R"(,"note":)" + std::string(wrong))));
    EXPECT_FALSE(decodeRilascio(manifest(R"("versione":"2",)", R"("build":7,)", R"("url":"")",
                                         R"(,"pubblicato":)" + std::string(wrong))));
  }
}

TEST(Rilascio, takesEveryWholeNumberOf64Bits) {
  const auto build = [](const std::string& text) {
    return decodeRilascio(manifest(R"("versione":"2.0",)", R"("build":)" + text + ",")).value().build;
  };
  EXPECT_EQ(build("9223372036854775807"), INT64_MAX);
  EXPECT_EQ(build("-9223372036854775808"), INT64_MIN);
  EXPECT_EQ(build("12.0"), 12);
  EXPECT_EQ(build("1e1"), 10);
}

TEST(Rilascio, isAbsentForAnythingThatIsNoManifest) {
  for (const auto* text : {"", "null", "[]", "7", "<html></html>", "{", R"({"versione":"2.0",})"})
    EXPECT_FALSE(decodeRilascio(text)) << text;
}

}  // namespace
}  // namespace orvalle::update
