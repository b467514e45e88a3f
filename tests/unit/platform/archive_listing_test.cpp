#include "platform/archive_listing.h"

#include <gtest/gtest.h>

namespace orvalle::platform {
namespace {

constexpr std::uintmax_t kEach = 4096;

std::uintmax_t bytes(const std::string& listing) {
  const auto judged = judgeListing(listing);
  if (const auto* reason = std::get_if<std::string>(&judged)) {
    ADD_FAILURE() << *reason;
    return 0;
  }
  return std::get<std::uintmax_t>(judged);
}

bool isRefused(const std::string& listing) {
  return std::holds_alternative<std::string>(judgeListing(listing));
}

std::string line(const std::string& name, const std::string& size = "10") {
  return "-rw-r--r--  0 1000   1000 " + size + " Nov 21 14:01 " + name + "\n";
}

TEST(ArchiveListing, addsUpWhatTheContentsNeed) {
  EXPECT_EQ(bytes(""), 0u);
  EXPECT_EQ(bytes(line("Orvalle.app/", "0") + line("Orvalle.app/a", "27") + line("b", "1000000")),
            3 * kEach + 1'000'027);
  EXPECT_EQ(bytes("lrwxrwxrwx  0 0 0 0 21 nov  2025 via -> ../bin/orvalle\n"), kEach);
}

TEST(ArchiveListing, takesNamesAsTheyAre) {
  EXPECT_EQ(bytes(line("due  parole") + line(" ..") + line("..a/b..") + line("a/...") + line("è")),
            5 * (kEach + 10));
}

TEST(ArchiveListing, refusesNamesThatLeaveTheFolder) {
  for (const char* name : {"/etc/passwd", "/", "../x", "..", "a/../../x", "a/..", "a/../b", "../x -> y"}) {
    EXPECT_TRUE(isRefused(line("Orvalle.app/") + line(name))) << name;
  }
}

TEST(ArchiveListing, refusesWhatItDoesNotUnderstand) {
  for (const std::string& text :
       {std::string("bsdtar: guasto\n"), line("a", "-1"), line("a", "x"), line("a", "1e3"),
        line("a", "99999999999999999999"), line(""), std::string("\n")})
    EXPECT_TRUE(isRefused(text)) << text;
}

TEST(ArchiveListing, refusesTooMuch) {
  EXPECT_TRUE(isRefused(line("a", "2000000000000")));
  const auto one = line("n");
  std::string many;
  for (int number = 0; number < 200'000; ++number) many += one;
  EXPECT_FALSE(isRefused(many));
  many += one;
  EXPECT_TRUE(isRefused(many));
}

}  // namespace
}  // namespace orvalle::platform
