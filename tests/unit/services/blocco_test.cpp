#include "services/blocco.h"

#include <gtest/gtest.h>

#include <string>

namespace orvalle::services {
namespace {

using namespace std::chrono;

Moment at(int hour, int minute, int second = 0) {
  return sys_days(year(2025) / 3 / 14) + hours(hour) + minutes(minute) + seconds(second);
}

std::string blocco(const std::string& members) {
  return "[{" + members + "}]";
}

constexpr char kMoments[] = R"("da":"2025-03-14T09:00:00Z","a":"2025-03-14T09:05:00Z")";

TEST(Blocco, hasWholeMinutesTruncated) {
  EXPECT_EQ((Blocco{"x", {}, at(9, 0), at(9, 1, 59)}.minuti()), 1);
  EXPECT_EQ((Blocco{"x", {}, at(9, 0), at(9, 0, 59)}.minuti()), 0);
  EXPECT_EQ((Blocco{"x", {}, at(9, 0), at(11, 0)}.minuti()), 120);
}

TEST(Blocco, hasNoMinutesWhereItEndsBeforeItBegins) {
  EXPECT_EQ((Blocco{"x", {}, at(9, 5), at(9, 0)}.minuti()), 0);
}

TEST(Blocco, isWrittenCompactlyWithItsKeysInOrder) {
  EXPECT_EQ(
      encodeBlocchi({{"Editor", "lettera.txt", at(9, 0), at(9, 5)}}),
      R"([{"app":"Editor","titolo":"lettera.txt","da":"2025-03-14T09:00:00Z","a":"2025-03-14T09:05:00Z"}])");
}

TEST(Blocco, isWrittenWithoutATitleKeyWhereItHasNoTitle) {
  EXPECT_EQ(encodeBlocchi({{"Editor", {}, at(9, 0), at(9, 5)}}),
            R"([{"app":"Editor","da":"2025-03-14T09:00:00Z","a":"2025-03-14T09:05:00Z"}])");
}

TEST(Blocco, isWrittenOneAfterTheOther) {
  const auto text = encodeBlocchi({{"B", {}, at(9, 0), at(9, 5)}, {"A", "t", at(8, 0), at(8, 5)}});
  ASSERT_TRUE(text);
  EXPECT_LT(text->find("\"B\""), text->find("\"A\""));
  EXPECT_EQ(decodeBlocchi(*text)->size(), 2u);
  EXPECT_EQ(encodeBlocchi({}), "[]");
}

TEST(Blocco, losesFractionsOfSecondsInWriting) {
  const auto text = encodeBlocchi({{"x", {}, at(9, 0) + 999'999us, Moment(-1us)}});
  ASSERT_TRUE(text);
  EXPECT_NE(text->find(R"("da":"2025-03-14T09:00:00Z")"), std::string::npos);
  EXPECT_NE(text->find(R"("a":"1969-12-31T23:59:59Z")"), std::string::npos);
}

TEST(Blocco, comesBackAsItWas) {
  const std::vector<Blocco> blocchi = {{"Città \"<b>\" \\ / €", "riga\nriga\t\x01 😀", at(9, 0), at(9, 5)},
                                       {"", {}, at(23, 59, 59), at(0, 0)}};
  EXPECT_EQ(decodeBlocchi(*encodeBlocchi(blocchi)), blocchi);
}

TEST(Blocco, isNotWrittenWhereATextIsNotUtf8) {
  EXPECT_FALSE(encodeBlocchi({{"\xff", {}, at(9, 0), at(9, 5)}}));
  EXPECT_FALSE(encodeBlocchi({{"x", "\xc3", at(9, 0), at(9, 5)}}));
}

TEST(Blocco, isReadWithANullTitleAsWithNone) {
  const auto read = decodeBlocchi(blocco(R"("app":"x","titolo":null,)" + std::string(kMoments)));
  ASSERT_TRUE(read);
  EXPECT_EQ(read->front(), (Blocco{"x", std::nullopt, at(9, 0), at(9, 5)}));
}

TEST(Blocco, isReadWhateverElseIsThere) {
  const auto read =
      decodeBlocchi(blocco(R"("altro":[1,{}],"titolo":"t","app":"x",)" + std::string(kMoments)));
  ASSERT_TRUE(read);
  EXPECT_EQ(read->front().titolo, "t");
}

TEST(Blocco, isReadAllOrNothing) {
  const auto good = R"({"app":"x",)" + std::string(kMoments) + "}";
  EXPECT_TRUE(decodeBlocchi("[" + good + "]"));
  EXPECT_FALSE(decodeBlocchi("[" + good + ",{}]"));
  EXPECT_FALSE(decodeBlocchi("[" + good + ",null]"));
  EXPECT_FALSE(decodeBlocchi("[" + good + ",[]]"));
  EXPECT_FALSE(decodeBlocchi(good));
  EXPECT_FALSE(decodeBlocchi("[" + good));
  EXPECT_FALSE(decodeBlocchi("[" + good + ",]"));
  EXPECT_FALSE(decodeBlocchi(""));
  EXPECT_FALSE(decodeBlocchi("null"));
}

TEST(Blocco, needsEveryKeyOfItsType) {
  const std::string da = R"("da":"2025-03-14T09:00:00Z")";
  const std::string a = R"("a":"2025-03-14T09:05:00Z")";
  const std::string app = R"("app":"x")";
  EXPECT_TRUE(decodeBlocchi(blocco(app + "," + da + "," + a)));
  for (const auto& members : {
           da + "," + a,
           app + "," + a,
           app + "," + da,
           R"("app":null,)" + da + "," + a,
           R"("app":1,)" + da + "," + a,
           R"("App":"x",)" + da + "," + a,
           app + R"(,"da":null,)" + a,
           app + R"(,"da":1741942800,)" + a,
           app + "," + da + R"(,"a":true)",
           app + R"(,"titolo":1,)" + da + "," + a,
           app + R"(,"titolo":["t"],)" + da + "," + a,
       }) {
    EXPECT_FALSE(decodeBlocchi(blocco(members))) << members;
  }
}

TEST(Blocco, isNotReadWithFractionsOfSeconds) {
  EXPECT_FALSE(decodeBlocchi(R"([{"app":"x","da":"2025-03-14T09:05:00.250Z","a":"2025-03-14T09:06:00Z"}])"));
  EXPECT_FALSE(decodeBlocchi(R"([{"app":"x","da":"2025-03-14T09:05:00Z","a":"2025-03-14T09:06:00.000Z"}])"));
}

TEST(Blocco, isReadFromTheFirstYearToTheLast) {
  const auto read = decodeBlocchi(R"([{"app":"x","da":"0000-01-01T00:00:00Z","a":"9999-12-31T23:59:59Z"}])");
  ASSERT_TRUE(read);
  EXPECT_EQ(read->front().minuti(), 3'652'425LL * 1440 - 1);
}

}  // namespace
}  // namespace orvalle::services
